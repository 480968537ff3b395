#include "FileReplacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "Watched.h"

namespace nfw {
namespace {

const std::string SUFFIX = ".saving";

template <class Call>
auto retried(Call nCall) {
  auto lResult = nCall();
  while (lResult == -1 && errno == EINTR) lResult = nCall();
  return lResult;
}

size_t nameStart(const std::string& nPath) { return nPath.rfind('/') + 1; }  // 0 without "/"

// Cut where the name with its suffix were too long for a directory.
std::string temporaryName(const std::string& nPath) {
  return nPath.substr(0, nameStart(nPath) + NAME_MAX - SUFFIX.size()) + SUFFIX;
}

// Follows symbolic links, so that the file is replaced and not the link to it. Empty when it cannot be told.
std::string resolved(const char* npPath) {
  const std::unique_ptr<char, decltype(&free)> lpPath(realpath(npPath, nullptr), &free);
  return lpPath != nullptr ? std::string(lpPath.get()) : std::string();
}

bool isNamed(const struct stat& nOpen, const char* npPath) {
  struct stat lNamed;
  return lstat(npPath, &lNamed) == 0 && nOpen.st_dev == lNamed.st_dev && nOpen.st_ino == lNamed.st_ino;
}

// A file system that cannot tell when the bytes are on the medium is taken at its word.
bool sync(int nDescriptor) {
  return watched([nDescriptor] { return retried([nDescriptor] { return fsync(nDescriptor); }); }) == 0 ||
         errno == EINVAL;
}

// So that the new name survives a power cut as well. Without it the old file does: no failure.
void syncDirectory(const std::string& nPath) {
  const std::string lDirectory = nPath.substr(0, nameStart(nPath)) + ".";
  const int lDescriptor = ::open(lDirectory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (lDescriptor < 0) return;
  sync(lDescriptor);
  ::close(lDescriptor);
}

}  // namespace

FileReplacement::FileReplacement(const char* npPath) : mIsReady(prepare(npPath)) {}

FileReplacement::~FileReplacement() {
  if (mDescriptor < 0) return;
  if (mHasTemporary) ::unlink(mTemporary.c_str());
  ::close(mDescriptor);
}

bool FileReplacement::prepare(const char* npPath) {
  struct stat lOld;
  const bool lHasOld = ::stat(npPath, &lOld) == 0;
  if (lHasOld && S_ISREG(lOld.st_mode)) {
    mTarget = resolved(npPath);
    if (mTarget.empty() || ::access(npPath, W_OK) != 0) return false;
  } else if (!lHasOld && ::lstat(npPath, &lOld) != 0) {
    mTarget = npPath;
  }
  mTemporary = mTarget.empty() ? npPath : temporaryName(mTarget);
  if (mTarget.empty()) return true;
  if (!openTemporary(lHasOld ? lOld.st_mode & 0777u : 0666u)) return false;
  if (lHasOld) keepOwnership(lOld.st_mode & 0777u, lOld.st_uid, lOld.st_gid);
  return true;
}

// Opened again when, while it waited for the lock, the name was given to the file of the writer before.
bool FileReplacement::openTemporary(unsigned int nMode) {
  const char* const lpPath = mTemporary.c_str();
  const int lFlags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  for (;;) {
    mDescriptor = retried([&] { return ::open(lpPath, lFlags, static_cast<mode_t>(nMode)); });
    if (mDescriptor < 0) return false;
    watched([this] { return retried([this] { return flock(mDescriptor, LOCK_EX); }); });
    struct stat lOpen;
    if (fstat(mDescriptor, &lOpen) != 0 || !S_ISREG(lOpen.st_mode)) return false;
    mHasTemporary = isNamed(lOpen, lpPath);
    if (mHasTemporary) return true;
    ::close(mDescriptor);
  }
}

// As far as this process may: a file system without owners, or another's file, is no reason not to save.
void FileReplacement::keepOwnership(unsigned int nMode, unsigned int nUser, unsigned int nGroup) {
  const int lIgnored = fchown(mDescriptor, nUser, nGroup);
  static_cast<void>(lIgnored);
  fchmod(mDescriptor, static_cast<mode_t>(nMode));
}

bool FileReplacement::commit() {
  if (mTarget.empty()) return true;
  if (!sync(mDescriptor) || std::rename(mTemporary.c_str(), mTarget.c_str()) != 0) return false;
  syncDirectory(mTarget);
  mHasTemporary = false;
  return true;
}

}  // namespace nfw
