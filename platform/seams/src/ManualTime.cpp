#include "ManualTime.h"

#include <atomic>

#include "Clock.h"

namespace seams {

namespace {

std::atomic<int64_t> gManualMs{-1};  // negative: the system's clock

/// The conditions that a moved clock wakes. Never destroyed: threads may still wait when the process ends.
struct Waiters {
  utl::Mutex mMutex;
  ClockWaiter* mpFirst = nullptr;
};

Waiters& waiters() {
  static Waiters* const lpWaiters = new Waiters;
  return *lpWaiters;
}

}  // namespace

int64_t manualMs() { return gManualMs.load(std::memory_order_relaxed); }

void setManualMs(int64_t nNowMs) {
  Waiters& lWaiters = waiters();
  utl::MutexLock lLock(lWaiters.mMutex);
  gManualMs.store(nNowMs, std::memory_order_relaxed);
  for (ClockWaiter* lpEach = lWaiters.mpFirst; lpEach != nullptr; lpEach = lpEach->mpNext) {
    utl::MutexLock lWaiterLock(lpEach->mMutex);  // a waiter has either seen the new time or waits already
    lpEach->mCondition.broadcast();
  }
}

ClockWaiter::ClockWaiter(utl::Condition& nCondition, utl::Mutex& nMutex) : mCondition(nCondition), mMutex(nMutex) {
  Waiters& lWaiters = waiters();
  utl::MutexLock lLock(lWaiters.mMutex);
  mpNext = lWaiters.mpFirst;
  if (mpNext != nullptr) mpNext->mpPrevious = this;
  lWaiters.mpFirst = this;
}

ClockWaiter::~ClockWaiter() {
  Waiters& lWaiters = waiters();
  utl::MutexLock lLock(lWaiters.mMutex);
  (mpPrevious != nullptr ? mpPrevious->mpNext : lWaiters.mpFirst) = mpNext;
  if (mpNext != nullptr) mpNext->mpPrevious = mpPrevious;
}

}  // namespace seams
