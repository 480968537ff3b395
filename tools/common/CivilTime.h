#pragma once

#include <cstdint>

namespace tool {

/// A point of UTC, taken apart.
struct CivilTime {
  int mYear, mMonth, mDay, mHour, mMinute, mSecond, mMillisecond;
};

/// @param nTimeMs since 1970, UTC, not before
inline CivilTime civilTime(int64_t nTimeMs) {
  const int64_t lDays = nTimeMs / 86400000;
  const int lOfDay = static_cast<int>(nTimeMs % 86400000);
  // Years begin in March here, so that the leap day is the last of its year; 400 years are 146097 days.
  const int64_t lShifted = lDays + 719468;
  const int64_t lEra = lShifted / 146097;
  const int64_t lDayOfEra = lShifted % 146097;
  const int64_t lYearOfEra = (lDayOfEra - lDayOfEra / 1460 + lDayOfEra / 36524 - lDayOfEra / 146096) / 365;
  const int64_t lDayOfYear = lDayOfEra - (365 * lYearOfEra + lYearOfEra / 4 - lYearOfEra / 100);
  const int64_t lMarchMonth = (5 * lDayOfYear + 2) / 153;
  const int64_t lMonth = lMarchMonth < 10 ? lMarchMonth + 3 : lMarchMonth - 9;
  return {static_cast<int>(lYearOfEra + lEra * 400 + (lMonth <= 2 ? 1 : 0)),
          static_cast<int>(lMonth),
          static_cast<int>(lDayOfYear - (153 * lMarchMonth + 2) / 5 + 1),
          lOfDay / 3600000,
          lOfDay / 60000 % 60,
          lOfDay / 1000 % 60,
          lOfDay % 1000};
}

}  // namespace tool
