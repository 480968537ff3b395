#include "NfwOperationControl.h"

#include "NfwAppLog.h"
#include "NfwWatched.h"
#include "SysLogService.h"

namespace nfw {
namespace {

const uint32_t COUNT_MAX = 0xFFFFFFFFu;
const uint64_t ONE_OPERATION = 1;
const uint64_t ONE_PROHIBIT = uint64_t{1} << 32;

uint32_t operationsOf(uint64_t nCounts) { return static_cast<uint32_t>(nCounts); }
uint32_t prohibitsOf(uint64_t nCounts) { return static_cast<uint32_t>(nCounts >> 32); }

}  // namespace

// The lines go to the service itself: the filtered log ends in the data logger, which asks a gate of its own.

bool OperationControl::start() {
  uint64_t lCounts = mCounts.load();
  do {
    if (prohibitsOf(lCounts) > 0) return false;
    if (operationsOf(lCounts) == COUNT_MAX) {
      ::applog(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "OperationControl::start(): StartCount=MAX");
      return false;
    }
  } while (!mCounts.compare_exchange_weak(lCounts, lCounts + ONE_OPERATION));
  return true;
}

// After the last exchange of an open gate this object is not touched any more: its owner may be about to go.
void OperationControl::complete() {
  uint64_t lCounts = mCounts.load();
  do {
    if (operationsOf(lCounts) == 0) return;
    if (prohibitsOf(lCounts) > 0) return completeClosed();
  } while (!mCounts.compare_exchange_weak(lCounts, lCounts - ONE_OPERATION));
}

void OperationControl::completeClosed() {
  const WatchedLock lLock(mSync);
  if (operationsOf(mCounts.fetch_sub(ONE_OPERATION)) == 1) mIdleEvent.on();
}

bool OperationControl::prohibit() {
  {
    const WatchedLock lLock(mSync);
    if (prohibitsOf(mCounts.load()) == COUNT_MAX) {
      ::applog(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "OperationControl::prohibit(): StopRequestedCount=MAX");
      return false;
    }
    if (operationsOf(mCounts.fetch_add(ONE_PROHIBIT)) > 0) mIdleEvent.off();
  }
  watched([this] { return mIdleEvent.waitToOn(0); });
  const WatchedLock lLock(mSync);  // the last operation has left completeClosed()
  return true;
}

// A wait whose own prohibit() somebody else has taken back ends: the gate is open, completions are no longer told.
void OperationControl::permit() {
  const WatchedLock lLock(mSync);
  const uint32_t lProhibits = prohibitsOf(mCounts.load());
  if (lProhibits == 0) return;
  mCounts.fetch_sub(ONE_PROHIBIT);
  if (lProhibits == 1) mIdleEvent.on();
}

}  // namespace nfw
