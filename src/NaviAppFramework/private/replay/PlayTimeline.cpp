#include "PlayTimeline.h"

#include <algorithm>

#include "utl/StringUtil.h"

namespace nfw {
namespace {

using Found = RecordSearch::Found;

const uint32_t PAUSE_MS = 1000;  // between recordings of which nothing better is known
const int32_t DISORDER_MS = 1000;
const uint32_t MARGIN_MS = 1000;       // before a moment: what belongs to it may stand there
const unsigned int MAX_PROBES = 1024;  // of all files together, as far as a file has its least
const unsigned int MIN_FILE_PROBES = 4;
const unsigned int MAX_FILE_PROBES = 64;
const uint64_t WALK_SIZE = 16 * 1024;  // shorter pieces of a file are read record by record

int32_t distance(uint32_t nFrom, uint32_t nTo) { return static_cast<int32_t>(nTo - nFrom); }

bool isBegunAnew(uint32_t nBefore, uint32_t nTime) { return distance(nBefore, nTime) < -DISORDER_MS; }

uint32_t gap(const Found& nLast, const Found& nFirst) {
  const int32_t lTicks = distance(nLast.mTime, nFirst.mTime);
  if (lTicks >= 0) return static_cast<uint32_t>(lTicks);
  if (lTicks >= -DISORDER_MS) return 0;
  const bool lHasDates = nLast.mWallMs != RecordSearch::NO_WALL && nFirst.mWallMs != RecordSearch::NO_WALL;
  return lHasDates && nFirst.mWallMs >= nLast.mWallMs ? static_cast<uint32_t>(nFirst.mWallMs - nLast.mWallMs)
                                                      : PAUSE_MS;
}

/// Bisection: the last record before `nHigh` that is still before the place that is looked for, and for which
/// `nIsBefore` holds as it does for `nLow`.
template <class IsBefore>
Found narrow(RecordSearch& nSearch, Found nLow, uint64_t nHigh, IsBefore nIsBefore) {
  while (nHigh - nLow.mPosition > WALK_SIZE) {
    const uint64_t lMiddle = nLow.mPosition + (nHigh - nLow.mPosition) / 2;
    Found lFound;
    if (nSearch.find(lMiddle, nHigh, &lFound) && nIsBefore(lFound)) {
      nLow = lFound;
    } else {
      nHigh = lMiddle;
    }
  }
  Found lNext;
  while (nLow.mEnd < nHigh && nSearch.read(nLow.mEnd, &lNext) && nIsBefore(lNext)) nLow = lNext;
  return nLow;
}

}  // namespace

bool PlayTimeline::build(const RecordFormat& nFormat, const char* const* nppPaths, unsigned int nNum,
                         const char** nppBadPath) {
  mPaths.resize(nNum);
  for (unsigned int i = 0; i < nNum; ++i) {
    *nppBadPath = nppPaths[i];
    if (!utl::copyStr(mPaths[i].data(), LOG_PATH_SIZE, nppPaths[i]) || !addFile(nFormat, i)) return false;
  }
  return nNum > 0;
}

bool PlayTimeline::addFile(const RecordFormat& nFormat, unsigned int nFile) {
  RecordSearch lSearch(nFormat);
  Found lFirst, lLast;
  if (!lSearch.open(path(nFile)) || !lSearch.read(0, &lFirst) || !lSearch.findLast(&lLast)) return false;
  beginStretch(nFile, lFirst);
  addStretches(lSearch, nFile, lLast);
  return true;
}

void PlayTimeline::addStretches(RecordSearch& nSearch, unsigned int nFile, const Found& nLast) {
  const unsigned int lProbes = std::min(std::max(MAX_PROBES / fileNum(), MIN_FILE_PROBES), MAX_FILE_PROBES);
  for (unsigned int i = 1; i <= lProbes; ++i) {
    Found lProbe = nLast;
    if (i < lProbes && !nSearch.find(nSearch.size() / lProbes * i, nLast.mPosition, &lProbe)) continue;
    if (lProbe.mPosition < mLast.mPosition) continue;
    while (isBegunAnew(mLast.mTime, lProbe.mTime)) {
      const uint32_t lBefore = mLast.mTime;
      const auto lIsBefore = [&](const Found& nFound) { return !isBegunAnew(lBefore, nFound.mTime); };
      noteLast(narrow(nSearch, mLast, lProbe.mPosition, lIsBefore));
      Found lNext;
      if (!nSearch.read(mLast.mEnd, &lNext)) break;
      beginStretch(nFile, lNext);
    }
    if (lProbe.mPosition > mLast.mPosition) noteLast(lProbe);
  }
}

void PlayTimeline::beginStretch(unsigned int nFile, const Found& nFirst) {
  Stretch lStretch;
  lStretch.mFile = nFile;
  lStretch.mBegin = nFirst.mPosition;
  lStretch.mFirstTime = nFirst.mTime;
  lStretch.mOffset = mStretches.empty() ? 0 : length() + gap(mLast, nFirst);
  mStretches.push_back(lStretch);
  noteLast(nFirst);
}

void PlayTimeline::noteLast(const Found& nLast) {
  mLast = nLast;
  mStretches.back().mEnd = nLast.mEnd;
  mStretches.back().mLastTime = nLast.mTime;
}

uint32_t PlayTimeline::length() const {
  const Stretch& lLast = mStretches.back();
  return lLast.mOffset + (lLast.mLastTime - lLast.mFirstTime);
}

PlayTimeline::Place PlayTimeline::find(const RecordFormat& nFormat, uint32_t nOffset) const {
  size_t lIndex = mStretches.size() - 1;
  while (lIndex > 0 && mStretches[lIndex].mOffset + MARGIN_MS > nOffset) --lIndex;  // they may follow without a gap
  const Stretch& lStretch = mStretches[lIndex];
  Place lPlace{lStretch.mFile, lStretch.mBegin};
  const uint32_t lInside = nOffset - lStretch.mOffset;
  RecordSearch lSearch(nFormat);
  Found lFirst;
  if (lInside <= MARGIN_MS || !lSearch.open(path(lStretch.mFile)) || !lSearch.read(lStretch.mBegin, &lFirst)) {
    return lPlace;
  }
  const uint32_t lTime = lStretch.mFirstTime + lInside - MARGIN_MS;
  lPlace.mPosition = narrow(lSearch, lFirst, lStretch.mEnd, [lTime](const Found& nFound) {
                       return distance(lTime, nFound.mTime) < 0;
                     }).mPosition;
  return lPlace;
}

const PlayTimeline::Stretch& PlayTimeline::stretchAt(const Place& nPlace) const {
  const auto lIsBefore = [](const Place& n, const Stretch& nStretch) {
    return n.mFile != nStretch.mFile ? n.mFile < nStretch.mFile : n.mPosition < nStretch.mBegin;
  };
  const auto lNext = std::upper_bound(mStretches.begin() + 1, mStretches.end(), nPlace, lIsBefore);
  return *(lNext - 1);
}

}  // namespace nfw
