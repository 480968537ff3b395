#include "Stopper.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>

namespace tool {

Stopper::Stopper() : mFd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

Stopper::~Stopper() { ::close(mFd); }

void Stopper::request() {
  {
    const std::lock_guard<std::mutex> lLock(mMutex);
    mRequested = true;
  }
  mWake.notify_all();
  ::eventfd_write(mFd, 1);
}

bool Stopper::isRequested() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mRequested;
}

bool Stopper::waitUntil(Clock::time_point nTime) {
  std::unique_lock<std::mutex> lLock(mMutex);
  return !mWake.wait_until(lLock, nTime, [this] { return mRequested; });
}

bool Stopper::waitFor(int nFd, short nEvents) const {
  pollfd lFds[] = {{nFd, nEvents, 0}, {mFd, POLLIN, 0}};
  int lResult = 0;
  do {
    lResult = ::poll(lFds, 2, -1);
  } while (lResult < 0 && errno == EINTR);
  return lResult > 0 && lFds[1].revents == 0;
}

}  // namespace tool
