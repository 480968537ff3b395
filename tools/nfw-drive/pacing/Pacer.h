#pragma once

#include <cstdint>

namespace drive {

/// When a sentence is due, as arithmetic: no clock in here.
///
/// Offsets grow with the sentences' times of day across midnight. A step of more than a minute, or backwards, is a
/// break in the recording (a receiver that has just learned the time, a second drive in one file): play goes on one
/// second later with the new times. A little back, as a sentence that lags behind its epoch, is due at once.
class Pacer {
 public:
  static constexpr int64_t MAX_STEP_MS = 60 * 1000;
  static constexpr int64_t MAX_LAG_MS = 2000;
  static constexpr int64_t BREAK_MS = 1000;

  /// @param nTimeOfDay milliseconds; @return milliseconds since the first sentence at speed 1, never falling
  int64_t offset(int64_t nTimeOfDay);

  /// Real nanoseconds for an offset. @param nSpeed above 0
  static int64_t realTime(int64_t nOffset, double nSpeed);

 private:
  int64_t mLast = -1;
  int64_t mOffset = 0;
};

}  // namespace drive
