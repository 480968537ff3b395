#include "Geodesy.h"

#include <cmath>

namespace drive {

Place moved(const Place& nFrom, double nMetres, double nCourse) {
  const double lCourse = toRadians(nCourse);
  const double lNorth = nMetres * std::cos(lCourse) / EARTH_RADIUS;
  const double lMiddle = toRadians(nFrom.mLatitude) + lNorth / 2.0;
  const double lEast = nMetres * std::sin(lCourse) / (EARTH_RADIUS * std::cos(lMiddle));
  double lLongitude = nFrom.mLongitude + toDegrees(lEast);
  if (lLongitude >= 180.0) lLongitude -= 360.0;
  if (lLongitude < -180.0) lLongitude += 360.0;
  return {nFrom.mLatitude + toDegrees(lNorth), lLongitude};
}

double wrapCourse(double nCourse) {
  const double lCourse = std::fmod(nCourse, 360.0);
  return lCourse < 0.0 ? lCourse + 360.0 : lCourse;
}

double roundedCourse(double nCourse) {
  const double lCourse = std::round(nCourse * 100.0) / 100.0;
  return lCourse >= 360.0 ? lCourse - 360.0 : lCourse;
}

double toSentenceAngle(double nDegrees) {
  const double UNIT = 100000.0;  // of the last digit: so many in a minute
  const double lUnits = std::round(std::fabs(nDegrees) * 60.0 * UNIT);
  const double lDegrees = std::floor(lUnits / (60.0 * UNIT));
  const double lAngle = lDegrees * 100.0 + (lUnits - lDegrees * 60.0 * UNIT) / UNIT;
  return nDegrees < 0.0 ? -lAngle : lAngle;
}

}  // namespace drive
