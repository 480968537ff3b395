#pragma once

#include <string>

#include "TimeBins.h"
#include "TrackThinner.h"

namespace logtool {

/// What a plot shows.
struct PlotData : public TrackSink {
  void onPoint(const TrackPoint& nPoint) override {
    mTrack.add(nPoint);
    mBins.add(nPoint);
    ++mPoints;
    mId = nPoint.mId;
  }
  std::string mTitle;
  TrackThinner mTrack;
  TimeBins mBins;
  uint64_t mPoints = 0;
  int mId = 0;
};

/// The whole picture as an SVG document.
std::string plotSvg(const PlotData& nData, bool nByFix);
/// An HTML page with the same picture; it needs nothing from elsewhere.
std::string plotHtml(const PlotData& nData, bool nByFix);

}  // namespace logtool
