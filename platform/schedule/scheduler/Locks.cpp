// Locks and conditions. The C library's mutex keeps its state; only the waiting for it is ours.
#include <pthread.h>

#include <cerrno>
#include <ctime>

#include "Real.h"
#include "Scheduler.h"
#include "VirtualTime.h"

namespace schedule {

namespace {

int lock(pthread_mutex_t* npMutex) {
  Scheduler& lScheduler = *Scheduler::active();
  for (;;) {
    const int lResult = REAL(pthread_mutex_trylock)(npMutex);
    if (lResult == 0) lScheduler.took(npMutex);
    if (lResult != EBUSY) return lResult;
    lScheduler.wait("waits for the lock", npMutex);
  }
}

int unlock(pthread_mutex_t* npMutex) {
  Scheduler::active()->released(npMutex);
  const int lResult = REAL(pthread_mutex_unlock)(npMutex);
  Scheduler::active()->wake(npMutex, 1);
  return lResult;
}

int await(pthread_cond_t* npCondition, pthread_mutex_t* npMutex, int64_t nDueNs) {
  Scheduler& lScheduler = *Scheduler::active();
  lScheduler.point("goes to wait", npCondition);
  unlock(npMutex);
  const bool lIsInTime = lScheduler.wait("waits on the condition", npCondition, nDueNs);
  lock(npMutex);
  return lIsInTime ? 0 : ETIMEDOUT;
}

int notify(pthread_cond_t* npCondition, unsigned int nNum) {
  Scheduler& lScheduler = *Scheduler::active();
  lScheduler.point("notifies", npCondition);
  lScheduler.wake(npCondition, nNum);
  return 0;
}

}  // namespace
}  // namespace schedule

using schedule::Scheduler;

extern "C" {

int pthread_mutex_lock(pthread_mutex_t* npMutex) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return REAL(pthread_mutex_lock)(npMutex);
  lpScheduler->point("locks", npMutex);
  return schedule::lock(npMutex);
}

int pthread_mutex_trylock(pthread_mutex_t* npMutex) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler != nullptr) lpScheduler->point("tries to lock", npMutex);
  const int lResult = REAL(pthread_mutex_trylock)(npMutex);
  if (lpScheduler != nullptr && lResult == 0) lpScheduler->took(npMutex);
  return lResult;
}

int pthread_mutex_unlock(pthread_mutex_t* npMutex) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return REAL(pthread_mutex_unlock)(npMutex);
  lpScheduler->point("unlocks", npMutex);
  return schedule::unlock(npMutex);
}

int pthread_cond_wait(pthread_cond_t* npCondition, pthread_mutex_t* npMutex) {
  if (Scheduler::active() == nullptr) return REAL(pthread_cond_wait)(npCondition, npMutex);
  return schedule::await(npCondition, npMutex, schedule::NEVER);
}

// The clock of the condition is not asked: no monotonic time of a run is as late as its time of day.
int pthread_cond_timedwait(pthread_cond_t* npCondition, pthread_mutex_t* npMutex, const timespec* npUntil) {
  if (Scheduler::active() == nullptr) return REAL(pthread_cond_timedwait)(npCondition, npMutex, npUntil);
  return schedule::await(npCondition, npMutex, schedule::monotonicNs(*npUntil));
}

int pthread_cond_clockwait(pthread_cond_t* npCondition, pthread_mutex_t* npMutex, clockid_t nClock,
                           const timespec* npUntil) {
  if (Scheduler::active() == nullptr) return REAL(pthread_cond_clockwait)(npCondition, npMutex, nClock, npUntil);
  return schedule::await(npCondition, npMutex, schedule::monotonicNs(*npUntil));
}

int pthread_cond_signal(pthread_cond_t* npCondition) {
  return Scheduler::active() == nullptr ? REAL(pthread_cond_signal)(npCondition) : schedule::notify(npCondition, 1);
}

int pthread_cond_broadcast(pthread_cond_t* npCondition) {
  return Scheduler::active() == nullptr ? REAL(pthread_cond_broadcast)(npCondition)
                                        : schedule::notify(npCondition, ~0U);
}

// The C library's would wait for those whom it knows.
int pthread_cond_destroy(pthread_cond_t* /*npCondition*/) { return 0; }

}  // extern "C"
