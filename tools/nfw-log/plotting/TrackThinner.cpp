#include "TrackThinner.h"

#include <cmath>

#include "GroundDistance.h"
#include "Stand.h"

namespace logtool {

namespace {

const double FIRST_DISTANCE = 0.5;  // metres

double distance(const GroundPoint& nFirst, const GroundPoint& nSecond) {
  return std::hypot(nFirst.mEast - nSecond.mEast, nFirst.mNorth - nSecond.mNorth);
}

}  // namespace

void TrackThinner::add(const TrackPoint& nPoint) {
  const TrackPlace lPlace = {mGround.placeOf(nPoint.mLatitude, nPoint.mLongitude),
                             Stand::momentOf(nPoint),
                             nPoint.mUtcMs >= 0,
                             static_cast<float>(nPoint.mSpeedKmh),
                             nPoint.mFix,
                             nPoint.mIsBreak};
  if (mIsLastLoose) {
    const TrackPlace lLoose = mPlaces.back();
    mPlaces.pop_back();
    // The end of a stretch, and the last place of a kind of fix, are where the drawing changes.
    if (lPlace.mIsBreak || lPlace.mFix != lLoose.mFix) mPlaces.push_back(lLoose);
  }
  mIsLastLoose = !mPlaces.empty() && !isKept(lPlace, mPlaces.back(), mDistance);
  mPlaces.push_back(lPlace);
  while (mPlaces.size() > MAX_POINTS) thinOut();
}

GroundPoint Ground::placeOf(double nLatitude, double nLongitude) {
  if (!mHasFirst) {
    mHasFirst = true;
    mLatitude = nLatitude;
    mLongitude = nLongitude;
  }
  const double lEast = std::remainder(nLongitude - mLongitude, 360.0);  // also across the date line
  return {lEast * tool::METRES_PER_DEGREE * std::cos(mLatitude * tool::RADIANS),
          (nLatitude - mLatitude) * tool::METRES_PER_DEGREE};
}

double Ground::latitudeOf(double nNorth) const { return mLatitude + nNorth / tool::METRES_PER_DEGREE; }

double Ground::longitudeOf(double nEast) const {
  return mLongitude + nEast / (tool::METRES_PER_DEGREE * std::cos(mLatitude * tool::RADIANS));
}

bool TrackThinner::isKept(const TrackPlace& nPlace, const TrackPlace& nLast, double nDistance) {
  return nPlace.mIsBreak || nPlace.mFix != nLast.mFix || distance(nPlace.mPlace, nLast.mPlace) >= nDistance;
}

void TrackThinner::thinOut() {
  mDistance = mDistance == 0.0 ? FIRST_DISTANCE : mDistance * 2.0;
  std::vector<TrackPlace> lKept;
  for (size_t i = 0; i < mPlaces.size(); ++i) {
    const bool lIsEnd = i + 1 == mPlaces.size() || mPlaces[i + 1].mIsBreak || mPlaces[i + 1].mFix != mPlaces[i].mFix;
    if (lKept.empty() || lIsEnd || isKept(mPlaces[i], lKept.back(), mDistance)) lKept.push_back(mPlaces[i]);
  }
  // Breaks and changes alone are too many: half of them has to do.
  if (lKept.size() > MAX_POINTS / 2 && mDistance > 1e7) {
    for (size_t i = 1; i * 2 < lKept.size(); ++i) lKept[i] = lKept[i * 2];
    lKept.resize(lKept.size() / 2);
  }
  mPlaces.swap(lKept);
  mIsLastLoose = false;
}

}  // namespace logtool
