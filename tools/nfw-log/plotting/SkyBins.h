#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Sky.h"

namespace logtool {

/// What a stretch of time told of a satellite.
struct SkyCell {
  uint32_t mTold = 0, mSignals = 0;        ///< epochs in which it was in view, and of these with a signal
  uint32_t mSnrSum = 0;                    ///< dBHz, of those with a signal
  int16_t mElevation = -1, mAzimuth = -1;  ///< degrees, the first told; -1 is not told

  void add(const SkyCell& nCell);
};

/// The satellites over time in bounded memory: neighbouring stretches become one when they are too many.
class SkyBins {
 public:
  static constexpr size_t MAX_BINS = 2048;
  static constexpr size_t MAX_SATELLITES = 160;  ///< what is beyond is left out

  struct Bin {
    int64_t mFrom, mTo;           ///< milliseconds, as isUtc() tells
    std::vector<SkyCell> mCells;  ///< of getSatellites(); those behind the end were not in view
  };

  void add(const Sky& nSky);
  const std::vector<Bin>& getBins() const { return mBins; }
  const std::vector<SatelliteName>& getSatellites() const { return mSatellites; }
  bool isUtc() const { return mIsUtc; }  ///< as TimeBins has it

 private:
  Bin& binFor(int64_t nTime);
  size_t indexOf(const SatelliteName& nName);
  static void merge(const Bin& nBin, Bin* npInto);
  void mergePairs();

  std::vector<SatelliteName> mSatellites;
  std::vector<Bin> mBins;
  size_t mEpochsInLast = 0;
  size_t mEpochsPerBin = 1;
  bool mIsUtc = false;
};

}  // namespace logtool
