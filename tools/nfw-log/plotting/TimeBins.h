#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "TrackPoint.h"

namespace logtool {

enum Series { SERIES_SPEED, SERIES_ALTITUDE, SERIES_SATELLITES, SERIES_HDOP };
const int SERIES_NUM = SERIES_HDOP + 1;

/// The least and the greatest value of a stretch of time, and their mean; nothing told when there are none.
struct Range {
  double mLow = std::numeric_limits<double>::infinity();
  double mHigh = -std::numeric_limits<double>::infinity();

  double mSum = 0.0;
  uint64_t mCount = 0;

  /// NAN is not told.
  void add(double nValue) {
    if (nValue == nValue) add({nValue, nValue, nValue, 1});
  }
  void add(const Range& nRange) {
    if (nRange.mLow < mLow) mLow = nRange.mLow;
    if (nRange.mHigh > mHigh) mHigh = nRange.mHigh;
    mSum += nRange.mSum;
    mCount += nRange.mCount;
  }
  bool isEmpty() const { return mCount == 0; }
  double mean() const { return mSum / static_cast<double>(mCount); }
};

/// What is told of a stretch of time.
struct TimeBin {
  int64_t mFrom, mTo;  ///< milliseconds, of its first and last point
  bool mIsBreak;       ///< the curves do not go on from the bin before
  bool mIsReckoned;    ///< all of it
  Range mRanges[SERIES_NUM];

  /// Takes in the bin behind it.
  void add(const TimeBin& nBin) {
    mFrom = std::min(mFrom, nBin.mFrom);
    mTo = std::max(mTo, nBin.mTo);
    mIsReckoned = mIsReckoned && nBin.mIsReckoned;
    for (int i = 0; i < SERIES_NUM; ++i) mRanges[i].add(nBin.mRanges[i]);
  }
};

/// Curves over time in bounded memory: neighbouring bins become one when they are too many, so that no peak is lost.
/// Every point stands at its own time, also one that goes back, which is a break.
class TimeBins {
 public:
  static constexpr size_t MAX_BINS = 4000;

  void add(const TrackPoint& nPoint);
  const std::vector<TimeBin>& getBins() const { return mBins; }
  Range rangeOf(Series nSeries) const;
  /// Whether the times are UTC since 1970; else they count from the recording's begin. One point with UTC makes them
  /// so: what has none is left out then.
  bool isUtc() const { return mIsUtc; }
  uint64_t getUndated() const { return mUndated; }  ///< points without UTC

 private:
  void mergePairs();

  std::vector<TimeBin> mBins;
  size_t mPointsInLast = 0;
  size_t mPointsPerBin = 1;
  bool mIsUtc = false;
  uint64_t mUndated = 0;
};

}  // namespace logtool
