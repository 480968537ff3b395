// The beginning and the end of threads. Real ones are made and joined; when they run is the scheduler's.
#include <pthread.h>

#include <algorithm>

#include "Real.h"
#include "Scheduler.h"

extern "C" {
// The address sanitizer has to see a thread begin and end.
int __interceptor_pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*) __attribute__((weak));
int __interceptor_pthread_join(pthread_t, void**) __attribute__((weak));
int __interceptor_pthread_detach(pthread_t) __attribute__((weak));
}

namespace schedule {

namespace {

const size_t LEAST_STACK = 512 * 1024;  // the sanitizer's frames are larger

template <class Function, class Real>
Function chosen(Function npSanitizers, Real npReal) {
  return npSanitizers != nullptr ? npSanitizers : npReal;
}

void* run(void* npWorker) {
  Worker* const lpWorker = static_cast<Worker*>(npWorker);
  Scheduler* const lpScheduler = lpWorker->mpScheduler;
  lpScheduler->enter(lpWorker);
  void* const lpResult = lpWorker->mpEntry(lpWorker->mpArgument);
  lpScheduler->leave();
  return lpResult;
}

}  // namespace

int create(pthread_t* npThread, const pthread_attr_t* npAttr, void* (*npEntry)(void*), void* npArgument) {
  return chosen(&__interceptor_pthread_create, REAL(pthread_create))(npThread, npAttr, npEntry, npArgument);
}

int createWithStack(pthread_t* npThread, void* (*npEntry)(void*), void* npArgument) {
  pthread_attr_t lAttr;
  pthread_attr_init(&lAttr);
  pthread_attr_setstacksize(&lAttr, LEAST_STACK);
  const int lError = create(npThread, &lAttr, npEntry, npArgument);
  pthread_attr_destroy(&lAttr);
  return lError;
}

int join(pthread_t nThread, void** npResult) {
  return chosen(&__interceptor_pthread_join, REAL(pthread_join))(nThread, npResult);
}

int detach(pthread_t nThread) { return chosen(&__interceptor_pthread_detach, REAL(pthread_detach))(nThread); }

}  // namespace schedule

using schedule::Scheduler;
using schedule::Worker;

extern "C" {

int pthread_create(pthread_t* npThread, const pthread_attr_t* npAttr, void* (*npEntry)(void*), void* npArgument) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return schedule::create(npThread, npAttr, npEntry, npArgument);
  lpScheduler->point("starts a thread", nullptr);
  Worker* const lpWorker = lpScheduler->add(npEntry, npArgument);
  const int lError = schedule::createWithStack(&lpWorker->mThread, &schedule::run, lpWorker);
  if (lError != 0) lpScheduler->fail("the system gives no thread");
  *npThread = lpWorker->mThread;
  lpScheduler->point("has started a thread", nullptr);
  return 0;
}

int pthread_join(pthread_t nThread, void** npResult) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return schedule::join(nThread, npResult);
  Worker* const lpWorker = lpScheduler->find(nThread);
  lpScheduler->point("joins", lpWorker);
  while (lpWorker->mState != Worker::ENDED) lpScheduler->wait("waits for the end of", lpWorker);
  lpWorker->mIsReleased = true;
  return schedule::join(nThread, npResult);
}

int pthread_detach(pthread_t nThread) {
  if (Scheduler* const lpScheduler = Scheduler::active()) {
    lpScheduler->point("detaches", nullptr);
    lpScheduler->find(nThread)->mIsReleased = true;
  }
  return schedule::detach(nThread);
}

int pthread_setname_np(pthread_t nThread, const char* npName) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return REAL(pthread_setname_np)(nThread, npName);
  lpScheduler->self().mName = npName;
  return 0;
}

}  // extern "C"
