// How long a file is written to before another one follows.
#pragma once

#include <cstdint>

#include "utl/Time.h"

namespace nfw {

/// Not locked: its owner sees to that.
class FileTime {
 public:
  static constexpr unsigned int DAY_MS = 24 * 60 * 60 * 1000;

  /// 0: without end. Aligned: a file also ends where the local time of day is a multiple of the limit.
  void set(unsigned int nLimitMs, bool nIsAligned) {
    mLimitMs = nLimitMs;
    mIsAligned = nIsAligned && nLimitMs > 0;
  }
  void begin() { mEndTick = utl::TimeCounter::getTickTime() + length(); }
  bool isOver() const { return mLimitMs > 0 && utl::TimeCounter::getTickTime() - mEndTick < DAY_MS; }

 private:
  uint32_t length() const {
    utl::Time lTime;
    unsigned int lYear = 0, lMonth = 0, lDay = 0, lHour = 0, lMinute = 0, lSecond = 0, lMs = 0;
    if (!mIsAligned || !utl::getLocalTime(&lTime) ||
        !lTime.get(&lYear, &lMonth, &lDay, &lHour, &lMinute, &lSecond, &lMs)) {
      return mLimitMs;
    }
    return mLimitMs - (((lHour * 60 + lMinute) * 60 + lSecond) * 1000 + lMs) % mLimitMs;
  }

  unsigned int mLimitMs = 0;
  bool mIsAligned = false;
  uint32_t mEndTick = 0;
};

}  // namespace nfw
