#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "DriveStats.h"
#include "SkyBins.h"
#include "TimeBins.h"
#include "TrackThinner.h"

namespace logtool {

/// A track of a plot.
struct PlotTrack {
  PlotTrack(const std::string& nName, Ground& nGround, uint64_t nGapMs)
      : mName(nName), mTrack(nGround), mStats(nGapMs) {}
  std::string mName;
  TrackThinner mTrack;
  TimeBins mBins;
  DriveStats mStats;
};

/// What a plot shows.
struct PlotData : public TrackSink {
  static constexpr size_t MAX_TRACKS = 12;  ///< told apart; further ones are drawn as part of the last

  /// @param nWantsSky whether the satellites are shown @param nGapMs of DriveStats
  PlotData(bool nWantsSky, uint64_t nGapMs) : mWantsSky(nWantsSky), mGapMs(nGapMs) {}

  void onTrack(size_t nTrack, const std::string& nName) override {
    if (nTrack < MAX_TRACKS)
      mTracks.push_back(std::make_unique<PlotTrack>(nName, mGround, mGapMs));
    else
      mTracks.back()->mName = "others";
  }
  void onPoint(const TrackPoint& nPoint) override {
    PlotTrack& lTrack = trackOf(nPoint.mTrack);
    lTrack.mTrack.add(nPoint);
    lTrack.mBins.add(nPoint);
    lTrack.mStats.add(nPoint);
  }
  void onEpochsWithoutFix(size_t nTrack, uint64_t nEpochs) override { trackOf(nTrack).mStats.addWithoutFix(nEpochs); }
  void onSky(const Sky& nSky) override { mSky.add(nSky); }
  bool wantsSky() const override { return mWantsSky; }

  PlotTrack& trackOf(size_t nTrack) { return *mTracks[std::min(nTrack, MAX_TRACKS - 1)]; }

  std::string mTitle;
  Ground mGround;
  std::vector<std::unique_ptr<PlotTrack>> mTracks;
  SkyBins mSky;

 private:
  const bool mWantsSky;
  const uint64_t mGapMs;
};

}  // namespace logtool
