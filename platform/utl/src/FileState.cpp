#include "FileState.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

namespace utl {

namespace {

static_assert(sizeof(off_t) == 8, "files beyond 2 GiB on every target");

const unsigned int WINDOW_SIZE = 16 * 1024;

template <class Call>
auto retried(Call nCall) {
  auto lResult = nCall();
  while (lResult == -1 && errno == EINTR) lResult = nCall();
  return lResult;
}

// Takes the first bytes off the parts.
void dropFirst(iovec* npParts, int nCount, size_t nSize) {
  for (int i = 0; i < nCount && nSize > 0; ++i) {
    const size_t lTaken = std::min(nSize, npParts[i].iov_len);
    npParts[i].iov_base = static_cast<char*>(npParts[i].iov_base) + lTaken;
    npParts[i].iov_len -= lTaken;
    nSize -= lTaken;
  }
}

}  // namespace

// Non-blocking, as a pipe without a writer would hold the caller up before it is seen not to be a regular file.
bool File::State::openToRead() {
  if (mpWindow == nullptr) mpWindow.reset(new (std::nothrow) char[WINDOW_SIZE]);
  if (mpWindow == nullptr) return false;
  mFile = retried([this] { return ::open(mPath.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
  struct stat lStat;
  if (mFile >= 0 && fstat(mFile, &lStat) == 0 && S_ISREG(lStat.st_mode)) return true;
  close();
  return false;
}

bool File::State::openToWrite() {
  const int lFlags = O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY | O_CLOEXEC;
  mFile = retried([&] { return ::open(mPath.c_str(), lFlags, mode_t{0666}); });
  mIsWriting = mFile >= 0;
  return mIsWriting;
}

bool File::State::sync() {
  if (::fdatasync(mFile) != 0) return false;
  mIsNameSynced = mIsNameSynced || syncName();
  return mIsNameSynced;
}

bool File::State::syncName() {
  const size_t lSlash = mPath.rfind('/');
  const std::string lDirectory = lSlash == std::string::npos ? "." : mPath.substr(0, lSlash + 1);
  const int lFile = ::open(lDirectory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (lFile < 0) return false;
  const bool lIsDone = ::fsync(lFile) == 0 || errno == EINVAL;  // a file system may have nothing to sync there
  ::close(lFile);
  return lIsDone;
}

void File::State::close() {
  if (mFile >= 0) ::close(mFile);
  mFile = -1;
  mIsWriting = false;
  mHasFailed = false;
  mPosition = 0;
  mWindowSize = 0;
  mIsNameSynced = false;
}

bool File::State::kernelSize(unsigned long long* npSize) const {
  struct stat lStat;
  if (mFile < 0 || fstat(mFile, &lStat) != 0) return false;
  *npSize = static_cast<unsigned long long>(lStat.st_size);
  return true;
}

bool File::State::hasName() const {
  struct stat lStat;
  return mFile < 0 || fstat(mFile, &lStat) != 0 || lStat.st_nlink > 0;
}

// Puts the window at the position; at the end of the file it is empty.
bool File::State::fetch() {
  const off_t lPosition = static_cast<off_t>(mPosition);
  const ssize_t lSize = retried([&] { return pread(mFile, mpWindow.get(), WINDOW_SIZE, lPosition); });
  mWindowStart = mPosition;
  mWindowSize = lSize > 0 ? static_cast<unsigned int>(lSize) : 0;
  return lSize >= 0;
}

bool File::State::isInWindow() const { return mPosition >= mWindowStart && mPosition - mWindowStart < mWindowSize; }

int File::State::view(const char** nppBytes) {
  if (!isInWindow() && !fetch()) return RESULT_ERROR;
  const unsigned int lOffset = static_cast<unsigned int>(mPosition - mWindowStart);
  *nppBytes = mpWindow.get() + lOffset;
  return static_cast<int>(mWindowSize - lOffset);
}

// What is at least a window is not copied through it.
int File::State::take(char* npBuffer, unsigned int nSize) {
  if (nSize >= WINDOW_SIZE && !isInWindow()) {
    const ssize_t lSize = retried([&] { return pread(mFile, npBuffer, nSize, static_cast<off_t>(mPosition)); });
    if (lSize > 0) mPosition += static_cast<unsigned long long>(lSize);
    return static_cast<int>(lSize);
  }
  const char* lpBytes = nullptr;
  const int lSeen = view(&lpBytes);
  if (lSeen <= 0) return lSeen;
  const unsigned int lCount = std::min(nSize, static_cast<unsigned int>(lSeen));
  memcpy(npBuffer, lpBytes, lCount);
  mPosition += lCount;
  return static_cast<int>(lCount);
}

bool File::State::writeAll(iovec* npParts, int nCount) {
  size_t lLeft = 0;
  for (int i = 0; i < nCount; ++i) lLeft += npParts[i].iov_len;
  while (lLeft > 0) {
    const ssize_t lDone = retried([&] { return writev(mFile, npParts, nCount); });
    if (lDone <= 0) {
      mHasFailed = true;
      return false;
    }
    dropFirst(npParts, nCount, static_cast<size_t>(lDone));
    mPosition += static_cast<unsigned long long>(lDone);
    lLeft -= static_cast<size_t>(lDone);
  }
  return true;
}

bool File::State::moveTo(long long nPosition) {
  if (nPosition < 0 || (mIsWriting && lseek(mFile, nPosition, SEEK_SET) < 0)) return false;
  mPosition = static_cast<unsigned long long>(nPosition);
  return true;
}

bool File::State::cutAt(unsigned long long nSize) {
  const off_t lSize = static_cast<off_t>(nSize);
  return lSize >= 0 && retried([&] { return ftruncate(mFile, lSize); }) == 0 && moveTo(lSize);
}

}  // namespace utl
