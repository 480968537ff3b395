#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "TrackPoint.h"

namespace logtool {

/// A stretch in which the receiver stands, and how its positions scatter: in bounded memory, every so many-th of them.
class Stand {
 public:
  static constexpr size_t MAX_PLACES = 4096;
  static constexpr double MAX_SPEED_KMH = 2.0;    ///< a receiver that stands tells of a speed below
  static constexpr double MAX_DISTANCE_M = 50.0;  ///< of a position from the first
  static constexpr uint64_t LEAST_POSITIONS = 20;

  /// A position, in metres east and north of the first.
  struct Place {
    int64_t mTime;  // as momentOf tells it
    float mEast, mNorth;
  };
  /// The middle of the positions, and the radii around it that hold half and 95 of a hundred of them.
  struct Scatter {
    double mEast, mNorth;
    double mCep50, mCep95;  ///< metres
  };

  /// Whether the point goes on standing where this stand is; the first always does, if it does not move.
  bool holds(const TrackPoint& nPoint) const;
  void add(const TrackPoint& nPoint);

  uint64_t getPositions() const { return mPositions; }
  int64_t getDurationMs() const { return mPositions == 0 ? 0 : mTo - mFrom; }
  int64_t getFrom() const { return mFrom; }
  const std::vector<Place>& getPlaces() const { return mPlaces; }
  Scatter scatter() const;  ///< of one position at least

  /// UTC where it is known, else from the recording's begin; milliseconds.
  static int64_t momentOf(const TrackPoint& nPoint) {
    return nPoint.mUtcMs >= 0 ? nPoint.mUtcMs : static_cast<int64_t>(nPoint.mElapsedMs);
  }

 private:
  std::vector<Place> mPlaces;
  double mLatitude = NAN, mLongitude = NAN;  // of the first
  uint64_t mPositions = 0;
  uint64_t mEvery = 1;
  int64_t mFrom = 0, mTo = 0;
};

}  // namespace logtool
