// Log lines on standard error.
#pragma once

#include <sys/types.h>

#include <mutex>

namespace syslogservice {

/// Writes whole lines, each by one write, and never waits for the reader: what does not go at once is counted and lost.
/// Pipes and terminals are opened a second time for that, because O_NONBLOCK set on descriptor 2 itself would hit every
/// process that shares it. Follows the descriptor when the process redirects it.
class StandardError {
 public:
  void writeLine(int nLevel, const char* npSource, const char* npText);
  void setColoured(bool nColoured);
  unsigned long long dropped() const;

 private:
  enum Colour { BY_TERMINAL, PLAIN, COLOURED };

  bool followLocked();  // false: there is no standard error
  bool putLocked(const char* npBytes, unsigned int nSize);
  bool writeLocked(int nFile, const char* npBytes, unsigned int nSize);

  mutable std::mutex mMutex;  // guards what follows; held for calls that do not wait only
  Colour mColour = BY_TERMINAL;
  unsigned long long mDropped = 0;
  bool mIsCut = false;  // the last line went out in part
  bool mIsRegular = false;
  bool mIsTerminal = false;
  dev_t mDevice = 0;  // what descriptor 2 was last, with mNode
  ino_t mNode = 0;
  int mOwn = -1;  // the same file opened non-blocking, -1 when that is not to be had or not needed
};

}  // namespace syslogservice
