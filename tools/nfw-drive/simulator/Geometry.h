#pragma once

#include "SkyModel.h"

namespace drive {

/// A constellation of evenly spaced circular orbits.
struct Constellation {
  unsigned int mFirstNumber;
  unsigned int mPlanes;
  unsigned int mPerPlane;
  double mRadius;       ///< metres
  double mInclination;  ///< degrees
  double mPhase;        ///< degrees between the satellites of neighbouring planes
};

/// A direction in the sky, degrees.
struct SkyDirection {
  double mElevation;
  double mAzimuth;
};

/// Where satellite `nIndex` of the constellation stands, seen from the vehicle.
SkyDirection directionOf(const Constellation& nConstellation, unsigned int nIndex, double nSeconds,
                         const VehicleState& nVehicle);

/// Adds up lines of sight and inverts their normal matrix.
class DopSum {
 public:
  void add(const SkyDirection& nDirection);
  /// All 99.99 when there are fewer than four satellites, or in a degenerate geometry.
  Dops result() const;

 private:
  double mNormal[4][4] = {};
};

}  // namespace drive
