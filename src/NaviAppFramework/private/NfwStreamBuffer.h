// A ring of bytes, the log writer's buffer between its callers and the disk.
#pragma once

#include <cstdint>
#include <memory>

namespace nfw {

/// Not locked: its owner sees to that. Nothing is allocated after construction.
class StreamBuffer {
 public:
  static constexpr int FAILURE = -1;           ///< no storage, or a null pointer
  static constexpr int BUFFER_DEPLETION = -2;  ///< not enough free space: nothing was written
  static constexpr int EMPTY = -3;             ///< nothing to read

  /// Without memory, or for a size above 0xFFFFFFFC, the buffer has no storage.
  explicit StreamBuffer(unsigned int nSize);
  virtual ~StreamBuffer() = default;
  StreamBuffer(const StreamBuffer&) = delete;
  StreamBuffer& operator=(const StreamBuffer&) = delete;

  int write(const void* npData, unsigned int nSize);  ///< all bytes: nSize; or a negative result
  int read(void* npBuffer, unsigned int nSize);       ///< removes and copies at most nSize bytes: their number
  bool eraseTop(unsigned int nSize);                  ///< drops at most nSize bytes from the front
  void clear();

  /// The oldest bytes as they lie in the storage, up to its end: their number, FAILURE without storage. They stay valid
  /// and unchanged until they are read, erased or cleared, whatever is written meanwhile.
  int top(const unsigned char** nppBytes) const;
  /// Copies bytes that stay in the buffer; the caller knows that they are there.
  void peek(unsigned int nOffset, unsigned char* npTarget, unsigned int nSize) const;

  unsigned int size() const { return mUsedSize; }
  unsigned int getBufferSize() const { return mCapacity; }
  unsigned int getFreeSpace() const { return mCapacity - mUsedSize; }
  bool isEmpty() const { return mUsedSize == 0; }

 private:
  unsigned int at(unsigned int nOffset) const;  // index of the byte nOffset behind the oldest
  void copyOut(unsigned int nIndex, void* npTarget, unsigned int nSize) const;

  std::unique_ptr<unsigned char[]> mpStorage;
  uint32_t mCapacity;
  uint32_t mReadPosition = 0;
  uint32_t mUsedSize = 0;
};

}  // namespace nfw
