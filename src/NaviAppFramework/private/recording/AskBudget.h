// How often something that may change under a caller is asked for.
#pragma once

#include <time.h>

namespace nfw {

/// A question that costs a system call is asked at every call, as long as there are not more than 256 in a tick of the
/// kernel's coarse clock (1 to 4 ms). A faster caller goes on with the last answer, and has even that clock read only
/// at every 16th call. Not locked.
class AskBudget {
 public:
  /// True: to be asked now.
  bool take() {
    if (mAsksLeft == 0 && mSkipsLeft-- > 0) return false;
    if (mAsksLeft == 0 && !isNewTick()) return false;
    --mAsksLeft;
    return true;
  }

 private:
  static constexpr int ASKS_A_TICK = 256;
  static constexpr int SKIPS = 15;

  bool isNewTick() {
    timespec lNow = {};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &lNow);
    const bool lIsNew = lNow.tv_nsec != mTick.tv_nsec || lNow.tv_sec != mTick.tv_sec;
    mTick = lNow;
    mAsksLeft = lIsNew ? ASKS_A_TICK : 0;
    mSkipsLeft = lIsNew ? 0 : SKIPS;
    return lIsNew;
  }

  int mAsksLeft = 0;
  int mSkipsLeft = 0;
  timespec mTick = {};
};

}  // namespace nfw
