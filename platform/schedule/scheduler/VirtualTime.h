// The clocks of a run.
#pragma once

#include <cstdint>
#include <ctime>

#include "Scheduler.h"

namespace schedule {

/// The time of day when the monotonic clock of a run stands at zero: a day in 2026.
const int64_t TIME_OF_DAY_NS = int64_t{1790000000} * 1000000000;

inline int64_t nsOf(const timespec& nTime) { return int64_t{nTime.tv_sec} * 1000000000 + nTime.tv_nsec; }
inline timespec timeOf(int64_t nNs) {
  return {static_cast<time_t>(nNs / 1000000000), static_cast<long>(nNs % 1000000000)};
}
/// Of a time on either clock.
inline int64_t monotonicNs(const timespec& nTime) {
  const int64_t lNs = nsOf(nTime);
  return lNs > TIME_OF_DAY_NS ? lNs - TIME_OF_DAY_NS : lNs;
}

}  // namespace schedule
