#pragma once

#include <cstdint>

#include "SentenceTime.h"

namespace logtool {

/// Puts dates to times of day: most sentences tell the time only. One stream of sentences, in its order.
class UtcDay {
 public:
  bool isKnown() const { return mDay >= 0; }

  /// A date was told. @param nDay since 1970 @param nTimeOfDay told with it, milliseconds; -1 when there was none
  void set(int64_t nDay, int64_t nTimeOfDay) {
    mDay = nDay;
    mTimeOfDay = nTimeOfDay;
  }

  /// The moment of the next time of day, in milliseconds since 1970; -1 while no date is known. Half a day back is
  /// midnight passed.
  int64_t next(int64_t nTimeOfDay) {
    if (mDay < 0) return -1;
    if (nTimeOfDay < mTimeOfDay - tool::MS_PER_DAY / 2) ++mDay;
    mTimeOfDay = nTimeOfDay;
    return mDay * tool::MS_PER_DAY + nTimeOfDay;
  }

  /// The moment of a time of day told within the day before the last one.
  int64_t before(int64_t nTimeOfDay) const {
    if (mDay < 0) return -1;
    const int64_t lDay = nTimeOfDay > mTimeOfDay + tool::MS_PER_DAY / 2 ? mDay - 1 : mDay;
    return lDay * tool::MS_PER_DAY + nTimeOfDay;
  }

 private:
  int64_t mDay = -1;
  int64_t mTimeOfDay = -1;
};

/// The time of records of one log type id: what its sentences tell, and the ticks between them.
class UtcClock {
 public:
  /// @param nDay @param nTimeOfDay as a sentence tells them, -1 for what it does not tell
  int64_t tell(int64_t nDay, int64_t nTimeOfDay, uint32_t nTick) {
    if (nDay >= 0) mDay.set(nDay, nTimeOfDay);
    const int64_t lUtc = nTimeOfDay < 0 ? -1 : mDay.next(nTimeOfDay);
    if (lUtc >= 0) {
      mUtc = lUtc;
      mTick = nTick;
    }
    return mUtc < 0 ? -1 : mUtc + static_cast<int32_t>(nTick - mTick);
  }
  bool isSet() const { return mUtc >= 0; }

 private:
  UtcDay mDay;
  int64_t mUtc = -1;  // told by a record at mTick
  uint32_t mTick = 0;
};

}  // namespace logtool
