// When a recorded record is due in a replay.
#pragma once

#include <cstdint>

namespace nfw {

/// Pure arithmetic on 32-bit milliseconds, which wrap. A record of time T is due at T + start - base. Only the caller's
/// thread uses it.
class ReplayTiming {
 public:
  enum Rule {
    FIXED,   ///< the base is the first record's time
    REBASED  ///< the base follows time stamps that go back, as where one file holds several recordings
  };

  explicit ReplayTiming(Rule nRule) : mRule(nRule) {}

  void start(uint32_t nStartTick, uint32_t nFirstTime);
  uint32_t getBase() const { return mBase; }

  /// False: older than the base, not played (rebased, it becomes the base).
  bool due(uint32_t nTime, uint32_t* npDue);
  /// The record's timer is set: later time stamps are judged against it.
  void scheduled(uint32_t nTime);

  /// Milliseconds from now to a due tick; 0 when it is not after now.
  static uint32_t interval(uint32_t nDue, uint32_t nNow);

 private:
  const Rule mRule;
  uint32_t mStart = 0;
  uint32_t mBase = 0;
  uint32_t mLast = 0;      // time of the record scheduled last
  uint32_t mLastBase = 0;  // the base that held for it
};

}  // namespace nfw
