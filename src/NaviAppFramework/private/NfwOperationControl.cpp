#include "NfwOperationControl.h"

#include "NfwAppLog.h"
#include "SysLogService.h"
#include "Watched.h"

namespace nfw {
namespace {

const uint32_t COUNT_MAX = 0xFFFFFFFFu;
const uint64_t IS_CLOSED = uint64_t{1} << 32;   // start() refuses
const uint64_t IS_AWAITED = uint64_t{1} << 33;  // a prohibit() waits, though a permit() may have opened the gate again

uint32_t operationsOf(uint64_t nCount) { return static_cast<uint32_t>(nCount); }
bool isWatched(uint64_t nCount) { return nCount > COUNT_MAX; }

}  // namespace

// The lines go to the service itself: the filtered log ends in the data logger, which asks a gate of its own.

bool OperationControl::start() {
  uint64_t lCount = mStartCount.load();
  do {
    if ((lCount & IS_CLOSED) != 0) return false;
    if (operationsOf(lCount) == COUNT_MAX) {
      ::applog(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "OperationControl::start(): StartCount=MAX");
      return false;
    }
  } while (!mStartCount.compare_exchange_weak(lCount, lCount + 1));
  return true;
}

// After the last exchange of an unwatched gate this object is not touched any more: its owner may be about to go.
void OperationControl::complete() {
  uint64_t lCount = mStartCount.load();
  do {
    if (operationsOf(lCount) == 0) return;
    if (isWatched(lCount)) return completeWatched();
  } while (!mStartCount.compare_exchange_weak(lCount, lCount - 1));
}

// Whoever came first may have completed the last one meanwhile.
void OperationControl::completeWatched() {
  const WatchedLock lLock(mSync);
  uint64_t lCount = mStartCount.load();
  do {
    if (operationsOf(lCount) == 0) return;
  } while (!mStartCount.compare_exchange_weak(lCount, lCount - 1));
  if (operationsOf(lCount) == 1) mIdleEvent.on();
}

bool OperationControl::prohibit() {
  if (!close()) return false;
  while (!isIdle()) watched([this] { return mIdleEvent.waitToOn(0); });
  return true;
}

bool OperationControl::close() {
  const WatchedLock lLock(mSync);
  if (mStopRequestedCount == COUNT_MAX) {
    ::applog(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "OperationControl::prohibit(): StopRequestedCount=MAX");
    return false;
  }
  ++mStopRequestedCount;
  ++mWaiterNum;
  setFlags();
  return true;
}

/// For a prohibit(): whether it may return. The event alone does not tell, since a permit() lets operations start
/// again. By the lock it also comes behind the last operation's completeWatched().
bool OperationControl::isIdle() {
  const WatchedLock lLock(mSync);
  if (operationsOf(mStartCount.load()) > 0) {
    mIdleEvent.off();
    return false;
  }
  --mWaiterNum;
  setFlags();
  return true;
}

void OperationControl::permit() {
  const WatchedLock lLock(mSync);
  if (mStopRequestedCount == 0) return;
  --mStopRequestedCount;
  setFlags();
}

void OperationControl::setFlags() {
  const uint64_t lFlags = (mStopRequestedCount > 0 ? IS_CLOSED : 0) | (mWaiterNum > 0 ? IS_AWAITED : 0);
  uint64_t lCount = mStartCount.load();
  while (!mStartCount.compare_exchange_weak(lCount, operationsOf(lCount) | lFlags)) {
  }
}

}  // namespace nfw
