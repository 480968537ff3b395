#include "KeptFiles.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "Descriptor.h"
#include "DirectoryEntries.h"
#include "RotatedName.h"

namespace drive {

namespace {

// Those below give 0 or an errno.

int sync(const std::string& nPath) {
  const tool::Descriptor lFile(nPath, O_NONBLOCK | O_NOCTTY);
  return lFile.isOpen() && ::fsync(lFile.get()) == 0 ? 0 : errno;
}

bool isSameFile(const struct stat& nFile, const std::string& nPath) {
  struct stat lOther = {};
  return ::lstat(nPath.c_str(), &lOther) == 0 && lOther.st_ino == nFile.st_ino && lOther.st_dev == nFile.st_dev;
}

// A name that is taken is refused before anything else: nothing is replaced.
int keepFile(const std::string& nPath, const std::string& nKept) {
  if (::link(nPath.c_str(), nKept.c_str()) == 0) return sync(nKept);
  if (errno == EEXIST || errno == ENOENT) return errno;
  return std::rename(nPath.c_str(), nKept.c_str()) == 0 ? sync(nKept) : errno;
}

bool isWanted(const std::string& nPath, std::time_t nSince, struct stat* npStat) {
  return ::lstat(nPath.c_str(), npStat) == 0 && S_ISREG(npStat->st_mode) && npStat->st_mtime >= nSince;
}

void fail(KeptCounts& nKept, const std::string& nPath, int nError) {
  if (nError != 0 && nKept.mFault.empty()) nKept.mFault = nPath + ": " + std::strerror(nError);
}

// One that a limit has deleted meanwhile is none of the last files any more.
void keepOne(const std::string& nPath, const std::string& nKept, std::time_t nSince, KeptCounts& nCounts) {
  struct stat lStat = {};
  if (!isWanted(nPath, nSince, &lStat) || isSameFile(lStat, nKept)) return;
  const int lError = keepFile(nPath, nKept);
  if (lError == 0) ++nCounts.mNum;
  if (lError != ENOENT || isSameFile(lStat, nPath)) fail(nCounts, nKept, lError);
}

}  // namespace

KeptCounts keepFiles(const std::string& nDirectory, const std::string& nName, unsigned int nBeforeSec) {
  KeptCounts lCounts;
  const std::filesystem::path lPlace = std::filesystem::path(nDirectory) / "kept";
  const std::time_t lSince = std::time(nullptr) - static_cast<std::time_t>(nBeforeSec);
  if (::mkdir(lPlace.c_str(), 0777) != 0 && errno != EEXIST) {
    fail(lCounts, lPlace, errno);
    return lCounts;
  }
  const std::error_code lError = tool::forEachEntry(nDirectory, [&](const std::filesystem::path& nPath) {
    const std::string lFile = nPath.filename().string();
    if (lFile == nName || tool::rotatedPrefix(lFile) == nName) keepOne(nPath, lPlace / lFile, lSince, lCounts);
  });
  fail(lCounts, nDirectory, lError.value());
  fail(lCounts, lPlace, sync(lPlace));
  fail(lCounts, nDirectory, sync(nDirectory));
  return lCounts;
}

}  // namespace drive
