#include "Clock.h"

#include <time.h>

namespace utl {

int64_t Clock::realNs() {
  timespec lTime = {};
  clock_gettime(CLOCK_MONOTONIC, &lTime);
  return static_cast<int64_t>(lTime.tv_sec) * 1000000000 + lTime.tv_nsec;
}

int64_t Clock::nowNs() {
  const int64_t lManualMs = seams::manualMs();
  return lManualMs >= 0 ? lManualMs * NS_PER_MS : realNs();
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

void ClockCondition::waitForClock(Mutex& nMutex, int64_t nDeadlineNs) {
  wait(nMutex, nDeadlineNs == Clock::NEVER || seams::manualMs() >= 0 ? -1 : nDeadlineNs);
}

}  // namespace utl
