// The watchdog bracket: a statement that may block tells where it stands before and after.
#pragma once

#include "NfwThreadSafety.h"
#include "ZTSync.h"
#include "utl/ThreadManager.h"

namespace nfw {

/// Where a statement stands. Shared code takes its caller's as an argument, so that a stall is traced to the class that
/// waits and not to the mechanism.
struct Here {
  const char* mpFile;
  const char* mpFunction;
  int mLine;

  static constexpr Here now(const char* npFile = __builtin_FILE(), const char* npFunction = __builtin_FUNCTION(),
                            int nLine = __builtin_LINE()) {
    return Here{npFile, npFunction, nLine};
  }
  /// The same class, in the operation that asks.
  constexpr Here in(const char* npFunction = __builtin_FUNCTION()) const { return Here{mpFile, npFunction, mLine}; }
};

/// Tells phase 1 when built and phase 2 when destroyed.
class WatchedStep {
 public:
  explicit WatchedStep(const Here& nHere) : mHere(nHere) { tell(1); }
  ~WatchedStep() { tell(2); }
  WatchedStep(const WatchedStep&) = delete;
  WatchedStep& operator=(const WatchedStep&) = delete;

 private:
  void tell(int nPhase) const {
    utl::ThreadManager::keepAliveWatchdog(utl::StatementInfo(mHere.mpFile, mHere.mpFunction, mHere.mLine, nPhase));
  }
  Here mHere;
};

/// Runs one step inside the bracket: `watched([&] { return mpThread->postMsg(lMsg); })`.
template <class Step>
auto watched(Step nStep, const Here& nHere = Here::now()) {
  const WatchedStep lStep(nHere);
  return nStep();
}

/// Holds a lock; its taking is watched, not the time that it is held.
class NFW_SCOPED_LOCK WatchedLock {
 public:
  explicit WatchedLock(ZTSync& nSync, const Here& nHere = Here::now()) NFW_ACQUIRE(nSync) : mSync(nSync) {
    const WatchedStep lStep(nHere);
    mSync.lock();
  }
  ~WatchedLock() NFW_RELEASE() { mSync.unlock(); }
  WatchedLock(const WatchedLock&) = delete;
  WatchedLock& operator=(const WatchedLock&) = delete;

 private:
  ZTSync& mSync;
};

}  // namespace nfw
