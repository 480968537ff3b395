// Futexes, clocks, sleeps and polls.
#undef _FORTIFY_SOURCE  // it has bodies for these functions

#include <linux/futex.h>
#include <poll.h>
#include <sched.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <ctime>

#include "Real.h"
#include "Scheduler.h"
#include "VirtualTime.h"

namespace schedule {

namespace {

const unsigned int SPURIOUS = 16;  // one wait of so many, where there are any

long failWith(int nError) {
  errno = nError;
  return -1;
}

int64_t dueOf(int nOperation, const timespec* npTime) {
  if (npTime == nullptr) return NEVER;
  return nOperation == FUTEX_WAIT ? Scheduler::active()->nowNs() + nsOf(*npTime) : monotonicNs(*npTime);
}

long futexWait(Scheduler& nScheduler, int* npWord, int nOperation, int nExpected, const timespec* npTime) {
  nScheduler.point("goes to sleep on", npWord);
  if (__atomic_load_n(npWord, __ATOMIC_SEQ_CST) != nExpected) return failWith(EAGAIN);
  Strategy& lStrategy = nScheduler.strategy();
  if (lStrategy.mHasSpuriousWakes && lStrategy.random().below(SPURIOUS) == 0) return 0;
  return nScheduler.wait("sleeps on", npWord, dueOf(nOperation, npTime)) ? 0 : failWith(ETIMEDOUT);
}

long futex(Scheduler& nScheduler, int* npWord, int nOperation, int nValue, const timespec* npTime) {
  const int lOperation = nOperation & FUTEX_CMD_MASK;
  if (lOperation == FUTEX_WAIT || lOperation == FUTEX_WAIT_BITSET) {
    return futexWait(nScheduler, npWord, lOperation, nValue, npTime);
  }
  if (lOperation != FUTEX_WAKE) nScheduler.fail("an operation of the futex that the scheduler does not know");
  nScheduler.point("wakes", npWord);
  nScheduler.wake(npWord, static_cast<unsigned int>(nValue));
  return 0;
}

struct Poll {
  pollfd* mpFiles;
  nfds_t mNum;
};

bool isReady(void* npPoll) {
  const Poll* const lpPoll = static_cast<const Poll*>(npPoll);
  return REAL(poll)(lpPoll->mpFiles, lpPoll->mNum, 0) != 0;
}

int sleepUntil(int64_t nDueNs) {
  Scheduler::active()->wait("sleeps", nullptr, nDueNs);
  return 0;
}

}  // namespace
}  // namespace schedule

using schedule::Scheduler;

extern "C" {

long syscall(long nNumber, ...) {
  va_list lList;
  va_start(lList, nNumber);
  long lValues[6];
  for (long& lEach : lValues) lEach = va_arg(lList, long);
  va_end(lList);
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler != nullptr && nNumber == SYS_futex) {
    return schedule::futex(*lpScheduler, reinterpret_cast<int*>(lValues[0]), static_cast<int>(lValues[1]),
                           static_cast<int>(lValues[2]), reinterpret_cast<const timespec*>(lValues[3]));
  }
  return REAL(syscall)(nNumber, lValues[0], lValues[1], lValues[2], lValues[3], lValues[4], lValues[5]);
}

int clock_gettime(clockid_t nClock, timespec* npTime) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return REAL(clock_gettime)(nClock, npTime);
  const bool lIsTimeOfDay = nClock == CLOCK_REALTIME || nClock == CLOCK_REALTIME_COARSE;
  *npTime = schedule::timeOf(lpScheduler->nowNs() + (lIsTimeOfDay ? schedule::TIME_OF_DAY_NS : 0));
  return 0;
}

time_t time(time_t* npTime) {
  timespec lTime = {};
  clock_gettime(CLOCK_REALTIME, &lTime);
  if (npTime != nullptr) *npTime = lTime.tv_sec;
  return lTime.tv_sec;
}

int gettimeofday(timeval* npTime, void* /*npZone*/) {
  timespec lTime = {};
  clock_gettime(CLOCK_REALTIME, &lTime);
  *npTime = {lTime.tv_sec, lTime.tv_nsec / 1000};
  return 0;
}

int nanosleep(const timespec* npTime, timespec* npLeft) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return REAL(nanosleep)(npTime, npLeft);
  return schedule::sleepUntil(lpScheduler->nowNs() + schedule::nsOf(*npTime));
}

int clock_nanosleep(clockid_t nClock, int nFlags, const timespec* npTime, timespec* npLeft) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return REAL(clock_nanosleep)(nClock, nFlags, npTime, npLeft);
  const bool lIsAbsolute = (nFlags & TIMER_ABSTIME) != 0;
  return schedule::sleepUntil(lIsAbsolute ? schedule::monotonicNs(*npTime)
                                          : lpScheduler->nowNs() + schedule::nsOf(*npTime));
}

int sched_yield() {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return REAL(sched_yield)();
  lpScheduler->yield();
  return 0;
}

int poll(pollfd* npFiles, nfds_t nNum, int nTimeoutMs) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return REAL(poll)(npFiles, nNum, nTimeoutMs);
  lpScheduler->point("polls", nullptr);
  const int64_t lDueNs = nTimeoutMs < 0 ? schedule::NEVER : lpScheduler->nowNs() + nTimeoutMs * schedule::NS_PER_MS;
  schedule::Poll lPoll = {npFiles, nNum};
  if (nTimeoutMs != 0 && !schedule::isReady(&lPoll)) {
    lpScheduler->waitUntilReady("polls", &schedule::isReady, &lPoll, lDueNs);
  }
  return REAL(poll)(npFiles, nNum, 0);
}

}  // extern "C"
