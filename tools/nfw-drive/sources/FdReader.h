#pragma once

#include <sys/types.h>

#include <string>

#include "SentenceSource.h"

namespace drive {

/// A file descriptor of any kind, read so that a stop ends the wait.
class FdReader {
 public:
  /// @param nSilence when nothing comes for so long, it counts as broken; 0: never
  explicit FdReader(tool::Stopper& nStopper, std::chrono::milliseconds nSilence = {})
      : mStopper(nStopper), mSilence(nSilence) {}
  virtual ~FdReader() { reset(-1); }
  FdReader(const FdReader&) = delete;
  FdReader& operator=(const FdReader&) = delete;

  /// Takes ownership of a descriptor and closes the one before.
  void reset(int nFd);
  int getFd() const { return mFd; }

  /// As SentenceSource::read.
  int read(char* npBuffer, size_t nSize, std::string* npReason);

 private:
  virtual ssize_t take(char* npBuffer, size_t nSize);  // as read(2)

  tool::Stopper& mStopper;
  const std::chrono::milliseconds mSilence;
  int mFd = -1;
};

}  // namespace drive
