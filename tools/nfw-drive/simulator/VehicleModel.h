#pragma once

#include "Geodesy.h"
#include "Random.h"

namespace drive {

/// Where the vehicle is and how it moves.
struct VehicleState {
  double mLatitude = 35.658;    ///< degrees, north positive
  double mLongitude = 139.745;  ///< degrees, east positive
  double mAltitude = 42.0;      ///< metres above mean sea level
  double mSpeed = 0.0;          ///< metres per second over ground
  double mCourse = 60.0;        ///< degrees true, 0 to below 360
  double mClimb = 0.0;          ///< metres per second upwards
};

/// A car in traffic: legs of random speed and bend, stops between, within the bounds of comfort. The position is the
/// integral of speed and course.
class VehicleModel {
 public:
  static constexpr double MAX_ACCELERATION = 2.0;  ///< metres per second squared, ahead and sideways

  explicit VehicleModel(uint64_t nSeed) : mRandom(nSeed) {}

  void step(double nSeconds);
  const VehicleState& getState() const { return mState; }

 private:
  void beginLeg();
  double nextSpeed(double nSeconds) const;
  double turn(double nSeconds, double nSpeed);
  void climb(double nSeconds);
  void move(double nMetres, double nCourse);

  tool::Random mRandom;
  VehicleState mState;
  double mLegLeft = 0.0;      // seconds
  double mTargetSpeed = 0.0;  // metres per second
  double mTurnLeft = 0.0;     // degrees, right positive
  double mSlope = 0.0;        // climb per metre driven
};

}  // namespace drive
