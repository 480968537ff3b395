// Records on their way into a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace syslogservice {

/// Whole records one behind the other, and how many bytes of them the file has taken. Its memory is the kernel's until
/// it is used: a batch that is emptied often stays small. Guarded by its owner.
class RecordBatch {
 public:
  static constexpr uint32_t SIZE = 1024 * 1024;
  static constexpr uint32_t MAX_NUM = 32 * 1024;

  RecordBatch();
  bool hasMemory() const { return mpBytes != nullptr && mpEnds != nullptr; }

  bool add(const void* npData, unsigned int nSize);  ///< false when there is no room
  void clear() { mNum = mWholeNum = mDone = 0; }
  bool isEmpty() const { return mNum == 0; }
  bool isHalfFull() const { return mNum >= MAX_NUM / 2 || endOf(mNum) >= SIZE / 2; }

  uint32_t num() const { return mNum; }
  uint32_t wholeNum() const { return mWholeNum; }          ///< records that the file has
  uint32_t wholeSize() const { return endOf(mWholeNum); }  ///< bytes of these
  bool isDone() const { return mWholeNum == mNum; }
  bool isWithinRecord() const { return mDone > wholeSize(); }
  uint32_t nextSize() const { return mpEnds[mWholeNum] - wholeSize(); }  ///< of the first record that it has not

  /// Writes what the file has not got, as far as whole records fit into that room, the first one in any case; by one
  /// call. 0, or the errno; then a record of which the file took a part is cut
  /// off again where a file can be cut, and otherwise goes on where it stopped.
  int writeTo(int nFile, uint32_t nRoom);
  void beginRecord() { mDone = wholeSize(); }  ///< of which another file took a part: as a whole
  void cutBack(int nFile);                     ///< takes a record's first part off again

 private:
  uint32_t endWithin(uint32_t nRoom) const;
  uint32_t endOf(uint32_t nNum) const { return nNum == 0 ? 0 : mpEnds[nNum - 1]; }

  std::unique_ptr<unsigned char[]> mpBytes;
  std::unique_ptr<uint32_t[]> mpEnds;  // of each record
  uint32_t mNum = 0;
  uint32_t mWholeNum = 0;
  uint32_t mDone = 0;  // bytes in the file
};

}  // namespace syslogservice
