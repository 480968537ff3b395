#include "RetentionSweep.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>

#include "NfwAppLog.h"
#include "utl/StringUtil.h"

namespace nfw {
namespace {

struct CloseDirectory {
  void operator()(DIR* npDirectory) const { ::closedir(npDirectory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

/// Somebody writes to it, in this process or another one: a read lease is not given then. The names do not tell it
/// where the clock was set back. The signal of a lease that is asked back, which nobody ever has to see, is one that is
/// ignored. Where a file system has no leases, the newest name is all that is known.
bool isWrittenTo(int nDirectory, const char* npName) {
  const int lFile = ::openat(nDirectory, npName, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC);
  if (lFile < 0) return false;
  ::fcntl(lFile, F_SETSIG, SIGURG);
  const bool lIsWrittenTo = ::fcntl(lFile, F_SETLEASE, F_RDLCK) != 0 && errno == EAGAIN;
  ::close(lFile);
  return lIsWrittenTo;
}

}  // namespace

bool RetentionSweep::setFiles(const char* npDirectory, const char* npFilePrefix) {
  if (npDirectory == nullptr || npFilePrefix == nullptr) return false;
  if (strlen(npDirectory) + 1 + strlen(npFilePrefix) + LOG_FILE_SUFFIX_SIZE >= LOG_PATH_SIZE) return false;
  return utl::copyStr(mDirectory, LOG_PATH_SIZE, npDirectory) && utl::copyStr(mFilePrefix, LOG_PATH_SIZE, npFilePrefix);
}

/// What lies there. The oldest is looked for behind the name of one that could not go.
RetentionSweep::Survey RetentionSweep::survey(DIR* npDirectory, const char* npPassed) const {
  Survey lSurvey;
  ::rewinddir(npDirectory);
  while (const dirent* const lpEntry = ::readdir(npDirectory)) {
    struct stat lStat;
    if (!isLogFileName(lpEntry->d_name, mFilePrefix)) continue;
    if (::fstatat(::dirfd(npDirectory), lpEntry->d_name, &lStat, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(lStat.st_mode))
      continue;
    ++lSurvey.mNum;
    lSurvey.mTotalSize += static_cast<unsigned long long>(lStat.st_size);
    if (strcmp(lpEntry->d_name, lSurvey.mNewest) > 0) utl::copyStr(lSurvey.mNewest, NAME_SIZE, lpEntry->d_name);
    if (strcmp(lpEntry->d_name, npPassed) <= 0) continue;
    if (lSurvey.mOldest[0] != '\0' && strcmp(lpEntry->d_name, lSurvey.mOldest) > 0) continue;
    utl::copyStr(lSurvey.mOldest, NAME_SIZE, lpEntry->d_name);
    lSurvey.mOldestSize = static_cast<unsigned long long>(lStat.st_size);
    lSurvey.mOldestTime = lStat.st_mtime;
  }
  if (strcmp(lSurvey.mOldest, lSurvey.mNewest) == 0) lSurvey.mOldest[0] = '\0';
  return lSurvey;
}

bool RetentionSweep::isOver(int nDirectory, const Survey& nSurvey) const {
  if (mLimits.mMaxTotalSize > 0 && nSurvey.mTotalSize > mLimits.mMaxTotalSize) return true;
  if (mLimits.mMaxFileNum > 0 && nSurvey.mNum > mLimits.mMaxFileNum) return true;
  if (mLimits.mMaxAgeSec > 0 && ::time(nullptr) - nSurvey.mOldestTime > static_cast<long long>(mLimits.mMaxAgeSec)) {
    return true;
  }
  struct statvfs lMedium;
  return mLimits.mMinFreeSize > 0 && ::fstatvfs(nDirectory, &lMedium) == 0 &&
         static_cast<unsigned long long>(lMedium.f_bavail) * lMedium.f_frsize < mLimits.mMinFreeSize;
}

bool RetentionSweep::remove(int nDirectory, const Survey& nSurvey, LogRetentionCounts* npCounts) {
  const char* const lpName = nSurvey.mOldest;
  if (::unlinkat(nDirectory, lpName, 0) == 0) {
    ++npCounts->mDeletedNum;
    npCounts->mDeletedSize += nSurvey.mOldestSize;
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_INFO, "LogRetention::apply(): Deleted: %s/%s", mDirectory, lpName);
    return true;
  }
  if (errno == ENOENT) return true;
  npCounts->mError = errno;
  if (strcmp(lpName, mTold) <= 0) return false;
  ++npCounts->mFailedNum;
  utl::copyStr(mTold, NAME_SIZE, lpName);
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogRetention::apply(): Can't delete: %s/%s errno=%d", mDirectory, lpName,
         npCounts->mError);
  return false;
}

// The oldest goes, then all is looked at again: others may write and delete there too.
bool RetentionSweep::run(LogRetentionCounts* npCounts) {
  const Directory lpDirectory(::opendir(mDirectory));
  if (lpDirectory == nullptr) {
    npCounts->mError = errno;
    if (!mIsDirectoryTold) {
      APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogRetention::apply(): Can't open: %s errno=%d", mDirectory, errno);
    }
    mIsDirectoryTold = true;
    return false;
  }
  mIsDirectoryTold = false;
  const int lDirectory = ::dirfd(lpDirectory.get());
  bool lIsDone = true;
  char lPassed[NAME_SIZE] = {};
  for (;;) {
    const Survey lSurvey = survey(lpDirectory.get(), lPassed);
    if (lSurvey.mOldest[0] == '\0' || !isOver(lDirectory, lSurvey)) break;
    if (isWrittenTo(lDirectory, lSurvey.mOldest)) {
      utl::copyStr(lPassed, NAME_SIZE, lSurvey.mOldest);
    } else if (!remove(lDirectory, lSurvey, npCounts)) {
      utl::copyStr(lPassed, NAME_SIZE, lSurvey.mOldest);
      lIsDone = false;
    }
  }
  return lIsDone;
}

}  // namespace nfw
