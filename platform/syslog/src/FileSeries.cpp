#include "FileSeries.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>

#include "Clock.h"

namespace syslogservice {

namespace {

const int SERIAL_NUM = 100;  // of files that are begun in one second

std::tm localTime() {
  const std::time_t lNow = std::time(nullptr);
  std::tm lTime = {};
  localtime_r(&lNow, &lTime);
  return lTime;
}

uint32_t dayMs() {
  const std::tm lTime = localTime();
  return static_cast<uint32_t>((lTime.tm_hour * 60 + lTime.tm_min) * 60 + lTime.tm_sec) * 1000;
}

}  // namespace

FileSeries::~FileSeries() {
  if (mFile >= 0) ::close(mFile);
}

int FileSeries::set(const BinaryLogFiles& nFiles) {
  const bool lIsSeries = nFiles.mpPrefix != nullptr;
  const int lLength = snprintf(mPath, sizeof(mPath), "%s%s%s", nFiles.mpDirectory, lIsSeries ? "/" : "",
                               lIsSeries ? nFiles.mpPrefix : "");
  const size_t lMax = sizeof(mPath) - (lIsSeries ? sizeof("_YYYYMMDD-hhmmss_NN.log") : 1);
  if (lLength < 0 || static_cast<size_t>(lLength) > lMax) return ENAMETOOLONG;
  mPrefixAt = lIsSeries ? static_cast<size_t>(lLength) : 0;
  mMaxSize = nFiles.mMaxSize;
  mMaxTimeMs = nFiles.mMaxTimeMs;
  mIsAligned = nFiles.mIsAligned;
  return 0;
}

int FileSeries::open() {
  const int lError = isSeries() ? openNext() : openFile(O_CREAT);
  if (lError == 0) begin();
  return lError;
}

/// A pipe without a reader is an error here, as it would be later.
int FileSeries::openFile(int nFlags) {
  mFile = ::open(mPath, O_WRONLY | nFlags | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, mode_t{0666});
  if (mFile < 0) return errno;
  fcntl(mFile, F_SETFL, O_APPEND);
  return 0;
}

/// The kernel lets one caller alone make a file.
int FileSeries::openNext() {
  const std::tm lTime = localTime();
  int lError = EEXIST;
  for (int lSerial = 0; lError == EEXIST && lSerial < SERIAL_NUM; ++lSerial) {
    snprintf(&mPath[mPrefixAt], sizeof(mPath) - mPrefixAt, "_%04d%02d%02d-%02d%02d%02d_%02d.log", lTime.tm_year + 1900,
             lTime.tm_mon + 1, lTime.tm_mday, lTime.tm_hour, lTime.tm_min, lTime.tm_sec, lSerial);
    lError = openFile(O_CREAT | O_EXCL);
  }
  return lError;
}

void FileSeries::begin() {
  mContent = {};
  mEndMs = utl::Clock::nowMs() + mMaxTimeMs - (mIsAligned && mMaxTimeMs > 0 ? dayMs() % mMaxTimeMs : 0);
}

void FileSeries::sync() const { fdatasync(mFile); }

bool FileSeries::isOver(uint32_t nSize) const {
  if (mContent.mNum == 0) return false;
  return (mMaxSize > 0 && mContent.mSize + nSize > mMaxSize) || (mMaxTimeMs > 0 && utl::Clock::nowMs() >= mEndMs);
}

uint32_t FileSeries::room() const {
  if (mMaxSize == 0) return UINT32_MAX;
  return mContent.mSize < mMaxSize ? static_cast<uint32_t>(mMaxSize - mContent.mSize) : 0;
}

void FileSeries::grow(uint32_t nSize, uint32_t nNum) {
  mContent.mSize += nSize;
  mContent.mNum += nNum;
}

bool FileSeries::isGone() const {
  struct stat lStat = {};
  return isSeries() && fstat(mFile, &lStat) == 0 && lStat.st_nlink == 0;
}

int FileSeries::turn() {
  const int lBefore = mFile;
  const int lError = openNext();
  if (lError != 0) {
    mFile = lBefore;
    return lError;
  }
  ::close(lBefore);
  begin();
  return 0;
}

}  // namespace syslogservice
