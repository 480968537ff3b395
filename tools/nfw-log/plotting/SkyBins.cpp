#include "SkyBins.h"

#include <algorithm>
#include <cmath>

namespace logtool {

namespace {

const int64_t PAUSE_MS = 10000;  // a bin does not reach over it

int16_t degreesOf(double nValue, double nMost) {
  return nValue >= 0.0 && nValue <= nMost ? static_cast<int16_t>(std::lround(nValue)) : static_cast<int16_t>(-1);
}

SkyCell cellOf(const SatelliteView& nView) {
  SkyCell lCell;
  lCell.mTold = 1;
  if (nView.mSnr > 0.0 && nView.mSnr < 100.0) {
    lCell.mSignals = 1;
    lCell.mSnrSum = static_cast<uint32_t>(std::lround(nView.mSnr));
  }
  lCell.mElevation = degreesOf(nView.mElevation, 90.0);
  lCell.mAzimuth = degreesOf(nView.mAzimuth, 360.0);
  return lCell;
}

}  // namespace

void SkyCell::add(const SkyCell& nCell) {
  if (mElevation < 0 || mAzimuth < 0) {
    mElevation = nCell.mElevation;
    mAzimuth = nCell.mAzimuth;
  }
  mTold += nCell.mTold;
  mSignals += nCell.mSignals;
  mSnrSum += nCell.mSnrSum;
}

void SkyBins::add(const Sky& nSky) {
  const bool lIsDated = nSky.mUtcMs >= 0;
  if (lIsDated && !mIsUtc) mBins.clear();
  mIsUtc = mIsUtc || lIsDated;
  if (mIsUtc && !lIsDated) return;
  Bin& lBin = binFor(mIsUtc ? nSky.mUtcMs : static_cast<int64_t>(nSky.mElapsedMs));
  for (const SatelliteView& lView : nSky.mSatellites) {
    const size_t lIndex = indexOf(lView.mName);
    if (lIndex >= MAX_SATELLITES) continue;
    if (lBin.mCells.size() <= lIndex) lBin.mCells.resize(lIndex + 1);
    lBin.mCells[lIndex].add(cellOf(lView));
  }
}

/// Tracks of one drive tell of one time several times.
SkyBins::Bin& SkyBins::binFor(int64_t nTime) {
  const bool lIsIn = !mBins.empty() && nTime >= mBins.back().mFrom && nTime <= mBins.back().mTo;
  if (lIsIn) return mBins.back();
  const bool lIsNear = !mBins.empty() && nTime > mBins.back().mTo && nTime - mBins.back().mTo <= PAUSE_MS;
  if (lIsNear && mEpochsInLast < mEpochsPerBin) {
    ++mEpochsInLast;
    mBins.back().mTo = nTime;
    return mBins.back();
  }
  if (mBins.size() >= MAX_BINS) mergePairs();
  mEpochsInLast = 1;
  mBins.push_back({nTime, nTime, {}});
  return mBins.back();
}

size_t SkyBins::indexOf(const SatelliteName& nName) {
  const size_t lIndex =
      static_cast<size_t>(std::find(mSatellites.begin(), mSatellites.end(), nName) - mSatellites.begin());
  if (lIndex == mSatellites.size() && lIndex < MAX_SATELLITES) mSatellites.push_back(nName);
  return lIndex;
}

void SkyBins::merge(const Bin& nBin, Bin* npInto) {
  npInto->mFrom = std::min(npInto->mFrom, nBin.mFrom);
  npInto->mTo = std::max(npInto->mTo, nBin.mTo);
  if (npInto->mCells.size() < nBin.mCells.size()) npInto->mCells.resize(nBin.mCells.size());
  for (size_t i = 0; i < nBin.mCells.size(); ++i) npInto->mCells[i].add(nBin.mCells[i]);
}

void SkyBins::mergePairs() {
  for (size_t i = 0; i + 1 < mBins.size(); i += 2) {
    merge(mBins[i + 1], &mBins[i]);
    if (i > 0) std::swap(mBins[i / 2], mBins[i]);
  }
  mBins.resize(mBins.size() / 2);
  mEpochsPerBin *= 2;
}

}  // namespace logtool
