#pragma once

#include <memory>
#include <string>
#include <vector>

#include "DriveStats.h"

namespace logtool {

/// The numbers of each track of a recording.
class TrackStats : public TrackSink {
 public:
  struct Track {
    Track(std::string nName, uint64_t nGapMs) : mName(std::move(nName)), mStats(nGapMs) {}
    std::string mName;
    DriveStats mStats;
  };

  explicit TrackStats(uint64_t nGapMs) : mGapMs(nGapMs) {}

  void onTrack(size_t nTrack, const std::string& nName) override {
    if (mTracks.empty()) mFirst = nTrack;
    mTracks.push_back(std::make_unique<Track>(nName, mGapMs));
  }
  void onPoint(const TrackPoint& nPoint) override { mTracks[nPoint.mTrack - mFirst]->mStats.add(nPoint); }
  void onEpochsWithoutFix(size_t nTrack, uint64_t nEpochs) override {
    mTracks[nTrack - mFirst]->mStats.addWithoutFix(nEpochs);
  }

  const std::vector<std::unique_ptr<Track>>& getTracks() const { return mTracks; }

 private:
  const uint64_t mGapMs;
  size_t mFirst = 0;  // tracks are counted over all recordings
  std::vector<std::unique_ptr<Track>> mTracks;
};

}  // namespace logtool
