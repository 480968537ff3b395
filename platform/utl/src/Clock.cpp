#include "Clock.h"

#include <time.h>

#include <atomic>

namespace utl {

namespace {

std::atomic<int64_t> gManualMs{-1};  // negative: the system's clock

/// The conditions that a moved clock wakes. Never destroyed: threads may still wait when the process ends.
struct Waiters {
  Mutex mMutex;
  ClockCondition* mpFirst = nullptr;
};

Waiters& waiters() {
  static Waiters* const lpWaiters = new Waiters;
  return *lpWaiters;
}

}  // namespace

int64_t Clock::realNs() {
  timespec lTime = {};
  clock_gettime(CLOCK_MONOTONIC, &lTime);
  return static_cast<int64_t>(lTime.tv_sec) * 1000000000 + lTime.tv_nsec;
}

int64_t Clock::manualMs() { return gManualMs.load(std::memory_order_relaxed); }

bool Clock::isManual() { return manualMs() >= 0; }

int64_t Clock::nowNs() {
  const int64_t lManualMs = manualMs();
  return lManualMs >= 0 ? lManualMs * NS_PER_MS : realNs();
}

void Clock::setManual(int64_t nNowMs) {
  Waiters& lWaiters = waiters();
  MutexLock lLock(lWaiters.mMutex);
  gManualMs.store(nNowMs, std::memory_order_relaxed);
  for (ClockCondition* lpEach = lWaiters.mpFirst; lpEach != nullptr; lpEach = lpEach->mpNext) {
    MutexLock lWaiterLock(lpEach->mMutex);  // a waiter has either seen the new time or waits already
    lpEach->broadcast();
  }
}

void Mutex::lockContended() {
  while (mWord->exchange(AWAITED, std::memory_order_acquire) != FREE) mWord.wait(AWAITED);
}

bool Condition::wait(Mutex& nMutex, int64_t nDeadlineNs) {
  mWaiterNum.fetch_add(1, std::memory_order_relaxed);
  const int lSignals = mSignals->load(std::memory_order_relaxed);
  nMutex.unlock();
  const bool lIsInTime = mSignals.wait(lSignals, nDeadlineNs);
  nMutex.lock();
  mWaiterNum.fetch_sub(1, std::memory_order_relaxed);
  return lIsInTime;
}

ClockCondition::ClockCondition(Mutex& nMutex) : mMutex(nMutex) {
  Waiters& lWaiters = waiters();
  MutexLock lLock(lWaiters.mMutex);
  mpNext = lWaiters.mpFirst;
  if (mpNext != nullptr) mpNext->mpPrevious = this;
  lWaiters.mpFirst = this;
}

ClockCondition::~ClockCondition() {
  Waiters& lWaiters = waiters();
  MutexLock lLock(lWaiters.mMutex);
  (mpPrevious != nullptr ? mpPrevious->mpNext : lWaiters.mpFirst) = mpNext;
  if (mpNext != nullptr) mpNext->mpPrevious = mpPrevious;
}

void ClockCondition::waitForClock(Mutex& nMutex, int64_t nDeadlineNs) {
  wait(nMutex, nDeadlineNs == Clock::NEVER || Clock::isManual() ? -1 : nDeadlineNs);
}

}  // namespace utl
