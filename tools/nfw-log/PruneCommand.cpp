#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>

#include "Commands.h"
#include "Descriptor.h"
#include "Messages.h"
#include "NfwAppLog.h"
#include "NfwLogRetention.h"
#include "OutputFile.h"
#include "PrintableText.h"
#include "RotatedName.h"
#include "WriterCheck.h"

namespace logtool {

namespace {

struct LogFile {
  std::string mPath;
  uint64_t mSize;
  uint64_t mOnMedium;  // what deleting it sets free
  std::time_t mTime;   // of its last write
};
using LogFiles = std::vector<LogFile>;

/// One prefix in one directory.
struct Shelf {
  std::string mDirectory, mPrefix;
  LogFiles mFiles;  // by name, which is by age
};

Shelf shelfOf(const Recording& nRecording) {
  const std::filesystem::path lFirst(nRecording.mPaths.front());
  Shelf lShelf{lFirst.parent_path().string(), tool::rotatedPrefix(lFirst.filename().string()).value_or(""), {}};
  for (const std::string& lPath : nRecording.mPaths) {
    struct stat lStat = {};
    if (::lstat(lPath.c_str(), &lStat) != 0 || !S_ISREG(lStat.st_mode)) continue;
    const uint64_t lOnMedium = lStat.st_nlink > 1 ? 0 : static_cast<uint64_t>(lStat.st_blocks) * 512;
    lShelf.mFiles.push_back({lPath, static_cast<uint64_t>(lStat.st_size), lOnMedium, lStat.st_mtime});
  }
  std::sort(lShelf.mFiles.begin(), lShelf.mFiles.end(),
            [](const LogFile& n, const LogFile& nOther) { return n.mPath < nOther.mPath; });
  return lShelf;
}

uint64_t freeOn(const std::string& nDirectory) {
  struct statvfs lMedium = {};
  if (::statvfs(nDirectory.c_str(), &lMedium) != 0) return UINT64_MAX;
  return static_cast<uint64_t>(lMedium.f_bavail) * lMedium.f_frsize;
}

bool isWrittenTo(const std::string& nPath) {
  const tool::Descriptor lFile(nPath, O_NONBLOCK | O_NOCTTY | O_NOFOLLOW);
  return lFile.isOpen() && tool::writerError(lFile.get()) == EAGAIN;
}

/// What would be left while files go, by the rules of nfw::LogRetention.
class Stock {
 public:
  Stock(const Shelf& nShelf, uint64_t nFree) : mNum(nShelf.mFiles.size()), mFree(nFree) {
    for (const LogFile& lFile : nShelf.mFiles) mSize += lFile.mSize;
  }

  bool isOver(const nfw::LogRetentionLimits& nLimits, const LogFile& nOldest) const {
    const auto lAge = static_cast<long long>(std::time(nullptr) - nOldest.mTime);
    return (nLimits.mMaxTotalSize > 0 && mSize > nLimits.mMaxTotalSize) ||
           (nLimits.mMaxFileNum > 0 && mNum > nLimits.mMaxFileNum) ||
           (nLimits.mMaxAgeSec > 0 && lAge > static_cast<long long>(nLimits.mMaxAgeSec)) ||
           mFree < nLimits.mMinFreeSize;
  }
  void take(const LogFile& nFile) {
    mSize -= nFile.mSize;
    --mNum;
    mFree += nFile.mOnMedium;
  }

 private:
  uint64_t mSize = 0, mNum, mFree;
};

LogFiles wouldGo(const Shelf& nShelf, const nfw::LogRetentionLimits& nLimits, uint64_t nFreed) {
  Stock lStock(nShelf, freeOn(nShelf.mDirectory) + nFreed);
  LogFiles lGoing;
  for (size_t i = 0; i + 1 < nShelf.mFiles.size() && lStock.isOver(nLimits, nShelf.mFiles[i]); ++i) {
    if (isWrittenTo(nShelf.mFiles[i].mPath)) continue;
    lStock.take(nShelf.mFiles[i]);
    lGoing.push_back(nShelf.mFiles[i]);
  }
  return lGoing;
}

bool isGone(const LogFile& nFile) {
  struct stat lStat = {};
  return ::lstat(nFile.mPath.c_str(), &lStat) != 0 && errno == ENOENT;
}

/// What has gone; false when not all that should have has.
bool removeOldest(const Shelf& nShelf, const nfw::LogRetentionLimits& nLimits, LogFiles* npGone) {
  nfw::registerLogType(nfw::LOG_TYPE_NFW, "NFW", nfw::LOG_LEVEL_NONE);  // what it would say is said here
  nfw::LogRetention lRetention(nShelf.mDirectory.c_str(), nShelf.mPrefix.c_str(), nLimits);
  const bool lIsDone = lRetention.apply();
  std::copy_if(nShelf.mFiles.begin(), nShelf.mFiles.end(), std::back_inserter(*npGone), isGone);
  if (lIsDone) return true;
  const nfw::LogRetentionCounts lCounts = lRetention.getCounts();
  const char* const lpWhy = lCounts.mError == 0 ? "the path is too long" : std::strerror(lCounts.mError);
  tell("{}/{}: {} over the limits not deleted: {}", nShelf.mDirectory, nShelf.mPrefix,
       countText(lCounts.mFailedNum, "file"), lpWhy);
  return false;
}

/// One run over all that the command line names.
class Pruning {
 public:
  explicit Pruning(const Options& nOptions, OutputFile& nOutput) : mOptions(nOptions), mOutput(nOutput) {}

  void prune(const Shelf& nShelf) {
    LogFiles lGone;
    if (mOptions.mIsDryRun) {
      lGone = wouldGo(nShelf, mOptions.mKeep, mFreed);
    } else if (!removeOldest(nShelf, mOptions.mKeep, &lGone)) {
      mHasFailed = true;
    }
    for (const LogFile& lFile : lGone) note(lFile);
    mAll += nShelf.mFiles.size();
  }
  void end() {
    mOutput.write(fmt::format("{} of {} {}deleted, {}\n", mNum, countText(mAll, "file"),
                              mOptions.mIsDryRun ? "would be " : "", countText(mSize, "byte")));
  }
  bool hasFailed() const { return mHasFailed; }

 private:
  void note(const LogFile& nFile) {
    mOutput.write(fmt::format("{}: {}\n", tool::printableText(nFile.mPath), countText(nFile.mSize, "byte")));
    ++mNum;
    mSize += nFile.mSize;
    if (mOptions.mIsDryRun) mFreed += nFile.mOnMedium;
  }

  const Options& mOptions;
  OutputFile& mOutput;
  uint64_t mAll = 0, mNum = 0, mSize = 0, mFreed = 0;
  bool mHasFailed = false;
};

/// False, with a line on standard error, where the command line names what cannot be pruned.
bool findShelves(const Run& nRun, std::vector<Shelf>* npShelves) {
  for (const Recording& lRecording : nRun.getRecordings()) {
    if (lRecording.mDirectory == 0) {
      tell("{}: no directory; expected the directory of a recording", lRecording.mName);
      return false;
    }
    const std::string lName = std::filesystem::path(lRecording.mPaths.front()).filename().string();
    const std::optional<std::string> lPrefix = tool::rotatedPrefix(lName);
    const std::string& lWanted = nRun.getOptions().mPrefix;
    if (lPrefix && (lWanted.empty() || *lPrefix == lWanted)) npShelves->push_back(shelfOf(lRecording));
  }
  if (!npShelves->empty()) return true;
  tell("no recording of files PREFIX_YYYYMMDD-hhmmss_NN.log with such a prefix");
  return false;
}

}  // namespace

int runPrune(Run& nRun) {
  std::vector<Shelf> lShelves;
  if (!findShelves(nRun, &lShelves)) return EXIT_TROUBLE;
  OutputFile lOutput;
  if (!lOutput.open("-", false, {})) return EXIT_FOUND;
  Pruning lPruning(nRun.getOptions(), lOutput);
  for (const Shelf& lShelf : lShelves) lPruning.prune(lShelf);
  lPruning.end();
  return lOutput.commit() && !lPruning.hasFailed() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace logtool
