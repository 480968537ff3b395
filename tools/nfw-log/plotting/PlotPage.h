#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "TimeBins.h"
#include "TrackThinner.h"

namespace logtool {

/// A track of a plot.
struct PlotTrack {
  PlotTrack(const std::string& nName, Ground& nGround) : mName(nName), mTrack(nGround) {}
  std::string mName;
  TrackThinner mTrack;
  TimeBins mBins;
  uint64_t mPoints = 0;
};

/// What a plot shows.
struct PlotData : public TrackSink {
  static constexpr size_t MAX_TRACKS = 12;  ///< told apart; further ones are drawn as part of the last

  void onTrack(size_t nTrack, const std::string& nName) override {
    if (nTrack < MAX_TRACKS)
      mTracks.push_back(std::make_unique<PlotTrack>(nName, mGround));
    else
      mTracks.back()->mName = "others";
  }
  void onPoint(const TrackPoint& nPoint) override {
    PlotTrack& lTrack = *mTracks[std::min(nPoint.mTrack, MAX_TRACKS - 1)];
    lTrack.mTrack.add(nPoint);
    lTrack.mBins.add(nPoint);
    ++lTrack.mPoints;
  }

  std::string mTitle;
  Ground mGround;
  std::vector<std::unique_ptr<PlotTrack>> mTracks;
};

/// The whole picture as an SVG document.
std::string plotSvg(const PlotData& nData, bool nByFix);
/// An HTML page with the same picture; it needs nothing from elsewhere.
std::string plotHtml(const PlotData& nData, bool nByFix);

}  // namespace logtool
