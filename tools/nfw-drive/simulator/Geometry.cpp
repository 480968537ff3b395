#include "Geometry.h"

#include <cmath>
#include <utility>

namespace drive {

namespace {

const double GRAVITY = 3.986004418e14;       // of the earth, cubic metres per second squared
const double EARTH_ROTATION = 7.2921151e-5;  // radians per second
const Dops NO_DOPS = {99.99, 99.99, 99.99, 99.99};

struct Vector {
  double x, y, z;
};

// Earth-fixed.
Vector satellitePosition(const Constellation& nSystem, unsigned int nIndex, double nSeconds) {
  const unsigned int lPlane = nIndex / nSystem.mPerPlane;
  const unsigned int lSlot = nIndex % nSystem.mPerPlane;
  const double lMotion = std::sqrt(GRAVITY / (nSystem.mRadius * nSystem.mRadius * nSystem.mRadius));
  const double lAlong = toRadians(lSlot * 360.0 / nSystem.mPerPlane + lPlane * nSystem.mPhase) + lMotion * nSeconds;
  const double lNode = toRadians(lPlane * 360.0 / nSystem.mPlanes) - EARTH_ROTATION * nSeconds;
  const double lTilt = toRadians(nSystem.mInclination);
  const double lX = std::cos(lAlong);
  const double lY = std::sin(lAlong) * std::cos(lTilt);
  return {nSystem.mRadius * (lX * std::cos(lNode) - lY * std::sin(lNode)),
          nSystem.mRadius * (lX * std::sin(lNode) + lY * std::cos(lNode)),
          nSystem.mRadius * std::sin(lAlong) * std::sin(lTilt)};
}

// From earth-fixed to east, north, up of the vehicle.
Vector lineOfSight(const Vector& nSatellite, const VehicleState& nVehicle) {
  const double lLat = toRadians(nVehicle.mLatitude);
  const double lLon = toRadians(nVehicle.mLongitude);
  const double lOut = nSatellite.x * std::cos(lLon) + nSatellite.y * std::sin(lLon);
  return {nSatellite.y * std::cos(lLon) - nSatellite.x * std::sin(lLon),
          nSatellite.z * std::cos(lLat) - lOut * std::sin(lLat),
          lOut * std::cos(lLat) + nSatellite.z * std::sin(lLat) - EARTH_RADIUS - nVehicle.mAltitude};
}

// Gauss and Jordan with pivoting, on the matrix beside the unit matrix.
bool invert(double (&nMatrix)[4][8]) {
  for (int i = 0; i < 4; ++i) {
    int lPivot = i;
    for (int r = i + 1; r < 4; ++r) {
      if (std::fabs(nMatrix[r][i]) > std::fabs(nMatrix[lPivot][i])) lPivot = r;
    }
    if (std::fabs(nMatrix[lPivot][i]) < 1e-9) return false;
    std::swap(nMatrix[i], nMatrix[lPivot]);
    const double lScale = nMatrix[i][i];
    for (double& lValue : nMatrix[i]) lValue /= lScale;
    for (int r = 0; r < 4; ++r) {
      const double lFactor = r == i ? 0.0 : nMatrix[r][i];
      for (int c = 0; c < 8; ++c) nMatrix[r][c] -= lFactor * nMatrix[i][c];
    }
  }
  return true;
}

}  // namespace

SkyDirection directionOf(const Constellation& nConstellation, unsigned int nIndex, double nSeconds,
                         const VehicleState& nVehicle) {
  const Vector lSight = lineOfSight(satellitePosition(nConstellation, nIndex, nSeconds), nVehicle);
  const double lAzimuth = toDegrees(std::atan2(lSight.x, lSight.y));
  return {toDegrees(std::atan2(lSight.z, std::hypot(lSight.x, lSight.y))),
          lAzimuth < 0.0 ? lAzimuth + 360.0 : lAzimuth};
}

void DopSum::add(const SkyDirection& nDirection) {
  const double lFlat = std::cos(toRadians(nDirection.mElevation));
  const double lRow[4] = {lFlat * std::sin(toRadians(nDirection.mAzimuth)),
                          lFlat * std::cos(toRadians(nDirection.mAzimuth)), std::sin(toRadians(nDirection.mElevation)),
                          1.0};
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) mNormal[r][c] += lRow[r] * lRow[c];
  }
}

Dops DopSum::result() const {
  double lMatrix[4][8] = {};
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) lMatrix[r][c] = mNormal[r][c];
    lMatrix[r][r + 4] = 1.0;
  }
  if (!invert(lMatrix)) return NO_DOPS;
  const double lFlat = lMatrix[0][4] + lMatrix[1][5];
  return {std::sqrt(lFlat + lMatrix[2][6]), std::sqrt(lFlat), std::sqrt(lMatrix[2][6]), std::sqrt(lMatrix[3][7])};
}

}  // namespace drive
