// The monotonic clock of the layer, and the locks and conditions that wait on it.
#pragma once

#include <atomic>
#include <climits>
#include <cstdint>

#include "Futex.h"
#include "ManualTime.h"
#include "ZTSync.h"

namespace utl {

/// Monotonic time. Where the test seams are built in, and a test moves the clock by hand, it follows that clock.
class Clock {
 public:
  static const int64_t NS_PER_MS = 1000000;
  static const int64_t NEVER = INT64_MAX;

  static int64_t nowNs();
  static int64_t nowMs() { return nowNs() / NS_PER_MS; }
  static int64_t realNs();  ///< never the clock moved by hand: for limits on other threads' work
};

/// A plain mutex. It is the C library's algorithm without its call, its kinds and its checks: half the time of a post.
class ZTS_ANNOTATION(capability("mutex")) Mutex {
 public:
  Mutex() = default;
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  void lock() ZTS_ANNOTATION(acquire_capability()) {
    int lFree = FREE;
    if (!mWord->compare_exchange_strong(lFree, TAKEN, std::memory_order_acquire)) lockContended();
  }
  void unlock() ZTS_ANNOTATION(release_capability()) {
    std::atomic<int>* const lpWord = mWord.word();  // once it is free the next owner may destroy the mutex
    if (lpWord->exchange(FREE, std::memory_order_release) == AWAITED) Futex::wake(lpWord, 1);
  }

 private:
  enum Word { FREE, TAKEN, AWAITED };
  void lockContended();

  Futex mWord{FREE};
};

class ZTS_ANNOTATION(scoped_lockable) MutexLock {
 public:
  explicit MutexLock(Mutex& nMutex) ZTS_ANNOTATION(acquire_capability(nMutex)) : mMutex(nMutex) { mMutex.lock(); }
  ~MutexLock() ZTS_ANNOTATION(release_capability()) { mMutex.unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex& mMutex;
};

/// A condition variable on the system's monotonic clock. Wakes may be spurious.
class Condition {
 public:
  Condition() = default;
  Condition(const Condition&) = delete;
  Condition& operator=(const Condition&) = delete;

  /// False when the system's clock has reached `nDeadlineNs`; negative waits without limit.
  bool wait(Mutex& nMutex, int64_t nDeadlineNs = -1) ZTS_ANNOTATION(requires_capability(nMutex));
  /// Both are called with the mutex.
  void signal() { wake(1); }
  void broadcast() { wake(INT_MAX); }

  /// A signal in two halves. The first is called with the mutex; the second is given what the first returned, without
  /// the mutex, on which the woken thread would only wait again. By then the condition may be gone.
  std::atomic<int>* prepareSignal() {
    if (mWaiterNum.load(std::memory_order_relaxed) == 0) return nullptr;
    mSignals->fetch_add(1, std::memory_order_relaxed);
    return mSignals.word();
  }
  static void sendSignal(std::atomic<int>* npPrepared) {
    if (npPrepared != nullptr) Futex::wake(npPrepared, 1);
  }

 private:
  void wake(int nNum) {
    if (std::atomic<int>* const lpWord = prepareSignal()) Futex::wake(lpWord, nNum);
  }

  std::atomic<int> mWaiterNum{0};
  Futex mSignals;
};

/// A condition whose time-outs follow Clock.
class ClockCondition : public Condition {
 public:
  explicit ClockCondition(Mutex& nMutex) : mWaiter(*this, nMutex) {}

  /// Waits for a signal or until Clock reaches `nDeadlineNs`; NEVER waits for the signal alone. The caller looks again.
  void waitForClock(Mutex& nMutex, int64_t nDeadlineNs) ZTS_ANNOTATION(requires_capability(nMutex));

 private:
  seams::ClockWaiter mWaiter;
};

}  // namespace utl
