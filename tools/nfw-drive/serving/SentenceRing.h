#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>

namespace drive {

/// The last bytes of a stream of lines, for any number of readers that each keep their own place: the number of bytes
/// before it. Who writes never waits. Any thread may write and read.
class SentenceRing {
 public:
  explicit SentenceRing(size_t nRoom) : mRoom(nRoom) {}

  bool begin();  ///< false where there is no memory
  /// Appends a sentence with its line end, which it gets where it has none.
  void write(std::string_view nSentence);
  uint64_t getEnd() const { return mEnd; }
  bool isGone(uint64_t nAt) const { return mEnd - nAt > mRoom; }  ///< written over, or about to be

  /// Copies what stands behind the place, as much as there is room for. @return how much; -1 when it is gone
  int read(uint64_t nAt, char* npBuffer, size_t nSize) const;

 private:
  void append(std::string_view nText);

  const size_t mRoom;
  mutable std::mutex mMutex;
  std::unique_ptr<char[]> mpBytes;
  std::atomic<uint64_t> mEnd{0};  // written under mMutex, behind a whole line
  uint64_t mWritten = 0;          // within the line under way
};

}  // namespace drive
