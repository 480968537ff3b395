#include "OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "Messages.h"

namespace logtool {

namespace {

// What a signal has to remove: one file is under way at a time.
char gTemporary[4096];
volatile sig_atomic_t gHasTemporary = 0;

const int END_SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

void removeAndEnd(int nSignal) {
  if (gHasTemporary != 0) ::unlink(gTemporary);
  ::signal(nSignal, SIG_DFL);
  ::raise(nSignal);
}

/// A file of a name that begins so. A signal that comes while it is made waits until it is known what to remove.
int makeNoted(std::string* npName) {
  sigset_t lEnds, lBefore;
  ::sigemptyset(&lEnds);
  for (const int lSignal : END_SIGNALS) ::sigaddset(&lEnds, lSignal);
  ::pthread_sigmask(SIG_BLOCK, &lEnds, &lBefore);
  const int lFd = ::mkostemp(npName->data(), O_CLOEXEC);
  memcpy(gTemporary, npName->c_str(), npName->size() + 1);
  gHasTemporary = lFd >= 0 ? 1 : 0;
  ::pthread_sigmask(SIG_SETMASK, &lBefore, nullptr);
  return lFd;
}

bool isSameFile(const std::string& nPath, const struct stat& nStat) {
  struct stat lStat = {};
  return ::stat(nPath.c_str(), &lStat) == 0 && lStat.st_dev == nStat.st_dev && lStat.st_ino == nStat.st_ino;
}

bool isInput(const struct stat& nStat, const std::vector<Recording>& nInputs) {
  for (const Recording& lRecording : nInputs) {
    for (const std::string& lPath : lRecording.mPaths) {
      if (lPath != "-" && isSameFile(lPath, nStat)) return true;
    }
  }
  return false;
}

}  // namespace

OutputFile::OutputFile() {
  for (const int lSignal : END_SIGNALS) ::signal(lSignal, removeAndEnd);
}

OutputFile::~OutputFile() {
  if (mTemporary.empty()) return;
  ::unlink(mTemporary.c_str());
  gHasTemporary = 0;
  ::close(mFd);
}

bool OutputFile::open(const std::string& nPath, bool nForce, const std::vector<Recording>& nInputs) {
  mPath = nPath;
  mForce = nForce;
  mFd = STDOUT_FILENO;
  if (nPath != "-") {
    struct stat lStat = {};
    const bool lExists = ::stat(nPath.c_str(), &lStat) == 0;
    if (lExists && isInput(lStat, nInputs)) return fail("is an input and stays as it is", 0);
    if (lExists && !S_ISREG(lStat.st_mode)) return fail("is no regular file", 0);
    if (lExists && !nForce) return fail("exists; --force replaces it", 0);
    if (!openTemporary()) return fail("cannot be made", errno);
  }
  mOutput = std::make_unique<tool::Output>(mFd);
  return true;
}

bool OutputFile::openTemporary() {
  std::string lName = mPath + ".XXXXXX";
  if (lName.size() >= sizeof(gTemporary)) {
    errno = ENAMETOOLONG;
    return false;
  }
  mFd = makeNoted(&lName);
  if (mFd < 0) return false;
  mTemporary = lName;
  const mode_t lMask = ::umask(0);
  ::umask(lMask);
  return ::fchmod(mFd, 0666 & ~lMask) == 0;
}

void OutputFile::spoil(const char* npWhat, int nError) {
  if (!mIsSpoilt) tell("{}: {}", npWhat, std::strerror(nError));
  mIsSpoilt = true;
}

bool OutputFile::commit() {
  mOutput->flush();
  if (mOutput->getState() == tool::Output::FAILED) return fail("cannot be written", mOutput->getError());
  if (mTemporary.empty() || mIsSpoilt) return !mIsSpoilt;
  if (::fsync(mFd) != 0) return fail("cannot be written", errno);
  // A name that has come into being meanwhile is not replaced either.
  const bool lIsNamed =
      mForce ? ::rename(mTemporary.c_str(), mPath.c_str()) == 0 : ::link(mTemporary.c_str(), mPath.c_str()) == 0;
  return lIsNamed || fail("cannot be named", errno);
}

bool OutputFile::fail(const char* npWhat, int nError) {
  const char* const lpName = mPath == "-" ? "standard output" : mPath.c_str();
  if (nError != 0) tell("{}: {}: {}", lpName, npWhat, std::strerror(nError));
  if (nError == 0) tell("{}: {}", lpName, npWhat);
  return false;
}

}  // namespace logtool
