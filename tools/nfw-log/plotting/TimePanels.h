#pragma once

#include "Svg.h"
#include "TimeBins.h"

namespace logtool {

/// The curves of a track. None of it is owned.
struct TimeCurve {
  const TimeBins* mpBins;
  const char* mpColour;
};

/// Draws the curves over time, one panel below the other with one axis of time.
class TimePanels {
 public:
  static constexpr double PANEL_HEIGHT = 96.0;
  static constexpr double PANEL_DISTANCE = 30.0;  ///< from panel to panel: room for the title
  static constexpr double HEIGHT = static_cast<double>(SERIES_NUM) * (PANEL_HEIGHT + PANEL_DISTANCE) + 34.0;

  /// Where one of them has UTC, the axis is UTC, and those without it are not drawn. @param nCurves one at least
  explicit TimePanels(const std::vector<TimeCurve>& nCurves);

  bool isUtc() const { return mIsUtc; }
  int64_t getFrom() const { return mFrom; }  ///< milliseconds
  int64_t getTo() const { return mTo; }

  /// @param nX @param nWidth of the panels' frames
  void draw(double nX, double nY, double nWidth, Svg* npSvg) const;

 private:
  double xOf(const Box& nBox, int64_t nTime) const;
  void drawReckoned(const Box& nBox, Svg* npSvg) const;
  void drawTimes(const Box& nBox, bool nHasLabels, Svg* npSvg) const;
  void drawCurves(const Box& nBox, Series nSeries, Svg* npSvg) const;
  void drawRuns(const Box& nBox, Series nSeries, const Range& nAxis, Svg* npSvg) const;
  static std::vector<TimeBin> readable(const std::vector<TimeBin>& nBins);
  std::string labelOf(int64_t nTime) const;

  struct Curve {
    std::vector<TimeBin> mBins;
    const char* mpColour;
  };
  void drawRun(const Box& nBox, Series nSeries, const Range& nAxis, const Curve& nCurve, size_t nFirst, size_t nEnd,
               Svg* npSvg) const;

  const bool mIsUtc;
  std::vector<Curve> mCurves;
  int64_t mFrom = INT64_MAX, mTo = INT64_MIN;
  int64_t mStep;  // of the time axis
};

}  // namespace logtool
