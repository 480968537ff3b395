// Something that fails is tried again, but not all the time.
#pragma once

#include <cstdint>

#include "utl/Time.h"

namespace nfw {

/// Not locked: its owner sees to that.
class RetryInterval {
 public:
  explicit RetryInterval(uint32_t nIntervalMs) : mIntervalMs(nIntervalMs) {}

  /// True for a try now: the first, and one when the interval has passed since the last.
  bool take() {
    const uint32_t lNow = utl::TimeCounter::getTickTime();
    if (mHasTried && lNow - mLastTick < mIntervalMs) return false;
    mHasTried = true;
    mLastTick = lNow;
    return true;
  }

 private:
  const uint32_t mIntervalMs;
  uint32_t mLastTick = 0;
  bool mHasTried = false;
};

}  // namespace nfw
