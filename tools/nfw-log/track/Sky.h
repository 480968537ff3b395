#pragma once

#include <cstdint>
#include <vector>

#include "Constellation.h"

namespace logtool {

/// A satellite in view. A number that was not told is NAN.
struct SatelliteView {
  SatelliteName mName;
  double mElevation, mAzimuth;  ///< degrees
  double mSnr;                  ///< dBHz, the greatest of its signals
};

/// What one epoch of a recording told of satellites.
struct Sky {
  int64_t mUtcMs = -1;      ///< since 1970; -1 while no sentence has told the date
  uint64_t mElapsedMs = 0;  ///< from the recording's first record
  std::vector<SatelliteView> mSatellites;
};

}  // namespace logtool
