#pragma once

#include <string>

#include "JsonObject.h"
#include "Stand.h"
#include "TrackPoint.h"

namespace logtool {

/// What there is to say of a track in numbers, gathered point by point.
class DriveStats {
 public:
  static constexpr double LEAST_SPEED_KMH = 2.0;  ///< below it a vehicle stands; what its positions wander is no way

  /// A length, and when it ended. A time that is not known is -1.
  struct Event {
    double mLength = 0.0;
    uint64_t mElapsedMs = 0;
    int64_t mUtcMs = -1;
  };

  /// @param nGapMs a pause between two positions from which on it is told of
  explicit DriveStats(uint64_t nGapMs) : mGapMs(static_cast<int64_t>(nGapMs)) {}

  void add(const TrackPoint& nPoint);
  /// Epochs without a position.
  void addWithoutFix(uint64_t nEpochs) { mWithoutFix += nEpochs; }

  uint64_t getPositions() const { return mPositions; }
  uint64_t getEpochs() const { return mPositions + mWithoutFix; }
  uint64_t countOf(Fix nFix) const { return nFix == FIX_NONE ? mWithoutFix : mFixes[nFix]; }
  double getDistanceM() const { return mDistance; }
  int64_t getMovingMs() const { return mMoving; }
  int64_t getStandingMs() const { return mStanding; }
  double getMaxSpeedKmh() const { return mMaxSpeed; }  ///< NAN when none was told
  uint64_t getGaps() const { return mGaps; }
  int64_t getGapMs() const { return mGapSum; }                  ///< of all of them
  const Event& getLongestGap() const { return mLongestGap; }    ///< in milliseconds
  const Event& getLargestJump() const { return mLargestJump; }  ///< in metres, beyond what the speed explains
  /// The longest, if it has Stand::LEAST_POSITIONS; else null.
  const Stand* getStand() const;

  /// Of epochs, those with a position that was measured; percent, NAN of none.
  double fixShare() const;

 private:
  void addStep(const TrackPoint& nPoint);
  void addStand(const TrackPoint& nPoint);

  const int64_t mGapMs;
  TrackPoint mLast;  // without a position before the first
  uint64_t mPositions = 0, mWithoutFix = 0;
  uint64_t mFixes[FIX_ESTIMATED + 1] = {};
  double mDistance = 0.0;
  int64_t mMoving = 0, mStanding = 0;
  double mMaxSpeed = NAN;
  uint64_t mGaps = 0;
  int64_t mGapSum = 0;
  Event mLongestGap, mLargestJump;
  Stand mStand, mLongest;
};

/// In words, a heading a line: each line with the margin before it, but the first.
std::string statsText(const DriveStats& nStats, const std::string& nMargin);
/// As members of an object.
void addStats(const DriveStats& nStats, tool::JsonObject& nObject);

}  // namespace logtool
