#include "TimeBins.h"

namespace logtool {

namespace {

const int64_t PAUSE_MS = 1000;  // shown between recordings whose times go back

}  // namespace

void TimeBins::add(const TrackPoint& nPoint) {
  const int64_t lTime = timeOf(nPoint);
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

// The receiver's time if the first point has it; a recording may have run slower or faster than that.
int64_t TimeBins::timeOf(const TrackPoint& nPoint) {
  if (mBins.empty()) mIsUtc = nPoint.mUtcMs >= 0;
  int64_t lTime = mIsUtc ? nPoint.mUtcMs : static_cast<int64_t>(nPoint.mElapsedMs);
  lTime = mIsUtc && lTime < 0 ? mLastTime : lTime + mShift;
  if (!mBins.empty() && lTime < mLastTime) {
    mShift += mLastTime + PAUSE_MS - lTime;
    lTime = mLastTime + PAUSE_MS;
  }
  mLastTime = lTime;
  return lTime;
}

void TimeBins::mergePairs() {
  size_t lCount = 0;
  for (size_t i = 0; i < mBins.size(); i += 2) {
    mBins[lCount] = mBins[i];
    if (i + 1 < mBins.size()) mBins[lCount].add(mBins[i + 1]);
    ++lCount;
  }
  mBins.resize(lCount);
  mPointsPerBin *= 2;
  mPointsInLast = mPointsPerBin;
}

}  // namespace logtool
