// One look at the files of a recording, deleting what is over its limits.
#pragma once

#include <dirent.h>

#include "LogFilePath.h"
#include "NfwLogRetention.h"

namespace nfw {

/// Not locked: one thread at a time.
class RetentionSweep {
 public:
  explicit RetentionSweep(const LogRetentionLimits& nLimits) : mLimits(nLimits) {}

  bool setFiles(const char* npDirectory, const char* npFilePrefix);  ///< false when they are too long
  /// False when the directory cannot be read, or a file that is over a limit could not be deleted.
  bool run(LogRetentionCounts* npCounts);

 private:
  static constexpr unsigned int NAME_SIZE = 256;
  struct Survey {
    unsigned int mNum = 0;
    unsigned long long mTotalSize = 0;
    char mOldest[NAME_SIZE] = {};  // of those that may go; empty: there is none
    unsigned long long mOldestSize = 0;
    long long mOldestTime = 0;  // seconds of its last write
    char mNewest[NAME_SIZE] = {};
  };

  Survey survey(DIR* npDirectory, const char* npPassed) const;
  bool isOver(int nDirectory, const Survey& nSurvey) const;
  bool remove(int nDirectory, const Survey& nSurvey, LogRetentionCounts* npCounts);

  const LogRetentionLimits mLimits;
  char mDirectory[LOG_PATH_SIZE] = {};
  char mFilePrefix[LOG_PATH_SIZE] = {};
  char mTold[NAME_SIZE] = {};  // the last whose failure was told; older ones were before
  bool mIsDirectoryTold = false;
};

}  // namespace nfw
