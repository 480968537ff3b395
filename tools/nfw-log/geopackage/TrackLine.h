#pragma once

#include <algorithm>
#include <string>

#include "LittleBytes.h"
#include "TrackPoint.h"

namespace logtool {

/// A rectangle of degrees.
struct Bounds {
  double mWest = 180.0, mEast = -180.0, mSouth = 90.0, mNorth = -90.0;

  void add(double nLongitude, double nLatitude) {
    mWest = std::min(mWest, nLongitude);
    mEast = std::max(mEast, nLongitude);
    mSouth = std::min(mSouth, nLatitude);
    mNorth = std::max(mNorth, nLatitude);
  }
};

const uint32_t WGS_84 = 4326;

/// The shape of a position in a GeoPackage: its head, and well-known binary behind it.
inline void appendPoint(const TrackPoint& nPoint, std::string* npShape) {
  npShape->append("GP\0\x01", 4);  // version 0; little-endian, no bounds
  appendLittle(WGS_84, npShape);
  npShape->push_back('\x01');
  appendLittle(uint32_t{1}, npShape);
  appendLittle(nPoint.mLongitude, npShape);
  appendLittle(nPoint.mLatitude, npShape);
}

/// A stretch of a track, held until it is written as one shape.
class TrackLine {
 public:
  static constexpr uint32_t MAX_POINTS = 10000;

  void add(const TrackPoint& nPoint) {
    if (mCount++ == 0) mFirst = nPoint;
    mLast = nPoint;
    mBounds.add(nPoint.mLongitude, nPoint.mLatitude);
    appendLittle(nPoint.mLongitude, &mPlaces);
    appendLittle(nPoint.mLatitude, &mPlaces);
  }
  /// Begins anew; where the track goes on, at the last point.
  void restart(bool nGoesOn) {
    const TrackPoint lLast = mLast;
    *this = {};
    if (nGoesOn) add(lLast);
  }

  uint32_t getCount() const { return mCount; }
  const TrackPoint& getFirst() const { return mFirst; }
  const TrackPoint& getLast() const { return mLast; }

  std::string shape() const {
    std::string lShape("GP\0\x03", 4);  // version 0; little-endian, bounds of four numbers
    appendLittle(WGS_84, &lShape);
    for (const double lSide : {mBounds.mWest, mBounds.mEast, mBounds.mSouth, mBounds.mNorth}) {
      appendLittle(lSide, &lShape);
    }
    lShape.push_back('\x01');
    appendLittle(uint32_t{2}, &lShape);
    appendLittle(mCount, &lShape);
    return lShape + mPlaces;
  }

 private:
  uint32_t mCount = 0;
  TrackPoint mFirst, mLast;
  Bounds mBounds;
  std::string mPlaces;
};

}  // namespace logtool
