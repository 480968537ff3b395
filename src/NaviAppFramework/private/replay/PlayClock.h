// The time of a playback: its pace, its pauses, its place.
#pragma once

#include <atomic>
#include <cstdint>

#include "NfwThreadSafety.h"
#include "ZTSync.h"

namespace nfw {

/// One for all replays of a service, so that the log types stay in step. A record has a nominal tick: when it is due in
/// a playback that nobody touches. The clock tells the tick at which it is due as things stand. Ticks are 32-bit
/// milliseconds, which wrap: what it compares lies less than 24 days apart. Any thread; it calls nothing.
class PlayClock {
 public:
  static constexpr unsigned int NORMAL_RATE = 1000;  // permille

  void reset();                                     ///< before a playback: normal rate, not paused, at its beginning
  void start(uint32_t nZeroTick);                   ///< the nominal tick of the recording's first record
  void moveTo(uint32_t nOffsetMs, uint32_t nTick);  ///< what lies that far from the first record is due then

  bool pause(uint32_t nNow);   ///< false when it is paused
  bool resume(uint32_t nNow);  ///< false when it is not paused
  void setRate(unsigned int nPermille, uint32_t nNow);
  void stepTo(uint32_t nNominalTick);  ///< while paused: what is due until there may be heard

  /// When a record is due; never before `nNow` while paused. False: not until the pause ends, or a step.
  bool due(uint32_t nNominalTick, uint32_t nNow, uint32_t* npTick) const;
  bool hasCome(uint32_t nNominalTick, uint32_t nNow) const;  ///< it is due by now
  uint32_t position(uint32_t nNow) const;                    ///< milliseconds from the first record; 0 before it
  unsigned int getRate() const;
  bool isPaused() const;
  /// Somebody has touched the playback. Until then nominal ticks are what counts.
  bool isControlled() const { return mChangeNumber != 0; }
  /// Counts the changes of the playback: what was worked out under another number may be due at another tick.
  unsigned int changeNumber() const { return mChangeNumber; }

 private:
  uint32_t nominal(uint32_t nNow) const NFW_REQUIRES(mSync);

  std::atomic<unsigned int> mChangeNumber{0};
  mutable ZTSync mSync{"nfw::PlayClock"};
  bool mIsStarted NFW_GUARDED_BY(mSync) = false;
  bool mIsPaused NFW_GUARDED_BY(mSync) = false;
  unsigned int mRate NFW_GUARDED_BY(mSync) = NORMAL_RATE;
  uint32_t mZero NFW_GUARDED_BY(mSync) = 0;     // nominal tick of the first record
  uint32_t mNominal NFW_GUARDED_BY(mSync) = 0;  // this one ...
  uint32_t mTick NFW_GUARDED_BY(mSync) = 0;     // ... is due at this tick; while paused, the last one that may be heard
};

}  // namespace nfw
