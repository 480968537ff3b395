#include "PtyRoad.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "DriveLog.h"

namespace drive {

namespace {

const char TERMINALS[] = "/dev/pts/";

// A line that passes bytes as they are, and has been hung up: its first reader is seen to come.
bool setUp(int nFd, const char* npLine) {
  termios lState = {};
  const int lReader = ::open(npLine, O_RDWR | O_NOCTTY | O_CLOEXEC);
  bool lIsDone = lReader >= 0 && ::tcgetattr(lReader, &lState) == 0;
  ::cfmakeraw(&lState);
  lIsDone = lIsDone && ::tcsetattr(nFd, TCSANOW, &lState) == 0;
  if (lReader >= 0) ::close(lReader);
  return lIsDone;
}

std::string target(const std::string& nPath) {
  char lText[64] = "";
  const ssize_t lSize = ::readlink(nPath.c_str(), lText, sizeof(lText));
  return {lText, static_cast<size_t>(std::max<ssize_t>(lSize, 0))};
}

}  // namespace

void PtyRoad::close() {
  if (!mLine.empty() && target(mAddress.mPath) == mLine) ::unlink(mAddress.mPath.c_str());
  mLine.clear();
  Road::close();
}

bool PtyRoad::open(std::string* npReason) {
  char lLine[64] = "";
  mFd.reset(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  const bool lIsOpen = mFd.isOpen() && ::grantpt(mFd.get()) == 0 && ::unlockpt(mFd.get()) == 0 &&
                       ::ptsname_r(mFd.get(), lLine, sizeof(lLine)) == 0 && setUp(mFd.get(), lLine);
  if (lIsOpen) return link(lLine, npReason);
  *npReason = std::strerror(errno);
  return false;
}

// A run that was killed leaves its link, which goes; nothing else does.
bool PtyRoad::link(const char* npLine, std::string* npReason) {
  if (target(mAddress.mPath).rfind(TERMINALS, 0) == 0) ::unlink(mAddress.mPath.c_str());
  if (::symlink(npLine, mAddress.mPath.c_str()) == 0) {
    mLine = npLine;
    return true;
  }
  *npReason = std::strerror(errno);
  return false;
}

void PtyRoad::collect(std::vector<pollfd>* npFds) const {
  npFds->push_back({mIsRead && mAt != mRing.getEnd() ? mFd.get() : -1, POLLOUT, 0});
}

const pollfd* PtyRoad::serve(const pollfd* npFds) {
  pollfd lFd = {mFd.get(), POLLOUT, 0};
  ::poll(&lFd, 1, 0);
  noteReader((lFd.revents & POLLHUP) == 0);
  discardInput();
  if (!mIsRead || mAt == mRing.getEnd()) mTaken = Clock::now();
  if (!mIsRead) mAt = mRing.getEnd();
  send();
  const bool lIsFull = mRing.getEnd() - mAt > mLimits.mRoom / 2 || Clock::now() - mTaken > mLimits.mStall;
  if (lIsFull && mAt != mRing.getEnd()) skip();
  return npFds + 1;
}

void PtyRoad::noteReader(bool nIsThere) {
  if (nIsThere == mIsRead) return;
  mIsRead = nIsThere;
  mCounts.mClients += nIsThere ? 1 : 0;
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "%s: %s", mName.c_str(), nIsThere ? "is read" : "is not read any more");
}

// What its reader asks of a receiver.
void PtyRoad::discardInput() {
  char lBuffer[256];
  while (::read(mFd.get(), lBuffer, sizeof(lBuffer)) > 0) {
  }
}

void PtyRoad::send() {
  char lBuffer[4096];
  int lSize = 0;
  while ((lSize = mRing.read(mAt, lBuffer, sizeof(lBuffer))) > 0) {
    const ssize_t lTaken = ::write(mFd.get(), lBuffer, static_cast<size_t>(lSize));
    if (lTaken <= 0) return;
    mAt += static_cast<uint64_t>(lTaken);
    mTaken = Clock::now();
    mIsStalled = false;
  }
}

// A line cannot be closed on its reader: what it does not take is left out.
void PtyRoad::skip() {
  char lBuffer[4096];
  int lSize = 0;
  while ((lSize = mRing.read(mAt, lBuffer, sizeof(lBuffer))) > 0) {
    mCounts.mLost += static_cast<uint64_t>(std::count(lBuffer, lBuffer + lSize, '\n'));
    mAt += static_cast<uint64_t>(lSize);
  }
  mAt = mRing.getEnd();
  if (!mIsStalled) {
    ++mCounts.mDropped;
    APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_WARNING, "%s: its reader does not read: sentences are left out",
           mName.c_str());
  }
  mIsStalled = true;
}

// Closing the line would throw away what its reader has not taken yet.
bool PtyRoad::isDone() const {
  if (!mIsRead) return true;
  int lWaiting = 0;
  const int lReader = ::open(mLine.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (lReader >= 0) ::ioctl(lReader, FIONREAD, &lWaiting);
  if (lReader >= 0) ::close(lReader);
  return mAt == mRing.getEnd() && lWaiting == 0;
}

}  // namespace drive
