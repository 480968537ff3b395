#include "Stand.h"

#include <algorithm>

#include "GroundDistance.h"

namespace logtool {

bool Stand::holds(const TrackPoint& nPoint) const {
  if (nPoint.isDeadReckoned() || nPoint.mSpeedKmh >= MAX_SPEED_KMH) return false;
  if (mPositions == 0) return true;
  return !nPoint.mIsBreak &&
         tool::groundDistance(mLatitude, mLongitude, nPoint.mLatitude, nPoint.mLongitude) <= MAX_DISTANCE_M;
}

void Stand::add(const TrackPoint& nPoint) {
  if (mPositions == 0) {
    mLatitude = nPoint.mLatitude;
    mLongitude = nPoint.mLongitude;
    mFrom = momentOf(nPoint);
  }
  mTo = momentOf(nPoint);
  if (mPositions++ % mEvery != 0) return;
  const double lEast = std::remainder(nPoint.mLongitude - mLongitude, 360.0) * std::cos(mLatitude * tool::RADIANS);
  mPlaces.push_back({mTo, static_cast<float>(lEast * tool::METRES_PER_DEGREE),
                     static_cast<float>((nPoint.mLatitude - mLatitude) * tool::METRES_PER_DEGREE)});
  if (mPlaces.size() < MAX_PLACES) return;
  for (size_t i = 0; i < mPlaces.size() / 2; ++i) mPlaces[i] = mPlaces[i * 2];
  mPlaces.resize(mPlaces.size() / 2);
  mEvery *= 2;
}

Stand::Scatter Stand::scatter() const {
  Scatter lScatter = {};
  for (const Place& lPlace : mPlaces) {
    lScatter.mEast += static_cast<double>(lPlace.mEast) / static_cast<double>(mPlaces.size());
    lScatter.mNorth += static_cast<double>(lPlace.mNorth) / static_cast<double>(mPlaces.size());
  }
  std::vector<double> lDistances;
  for (const Place& lPlace : mPlaces) {
    lDistances.push_back(std::hypot(static_cast<double>(lPlace.mEast) - lScatter.mEast,
                                    static_cast<double>(lPlace.mNorth) - lScatter.mNorth));
  }
  std::sort(lDistances.begin(), lDistances.end());
  const auto lRadius = [&](size_t nPercent) { return lDistances[(lDistances.size() * nPercent + 99) / 100 - 1]; };
  lScatter.mCep50 = lRadius(50);
  lScatter.mCep95 = lRadius(95);
  return lScatter;
}

}  // namespace logtool
