#pragma once

#include <cstdint>

namespace logtool {

/// The time of a recording, from the ticks of its records: 0 at the first, forward only. A tick that wraps goes on; one
/// that goes back begins a new stretch a second after the last record, as replay has it.
class Timeline {
 public:
  static constexpr uint32_t PAUSE_MS = 1000;
  static constexpr uint32_t MAX_WRAP_MS = 3600 * 1000;  ///< what lies further behind the end of the count is no wrap

  void step(uint32_t nTick) {
    const uint32_t lDistance = nTick - mTick;
    mIsBackward = mHasTick && nTick < mTick && lDistance > MAX_WRAP_MS;
    mStep = !mHasTick ? 0 : mIsBackward ? PAUSE_MS : lDistance;
    mElapsed += mStep;
    mTick = nTick;
    mHasTick = true;
  }

  uint64_t getElapsedMs() const { return mElapsed; }
  uint32_t getStepMs() const { return mStep; }     ///< between the last two
  bool isBackward() const { return mIsBackward; }  ///< the last record's tick was before its predecessor's

 private:
  uint64_t mElapsed = 0;
  uint32_t mTick = 0;
  uint32_t mStep = 0;
  bool mHasTick = false;
  bool mIsBackward = false;
};

}  // namespace logtool
