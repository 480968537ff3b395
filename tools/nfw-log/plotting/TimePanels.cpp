#include "TimePanels.h"

#include <algorithm>
#include <cmath>

#include "WallClock.h"

namespace logtool {

namespace {

const char* const TITLES[SERIES_NUM] = {"Speed, km/h", "Altitude, m", "Satellites used", "HDOP"};
const double LEAST_SPANS[SERIES_NUM] = {10.0, 10.0, 4.0, 1.0};  // a steady value need not look wild
const int64_t MOST_TIMES = 9;
const size_t MOST_SINGLE = 2000;  // bins that can be told apart
const size_t MOST_BANDS = 400;    // where they cannot: of a mean in a band

int64_t roundStep(int64_t nSpan) {
  static const int64_t STEPS[] = {100,     200,     500,     1000,     2000,     5000,    10000,
                                  15000,   30000,   60000,   120000,   300000,   600000,  900000,
                                  1800000, 3600000, 7200000, 10800000, 21600000, 43200000};
  for (const int64_t lStep : STEPS) {
    if (nSpan / lStep <= MOST_TIMES) return lStep;
  }
  return (nSpan / MOST_TIMES / 86400000 + 1) * 86400000;
}

}  // namespace

TimePanels::TimePanels(const std::vector<TimeCurve>& nCurves)
    : mIsUtc(std::any_of(nCurves.begin(), nCurves.end(), [](const TimeCurve& n) { return n.mpBins->isUtc(); })) {
  for (const TimeCurve& lCurve : nCurves) {
    if (lCurve.mpBins->isUtc() == mIsUtc) mCurves.push_back({readable(lCurve.mpBins->getBins()), lCurve.mpColour});
  }
  for (const Curve& lCurve : mCurves) {
    for (const TimeBin& lBin : lCurve.mBins) {
      mFrom = std::min(mFrom, lBin.mFrom);
      mTo = std::max(mTo, lBin.mTo);
    }
  }
  mTo = std::max(mTo, mFrom + 1000);
  mStep = roundStep(mTo - mFrom);
}

void TimePanels::draw(double nX, double nY, double nWidth, Svg* npSvg) const {
  double lY = nY + PANEL_DISTANCE;
  for (int i = 0; i < SERIES_NUM; ++i, lY += PANEL_HEIGHT + PANEL_DISTANCE) {
    const Box lBox = {nX, lY, nWidth, PANEL_HEIGHT};
    npSvg->rectangle(lBox, "panel");
    npSvg->text(nX, lY - 7.0, Svg::START, "strong", TITLES[i]);
    drawReckoned(lBox, npSvg);
    drawTimes(lBox, i + 1 == SERIES_NUM, npSvg);
    drawCurves(lBox, static_cast<Series>(i), npSvg);
  }
  const char* const lpTitle = mIsUtc ? "Time, UTC" : "Time from the begin of the recording";
  npSvg->text(nX + nWidth / 2.0, lY - PANEL_DISTANCE + 36.0, Svg::MIDDLE, "label", lpTitle);
}

double TimePanels::xOf(const Box& nBox, int64_t nTime) const {
  return nBox.mX + nBox.mWidth * static_cast<double>(nTime - mFrom) / static_cast<double>(mTo - mFrom);
}

void TimePanels::drawReckoned(const Box& nBox, Svg* npSvg) const {
  for (const Curve& lCurve : mCurves) {
    const std::vector<TimeBin>& lBins = lCurve.mBins;
    for (size_t i = 0; i < lBins.size(); ++i) {
      if (!lBins[i].mIsReckoned) continue;
      const size_t lFirst = i;
      while (i + 1 < lBins.size() && lBins[i + 1].mIsReckoned && !lBins[i + 1].mIsBreak) ++i;
      const double lX = xOf(nBox, lBins[lFirst].mFrom);
      npSvg->rectangle({lX, nBox.mY, std::max(1.0, xOf(nBox, lBins[i].mTo) - lX), nBox.mHeight}, "shade");
    }
  }
}

void TimePanels::drawTimes(const Box& nBox, bool nHasLabels, Svg* npSvg) const {
  for (int64_t lTime = (mFrom + mStep - 1) / mStep * mStep; lTime <= mTo; lTime += mStep) {
    const double lX = xOf(nBox, lTime);
    npSvg->line(lX, nBox.mY, lX, nBox.bottom(), "grid");
    if (nHasLabels) npSvg->text(lX, nBox.bottom() + 18.0, Svg::MIDDLE, "label", labelOf(lTime));
  }
}

std::string TimePanels::labelOf(int64_t nTime) const {
  if (!mIsUtc) {
    const std::string lText = durationText(static_cast<uint64_t>(nTime));
    return mStep % 1000 == 0 ? lText.substr(0, lText.size() - 4) : lText;
  }
  const std::string lText = timeText(nTime);  // "YYYY-MM-DD hh:mm:ss.mmm"
  if (mStep >= 86400000) return lText.substr(0, 10);
  if (mStep % 60000 == 0) return lText.substr(11, 5);
  return mStep % 1000 == 0 ? lText.substr(11, 8) : lText.substr(11, 10);
}

void TimePanels::drawCurves(const Box& nBox, Series nSeries, Svg* npSvg) const {
  Range lRange;
  for (const Curve& lCurve : mCurves) {
    for (const TimeBin& lBin : lCurve.mBins) lRange.add(lBin.mRanges[nSeries]);
  }
  if (lRange.isEmpty()) {
    npSvg->text(nBox.mX + nBox.mWidth / 2.0, nBox.mY + nBox.mHeight / 2.0, Svg::MIDDLE, "label",
                "not in the recording");
    return;
  }
  const double lMiddle = (lRange.mLow + lRange.mHigh) / 2.0;
  double lLow = std::min(lRange.mLow, lMiddle - LEAST_SPANS[nSeries] / 2.0);
  if (nSeries != SERIES_ALTITUDE) lLow = 0.0;
  const double lHigh = std::max(lRange.mHigh, lLow + LEAST_SPANS[nSeries]);
  const Ticks lTicks = roundTicks(lLow, lHigh, 4);
  const double lBottom = std::floor(lLow / lTicks.mStep) * lTicks.mStep;
  const double lTop = std::ceil(lHigh / lTicks.mStep - 0.03) * lTicks.mStep;
  for (const double lValue : roundTicks(lBottom, lTop, 5).mValues) {
    const double lY = nBox.bottom() - nBox.mHeight * (lValue - lBottom) / (lTop - lBottom);
    npSvg->line(nBox.mX, lY, nBox.right(), lY, "grid");
    npSvg->text(nBox.mX - 6.0, lY + 4.0, Svg::END, "label", fmt::format("{:.{}f}", lValue, lTicks.mDecimals));
  }
  drawRuns(nBox, nSeries, {lBottom, lTop, 0.0, 0}, npSvg);
}

void TimePanels::drawRuns(const Box& nBox, Series nSeries, const Range& nAxis, Svg* npSvg) const {
  for (const Curve& lCurve : mCurves) {
    const std::vector<TimeBin>& lBins = lCurve.mBins;
    size_t lFirst = 0;
    for (size_t i = 0; i <= lBins.size(); ++i) {
      const bool lIsEnd = i == lBins.size() || lBins[i].mRanges[nSeries].isEmpty();
      if (!lIsEnd && !lBins[i].mIsBreak) continue;
      if (i > lFirst) drawRun(nBox, nSeries, nAxis, lCurve, lFirst, i, npSvg);
      lFirst = lIsEnd ? i + 1 : i;
    }
  }
}

/// Draws bins that follow each other: the means as a line, and behind it the band from the least to the greatest.
void TimePanels::drawRun(const Box& nBox, Series nSeries, const Range& nAxis, const Curve& nCurve, size_t nFirst,
                         size_t nEnd, Svg* npSvg) const {
  const std::vector<TimeBin>& lBins = nCurve.mBins;
  const auto lPlace = [&](size_t nIndex, double nValue) {
    const double lX = (xOf(nBox, lBins[nIndex].mFrom) + xOf(nBox, lBins[nIndex].mTo)) / 2.0;
    const double lY = nBox.bottom() - nBox.mHeight * (nValue - nAxis.mLow) / (nAxis.mHigh - nAxis.mLow);
    return fmt::format("{:.1f} {:.1f}", lX, lY);
  };
  std::string lLine, lBand;
  bool lHasBand = false;
  for (size_t i = nFirst; i < nEnd; ++i) {
    const Range& lRange = lBins[i].mRanges[nSeries];
    lHasBand = lHasBand || lRange.mCount > 1;
    lLine += (i == nFirst ? 'M' : 'L') + lPlace(i, lRange.mean());
    lBand += (i == nFirst ? 'M' : 'L') + lPlace(i, lRange.mHigh);
  }
  for (size_t i = nEnd; i > nFirst; --i) lBand += 'L' + lPlace(i - 1, lBins[i - 1].mRanges[nSeries].mLow);
  if (lHasBand) npSvg->path(lBand + "z", "band", {}, nCurve.mpColour);
  npSvg->path(nEnd == nFirst + 1 ? lLine + "h0" : lLine, "curve", nCurve.mpColour);  // a single point still shows
}

std::vector<TimeBin> TimePanels::readable(const std::vector<TimeBin>& nBins) {
  if (nBins.size() <= MOST_SINGLE) return nBins;
  const size_t lGroup = (nBins.size() + MOST_BANDS - 1) / MOST_BANDS;
  std::vector<TimeBin> lBins;
  size_t lHeld = lGroup;
  for (const TimeBin& lBin : nBins) {
    const bool lIsNew = lHeld >= lGroup || lBin.mIsBreak || lBin.mIsReckoned != lBins.back().mIsReckoned;
    if (lIsNew)
      lBins.push_back(lBin);
    else
      lBins.back().add(lBin);
    lHeld = lIsNew ? 1 : lHeld + 1;
  }
  return lBins;
}

}  // namespace logtool
