#pragma once

namespace drive {

const double PI = 3.14159265358979323846;
const double EARTH_RADIUS = 6371008.8;  // metres; the model's earth is a ball

inline double toRadians(double nDegrees) { return nDegrees * PI / 180.0; }
inline double toDegrees(double nRadians) { return nRadians * 180.0 / PI; }

/// Degrees, north and east positive.
struct Place {
  double mLatitude;
  double mLongitude;
};

/// Where one gets from a place in a direction, in degrees from north.
Place moved(const Place& nFrom, double nMetres, double nCourse);

/// 0 to below 360.
double wrapCourse(double nCourse);

/// The same with two decimals, as sentences have it: what rounds up to 360 is 0.
double roundedCourse(double nCourse);

/// Degrees as (d)ddmm.mmmmm with a sign, rounded to the last digit: there are never 60 minutes.
double toSentenceAngle(double nDegrees);

}  // namespace drive
