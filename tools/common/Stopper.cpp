#include "Stopper.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>

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

Stopper::Outcome Stopper::waitFor(int nFd, short nEvents, std::chrono::milliseconds nLimit) const {
  const Clock::time_point lEnd = Clock::now() + nLimit;
  pollfd lFds[] = {{nFd, nEvents, 0}, {mFd, POLLIN, 0}};
  int lResult = 0;
  do {
    const auto lLeft = std::chrono::ceil<std::chrono::milliseconds>(lEnd - Clock::now()).count();
    lResult = ::poll(lFds, 2, nLimit.count() > 0 ? static_cast<int>(std::clamp<int64_t>(lLeft, 0, INT_MAX)) : -1);
  } while (lResult < 0 && errno == EINTR);
  if (lResult == 0) return EXPIRED;
  return lResult > 0 && lFds[1].revents == 0 ? READY : STOPPED;
}

}  // namespace tool
