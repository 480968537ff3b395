// What an open file is to this process.
#pragma once

#include <sys/uio.h>

#include <memory>
#include <string>

#include "utl/File.h"

namespace utl {

/// A file that is read is seen through a window, a stretch of it kept in memory. The position is a number of this
/// class, so moving it costs no system call, and read, readLine, seek and getPosition cannot disagree. An end of file
/// is never remembered: what a writer has appended meanwhile is read. What is written goes to the kernel at once.
struct File::State {
  explicit State(const char* npPath) : mPath(npPath != nullptr ? npPath : "") {}
  ~State() { close(); }

  bool openToRead();   ///< a regular file only
  bool openToWrite();  ///< creates or truncates
  void close();
  bool isReading() const { return mFile >= 0 && !mIsWriting; }
  bool isWriting() const { return mFile >= 0 && mIsWriting; }

  bool kernelSize(unsigned long long* npSize) const;
  bool hasName() const;
  /// What the window shows from the position on, fetched when needed: the number of bytes, 0 at the end, -1 on an
  /// error.
  int view(const char** nppBytes);
  /// Copies at most `nSize` bytes and moves the position. The number of bytes, 0 at the end, -1 on an error.
  int take(char* npBuffer, unsigned int nSize);
  /// All bytes of the parts, which it uses up.
  bool writeAll(iovec* npParts, int nCount);
  bool moveTo(long long nPosition);
  bool cutAt(unsigned long long nSize);
  bool sync();  ///< the bytes; the first time also the name, or a power cut leaves bytes that nobody finds

  const std::string mPath;
  int mFile = -1;
  bool mIsWriting = false;
  bool mHasFailed = false;  // a write did not reach the kernel
  unsigned long long mPosition = 0;

 private:
  bool isInWindow() const;
  bool fetch();

  bool syncName();

  bool mIsNameSynced = false;        // of sync() alone, which runs beside the others
  std::unique_ptr<char[]> mpWindow;  // from the first open for reading on
  unsigned long long mWindowStart = 0;
  unsigned int mWindowSize = 0;
};

}  // namespace utl
