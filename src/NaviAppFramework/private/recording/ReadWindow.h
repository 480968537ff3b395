// A stretch of a file in memory.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>

#include "utl/File.h"

namespace nfw {

/// Reads and seeks in a file as the file itself would, from a buffer of its own: most steps of a record reader cost no
/// call. Between calls the file stands at the end of the window. What was appended to the file meanwhile is seen. Not
/// locked.
class ReadWindow {
 public:
  /// `nSize` bytes at a time, taken at the first open().
  explicit ReadWindow(unsigned int nSize = 64 * 1024) : mCapacity(nSize) {}

  /// From the file's beginning. False without memory. The file is not owned and stays open until the next open().
  bool open(utl::File* npFile);

  /// False when the file cannot tell; it is asked only while the window is empty.
  bool getPosition(uint64_t* npPosition) const {
    *npPosition = position();
    return mSize != 0 || canTell();
  }
  /// Forgets what it has in memory when the file ends inside it. False when the file cannot be read on from here.
  bool limit(uint64_t nFileSize) { return mSize == 0 || nFileSize >= mStart + mSize || moveTo(position()); }
  /// Beyond the end is allowed. The file is asked only for a position outside the window.
  bool seek(uint64_t nPosition);
  bool skip(uint64_t nSize) {
    if (nSize > mSize - mAt) return seek(position() + nSize);
    mAt += static_cast<unsigned int>(nSize);
    return true;
  }
  /// Bytes read, fewer only at the end of the file; -1 error.
  int read(void* npBuffer, unsigned int nSize) {
    const unsigned char* const lpBytes = view(nSize);
    if (lpBytes == nullptr) return readOn(npBuffer, nSize);
    memcpy(npBuffer, lpBytes, nSize);
    mAt += nSize;
    return static_cast<int>(nSize);
  }

  /// The next bytes, when the window has them all, else null; they are not consumed.
  const unsigned char* view(uint64_t nSize) const { return nSize <= mSize - mAt ? mpBytes.get() + mAt : nullptr; }

 private:
  uint64_t position() const { return mStart + mAt; }
  bool canTell() const;
  int readOn(void* npBuffer, unsigned int nSize);
  unsigned int take(void* npBuffer, unsigned int nSize);
  int fill();
  bool moveTo(uint64_t nPosition);

  const unsigned int mCapacity;
  utl::File* mpFile = nullptr;
  std::unique_ptr<unsigned char[]> mpBytes;
  uint64_t mStart = 0;     // of the window, in the file
  unsigned int mSize = 0;  // of the window
  unsigned int mAt = 0;    // the position, in the window
};

}  // namespace nfw
