#include "Events.h"

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>

namespace drive {

namespace {

sigset_t heededSignals() {
  sigset_t lSet;
  ::sigemptyset(&lSet);
  for (const int lSignal : {SIGINT, SIGTERM, SIGHUP, SIGUSR1}) ::sigaddset(&lSet, lSignal);
  return lSet;
}

}  // namespace

Events::Events() : mFd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  const sigset_t lSet = heededSignals();
  ::pthread_sigmask(SIG_BLOCK, &lSet, nullptr);
  mSignalFd = ::signalfd(-1, &lSet, SFD_CLOEXEC | SFD_NONBLOCK);
  ::signal(SIGPIPE, SIG_IGN);
}

Events::~Events() {
  ::close(mSignalFd);
  ::close(mFd);
}

void Events::notify(Event nEvent) {
  mPending.fetch_or(nEvent);
  ::eventfd_write(mFd, 1);
}

unsigned int Events::wait(const std::optional<Clock::time_point>& nDeadline) {
  for (;;) {
    takeSignals();
    const unsigned int lEvents = mPending.exchange(0);
    if (lEvents != 0) return lEvents;
    if (nDeadline && Clock::now() >= *nDeadline) return TIME_UP;
    pollfd lFds[] = {{mFd, POLLIN, 0}, {mSignalFd, POLLIN, 0}};
    ::poll(lFds, 2, timeout(nDeadline));
    eventfd_t lCount = 0;
    ::eventfd_read(mFd, &lCount);
  }
}

// Milliseconds for poll, rounded up.
int Events::timeout(const std::optional<Clock::time_point>& nDeadline) const {
  if (!nDeadline) return -1;
  const auto lLeft = std::chrono::ceil<std::chrono::milliseconds>(*nDeadline - Clock::now()).count();
  return static_cast<int>(std::clamp<long long>(lLeft, 0, 3600 * 1000));
}

void Events::takeSignals() {
  signalfd_siginfo lInfo = {};
  while (::read(mSignalFd, &lInfo, sizeof(lInfo)) == static_cast<ssize_t>(sizeof(lInfo))) {
    mPending.fetch_or(lInfo.ssi_signo == SIGUSR1 ? KEEP_ASKED : SIGNALLED);
  }
}

}  // namespace drive
