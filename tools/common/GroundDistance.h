#pragma once

#include <cmath>

namespace tool {

const double METRES_PER_DEGREE = 111194.9;  ///< of a sphere of 6371 km
const double RADIANS = 3.14159265358979323846 / 180.0;

/// Metres between two places that are not far from each other.
inline double groundDistance(double nLatitude1, double nLongitude1, double nLatitude2, double nLongitude2) {
  const double lEast = std::remainder(nLongitude2 - nLongitude1, 360.0);  // also across the date line
  return METRES_PER_DEGREE *
         std::hypot(nLatitude2 - nLatitude1, lEast * std::cos((nLatitude1 + nLatitude2) / 2.0 * RADIANS));
}

}  // namespace tool
