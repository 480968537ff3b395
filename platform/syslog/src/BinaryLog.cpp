#include "BinaryLog.h"

#include <cerrno>

namespace syslogservice {

namespace {

const unsigned int LIMIT_MS = 10000;  // of waits for a file system

}  // namespace

// The new file takes records while the one before is still written, and is written itself when that is over: it may be
// the same file.
bool BinaryLog::setFiles(const BinaryLogFiles& nFiles) {
  const std::lock_guard<std::mutex> lChange(mChange);
  const bool lIsWanted = nFiles.mpDirectory != nullptr && nFiles.mpDirectory[0] != '\0';
  BinaryLogFile* const lpNew = lIsWanted ? BinaryLogFile::open(nFiles, mSyncMs, LIMIT_MS) : nullptr;
  if (lIsWanted && lpNew == nullptr) return false;
  BinaryLogFile* lpBefore = nullptr;
  {
    const std::lock_guard<std::mutex> lLock(mMutex);
    lpBefore = mpFile;
    if (lIsWanted) mpFile = lpNew;
  }
  const bool lIsWhole = lpBefore == nullptr || end(lpBefore);
  if (lpNew != nullptr) lpNew->begin();
  return lIsWanted || lIsWhole;
}

bool BinaryLog::end(BinaryLogFile* npFile) {
  const BinaryLogCounts lCounts = npFile->finish(LIMIT_MS);
  {
    const std::lock_guard<std::mutex> lLock(mMutex);
    mLast = lCounts;
    if (mpFile == npFile) mpFile = nullptr;
  }
  BinaryLogFile::release(npFile);
  errno = lCounts.mError;
  return lCounts.mFailed == 0;
}

bool BinaryLog::append(const void* npData, unsigned int nSize) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mpFile != nullptr && mpFile->append(npData, nSize);
}

bool BinaryLog::flush(unsigned int nTimeoutMs) {
  const std::lock_guard<std::mutex> lChange(mChange);
  return mpFile == nullptr || mpFile->flush(nTimeoutMs);
}

BinaryLogCounts BinaryLog::counts() {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mpFile != nullptr ? mpFile->counts() : mLast;
}

}  // namespace syslogservice
