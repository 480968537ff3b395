#include "NfwZtFileCopy.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

namespace nfw {
namespace {

const unsigned int CHUNK_SIZE = 64 * 1024;

/// Closes on every way out.
class Descriptor {
 public:
  explicit Descriptor(int nValue) : mValue(nValue) {}
  ~Descriptor() {
    if (mValue >= 0) ::close(mValue);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return mValue; }

 private:
  int mValue;
};

/// One name further down, and up again on every way out.
class Descent {
 public:
  Descent(std::string& nPath, const char* npName) : mPath(nPath), mLength(nPath.size()) {
    mPath.append("/").append(npName);
  }
  ~Descent() { mPath.resize(mLength); }
  Descent(const Descent&) = delete;
  Descent& operator=(const Descent&) = delete;

 private:
  std::string& mPath;
  const size_t mLength;
};

bool isDots(const char* npName) { return strcmp(npName, ".") == 0 || strcmp(npName, "..") == 0; }

bool makeDirectory(const char* npPath) { return ::mkdir(npPath, 0777) == 0 || errno == EEXIST; }

bool writeAll(int nFile, const char* npBytes, size_t nSize) {
  while (nSize > 0) {
    const ssize_t lDone = ::write(nFile, npBytes, nSize);
    if (lDone < 0 && errno == EINTR) continue;
    if (lDone <= 0) return false;
    npBytes += lDone;
    nSize -= static_cast<size_t>(lDone);
  }
  return true;
}

}  // namespace

ZtFileCopy::ZtFileCopy() : mpChunk(new (std::nothrow) char[CHUNK_SIZE]) {}

int ZtFileCopy::execute(const char* npSource, const char* npDestination, int /*nOption*/) {
  if (npSource == nullptr || npDestination == nullptr || mpChunk == nullptr) return FAILED;
  if (mIsCanceled) return CANCELED;
  mSource = npSource;
  mDestination = npDestination;
  struct stat lSource;
  if (::stat(npSource, &lSource) != 0 || !S_ISDIR(lSource.st_mode)) return FAILED;
  if (!makeDirectory(npDestination) || ::stat(npDestination, &mTop) != 0) return FAILED;
  return isDestination(lSource) ? FAILED : copyDirectory();
}

int ZtFileCopy::copyDirectory() {
  DIR* const lpDirectory = ::opendir(mSource.c_str());
  if (lpDirectory == nullptr) return FAILED;
  int lResult = DONE;
  for (;;) {
    errno = 0;
    const dirent* const lpEntry = ::readdir(lpDirectory);
    if (lpEntry == nullptr && errno != 0) lResult = std::max<int>(lResult, FAILED);
    if (lpEntry == nullptr) break;
    if (isDots(lpEntry->d_name)) continue;
    const Descent lSource(mSource, lpEntry->d_name), lDestination(mDestination, lpEntry->d_name);
    lResult = std::max(lResult, copyEntry());
    if (lResult == CANCELED) break;
  }
  ::closedir(lpDirectory);
  return lResult;
}

int ZtFileCopy::copyEntry() {
  if (mIsCanceled) return CANCELED;
  struct stat lStat;
  if (::lstat(mSource.c_str(), &lStat) != 0) return FAILED;
  if (S_ISREG(lStat.st_mode)) return copyFile();
  if (!S_ISDIR(lStat.st_mode) || isDestination(lStat)) return DONE;
  return makeDirectory(mDestination.c_str()) ? copyDirectory() : FAILED;
}

int ZtFileCopy::copyFile() {
  const Descriptor lSource(::open(mSource.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (lSource.get() < 0) return FAILED;
  const int lFlags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW;
  const Descriptor lDestination(::open(mDestination.c_str(), lFlags, 0666));
  return lDestination.get() < 0 ? FAILED : copyBytes(lSource.get(), lDestination.get());
}

int ZtFileCopy::copyBytes(int nSource, int nDestination) {
  while (!mIsCanceled) {
    const ssize_t lSize = ::read(nSource, mpChunk.get(), CHUNK_SIZE);
    if (lSize < 0 && errno == EINTR) continue;
    if (lSize < 0) return FAILED;
    if (lSize == 0) return DONE;
    if (!writeAll(nDestination, mpChunk.get(), static_cast<size_t>(lSize))) return FAILED;
  }
  return CANCELED;
}

bool ZtFileCopy::isDestination(const struct stat& nStat) const {
  return nStat.st_dev == mTop.st_dev && nStat.st_ino == mTop.st_ino;
}

}  // namespace nfw
