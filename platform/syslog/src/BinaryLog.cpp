#include "BinaryLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace syslogservice {

namespace {

// Takes the last bytes off a file again; a full disk does not hinder that.
void cutBack(int nFile, off_t nSize) {
  const off_t lEnd = lseek(nFile, 0, SEEK_END);
  while (lEnd >= nSize && ftruncate(nFile, lEnd - nSize) == -1 && errno == EINTR) {
  }
}

}  // namespace

bool BinaryLog::setFile(const char* npPath) {
  const int lFlags = O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const bool lIsWanted = npPath != nullptr && npPath[0] != '\0';
  const int lFile = lIsWanted ? ::open(npPath, lFlags, mode_t{0666}) : -1;
  if (lIsWanted && lFile < 0) return false;
  std::lock_guard<std::mutex> lLock(mMutex);
  if (mFile >= 0) ::close(mFile);
  mFile = lFile;
  if (lIsWanted) mCounts = {};
  return true;
}

bool BinaryLog::append(const void* npData, unsigned int nSize) {
  std::lock_guard<std::mutex> lLock(mMutex);
  ++mCounts.mRefused;
  if (mFile < 0) return false;
  ssize_t lDone = ::write(mFile, npData, nSize);
  while (lDone < 0 && errno == EINTR) lDone = ::write(mFile, npData, nSize);
  const bool lIsWhole = lDone == static_cast<ssize_t>(nSize);
  mCounts.mError = lIsWhole ? 0 : lDone < 0 ? errno : ENOSPC;
  if (!lIsWhole && lDone > 0) cutBack(mFile, lDone);
  if (!lIsWhole) return false;
  --mCounts.mRefused;
  ++mCounts.mRecorded;
  mCounts.mBytes += nSize;
  return true;
}

BinaryLogCounts BinaryLog::counts() {
  std::lock_guard<std::mutex> lLock(mMutex);
  return mCounts;
}

}  // namespace syslogservice
