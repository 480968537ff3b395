#include "ColourScale.h"

#include <algorithm>
#include <cmath>

namespace logtool {

namespace {

const int SPEED_CLASSES = 9;
const char* const SPEEDS[SPEED_CLASSES] = {"#2c3e9e", "#2f6fc4", "#1f95b0", "#229a74", "#63a52a",
                                           "#c29a12", "#de7518", "#d0431c", "#971a2c"};
const char* const FIXES[] = {"#808080", "#d98212", "#2f6fc4", "#229a74", "#b5306b"};
const char* const FIX_WORDS[] = {"no fix", "2D", "3D", "differential", "dead-reckoned"};
const char* const NOT_TOLD = "#808080";
const double LINE = 20.0;  // pixels

}  // namespace

ColourScale::ColourScale(bool nByFix, const Range& nSpeed) : mByFix(nByFix) {
  if (!nSpeed.isEmpty() && nSpeed.mHigh > 0.0) {
    const Ticks lTicks = roundTicks(0.0, nSpeed.mHigh, 5);
    mMaxSpeed = std::ceil(nSpeed.mHigh / lTicks.mStep - 0.03) * lTicks.mStep;
  }
}

int ColourScale::classOf(const TrackPlace& nPlace) const {
  if (mByFix) return nPlace.mFix;
  if (std::isnan(nPlace.mSpeedKmh)) return -1;
  const int lClass = static_cast<int>(static_cast<double>(nPlace.mSpeedKmh) / mMaxSpeed * SPEED_CLASSES);
  return std::clamp(lClass, 0, SPEED_CLASSES - 1);
}

const char* ColourScale::colourOf(int nClass, bool nByFix) {
  if (nClass < 0) return NOT_TOLD;
  return nByFix ? FIXES[nClass] : SPEEDS[nClass];
}

void ColourScale::drawLegend(const Box& nBox, bool nHasReckoned, Svg* npSvg) const {
  if (mByFix)
    drawFixes(nBox, npSvg);
  else
    drawSpeeds(nBox, npSvg);
  if (!nHasReckoned) return;
  const double lY = nBox.mY + (mByFix ? 100.0 : 256.0);
  npSvg->path(fmt::format("M{:.1f} {:.1f}h28", nBox.mX, lY), "track reckoned",
              mByFix ? FIXES[FIX_ESTIMATED] : "#404040");
  npSvg->text(nBox.mX, lY + 17.0, Svg::START, "label", "dead-reckoned");
}

void ColourScale::drawSpeeds(const Box& nBox, Svg* npSvg) const {
  npSvg->text(nBox.mX, nBox.mY + 12.0, Svg::START, "label", "Speed, km/h");
  const double lTop = nBox.mY + 26.0, lHeight = 200.0;
  for (int i = 0; i < SPEED_CLASSES; ++i) {
    const double lStep = lHeight / SPEED_CLASSES;
    npSvg->rectangle({nBox.mX, lTop + lHeight - (i + 1) * lStep, 16.0, lStep + 0.3}, "swatch", SPEEDS[i]);
  }
  const Ticks lTicks = roundTicks(0.0, mMaxSpeed, 6);
  for (const double lValue : lTicks.mValues) {
    const double lY = lTop + lHeight * (1.0 - lValue / mMaxSpeed);
    npSvg->line(nBox.mX + 16.0, lY, nBox.mX + 20.0, lY, "axis");
    npSvg->text(nBox.mX + 24.0, lY + 4.0, Svg::START, "label", fmt::format("{:.{}f}", lValue, lTicks.mDecimals));
  }
}

void ColourScale::drawFixes(const Box& nBox, Svg* npSvg) const {
  npSvg->text(nBox.mX, nBox.mY + 12.0, Svg::START, "label", "Fix");
  for (int i = FIX_2D; i < FIX_ESTIMATED; ++i) {
    const double lY = nBox.mY + 14.0 + i * LINE;
    npSvg->rectangle({nBox.mX, lY - 11.0, 16.0, 12.0}, "swatch", FIXES[i]);
    npSvg->text(nBox.mX + 24.0, lY, Svg::START, "label", FIX_WORDS[i]);
  }
}

}  // namespace logtool
