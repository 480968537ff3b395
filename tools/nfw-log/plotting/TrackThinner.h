#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "TrackPoint.h"

namespace logtool {

/// A place on the ground in metres east and north of the track's first point.
struct GroundPoint {
  double mEast, mNorth;
};

/// The plane that all tracks of a picture lie in; its origin is the first place.
class Ground {
 public:
  GroundPoint placeOf(double nLatitude, double nLongitude);
  /// Degrees of a place.
  double latitudeOf(double nNorth) const;
  double longitudeOf(double nEast) const;

 private:
  bool mHasFirst = false;
  double mLatitude = 0.0, mLongitude = 0.0;
};

/// What is kept of a point of the track.
struct TrackPlace {
  GroundPoint mPlace;
  int64_t mTime;  ///< milliseconds, UTC where that is known, else from the recording's begin
  bool mIsUtc;
  float mSpeedKmh;
  Fix mFix;
  bool mIsBreak;
};

/// Keeps the shape of a track of any length in bounded memory: points nearer to the last one kept than some distance
/// are left out, and the distance grows as it must. Ends, breaks and changes between reckoned and measured stay.
class TrackThinner {
 public:
  static constexpr size_t MAX_POINTS = 20000;

  /// @param nGround not owned, outlives the track
  explicit TrackThinner(Ground& nGround) : mGround(nGround) {}

  void add(const TrackPoint& nPoint);
  const std::vector<TrackPlace>& getPlaces() const { return mPlaces; }

 private:
  static bool isKept(const TrackPlace& nPlace, const TrackPlace& nLast, double nDistance);
  void thinOut();

  std::vector<TrackPlace> mPlaces;
  Ground& mGround;
  bool mIsLastLoose = false;  // the last place is there as the end only
  double mDistance = 0.0;
};

}  // namespace logtool
