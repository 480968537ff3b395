#include "VehicleModel.h"

#include <algorithm>
#include <cmath>

namespace drive {

namespace {

const double SPEEDS[] = {5.5, 8.3, 13.9, 13.9, 19.4, 27.8};  // metres per second: a side street to a motorway

}  // namespace

void VehicleModel::step(double nSeconds) {
  if (mLegLeft <= 0.0) beginLeg();
  mLegLeft -= nSeconds;
  const double lSpeed = nextSpeed(nSeconds);
  const double lMeanSpeed = (mState.mSpeed + lSpeed) / 2.0;
  const double lTurn = turn(nSeconds, lMeanSpeed);
  move(lMeanSpeed * nSeconds, mState.mCourse + lTurn / 2.0);
  mState.mCourse = wrapCourse(mState.mCourse + lTurn);
  mState.mSpeed = lSpeed;
  climb(nSeconds);
}

void VehicleModel::beginLeg() {
  mLegLeft = mRandom.between(6.0, 30.0);
  const bool lStops = mTargetSpeed > 0.0 && mRandom.next() % 5 == 0;
  mTargetSpeed = lStops ? 0.0 : SPEEDS[mRandom.next() % (sizeof(SPEEDS) / sizeof(SPEEDS[0]))];
  mTurnLeft = mRandom.between(-100.0, 100.0);
  mSlope = mState.mAltitude > 150.0 ? -0.02 : mRandom.between(-0.02, 0.03);
}

double VehicleModel::nextSpeed(double nSeconds) const {
  const double lReach = MAX_ACCELERATION * nSeconds;
  return mState.mSpeed + std::clamp(mTargetSpeed - mState.mSpeed, -lReach, lReach);
}

// Degrees turned in this step: a car that stands does not turn, a fast one only gently.
double VehicleModel::turn(double nSeconds, double nSpeed) {
  if (nSpeed < 0.5) return 0.0;
  const double lReach = std::min(30.0, toDegrees(MAX_ACCELERATION / nSpeed)) * nSeconds;
  const double lTurn = std::clamp(mTurnLeft, -lReach, lReach);
  mTurnLeft -= lTurn;
  return lTurn;
}

void VehicleModel::climb(double nSeconds) {
  mState.mClimb = mState.mAltitude <= 1.0 && mSlope < 0.0 ? 0.0 : mSlope * mState.mSpeed;
  mState.mAltitude += mState.mClimb * nSeconds;
}

void VehicleModel::move(double nMetres, double nCourse) {
  const Place lPlace = moved({mState.mLatitude, mState.mLongitude}, nMetres, nCourse);
  mState.mLatitude = lPlace.mLatitude;
  mState.mLongitude = lPlace.mLongitude;
}

}  // namespace drive
