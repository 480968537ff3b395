#pragma once

#include "Svg.h"
#include "TimeBins.h"

namespace logtool {

/// Draws the curves over time, one panel below the other with one axis of time.
class TimePanels {
 public:
  static constexpr double PANEL_HEIGHT = 96.0;
  static constexpr double PANEL_DISTANCE = 30.0;  ///< from panel to panel: room for the title
  static constexpr double HEIGHT = static_cast<double>(SERIES_NUM) * (PANEL_HEIGHT + PANEL_DISTANCE) + 34.0;

  explicit TimePanels(const TimeBins& nBins);

  /// @param nX @param nWidth of the panels' frames
  void draw(double nX, double nY, double nWidth, Svg* npSvg) const;

 private:
  double xOf(const Box& nBox, int64_t nTime) const;
  void drawReckoned(const Box& nBox, Svg* npSvg) const;
  void drawTimes(const Box& nBox, bool nHasLabels, Svg* npSvg) const;
  void drawCurve(const Box& nBox, Series nSeries, Svg* npSvg) const;
  void drawRun(const Box& nBox, Series nSeries, const Range& nAxis, size_t nFirst, size_t nEnd, Svg* npSvg) const;
  static std::vector<TimeBin> readable(const std::vector<TimeBin>& nBins);
  std::string labelOf(int64_t nTime) const;

  const bool mIsUtc;
  const std::vector<TimeBin> mBins;
  int64_t mFrom, mTo;
  int64_t mStep;  // of the time axis
};

}  // namespace logtool
