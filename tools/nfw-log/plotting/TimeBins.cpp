#include "TimeBins.h"

namespace logtool {

void TimeBins::add(const TrackPoint& nPoint) {
  const bool lIsDated = nPoint.mUtcMs >= 0;
  if (!lIsDated) ++mUndated;
  if (lIsDated && !mIsUtc) mBins.clear();
  mIsUtc = mIsUtc || lIsDated;
  if (mIsUtc && !lIsDated) return;
  const int64_t lTime = mIsUtc ? nPoint.mUtcMs : static_cast<int64_t>(nPoint.mElapsedMs);
  TimeBin lBin = {lTime, lTime, nPoint.mIsBreak, nPoint.isDeadReckoned(), {}};
  lBin.mRanges[SERIES_SPEED].add(nPoint.mSpeedKmh);
  lBin.mRanges[SERIES_ALTITUDE].add(nPoint.mAltitude);
  lBin.mRanges[SERIES_SATELLITES].add(nPoint.mSatellites);
  lBin.mRanges[SERIES_HDOP].add(nPoint.mHdop);
  if (!mBins.empty() && mPointsInLast < mPointsPerBin && !lBin.mIsBreak) {
    mBins.back().add(lBin);
    ++mPointsInLast;
    return;
  }
  mBins.push_back(lBin);
  mPointsInLast = 1;
  if (mBins.size() >= MAX_BINS) mergePairs();
}

Range TimeBins::rangeOf(Series nSeries) const {
  Range lRange;
  for (const TimeBin& lBin : mBins) lRange.add(lBin.mRanges[nSeries]);
  return lRange;
}

// Not across a break while there is enough to merge without.
void TimeBins::mergePairs() {
  for (const bool lKeepsBreaks : {true, false}) {
    size_t lCount = 0;
    for (size_t i = 0; i < mBins.size(); ++i) {
      mBins[lCount] = mBins[i];
      const bool lIsPair = i + 1 < mBins.size() && !(lKeepsBreaks && mBins[i + 1].mIsBreak);
      if (lIsPair) mBins[lCount].add(mBins[++i]);
      ++lCount;
    }
    mBins.resize(lCount);
    if (lCount <= MAX_BINS * 3 / 4) break;
  }
  mPointsPerBin *= 2;
  mPointsInLast = mPointsPerBin;
}

}  // namespace logtool
