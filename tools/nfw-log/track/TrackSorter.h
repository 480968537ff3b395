#pragma once

#include <algorithm>
#include <map>
#include <optional>

#include "TrackPoint.h"

namespace logtool {

/// Hands on what recordings that are read by turns tell, in the order of its times. A point is complete only when the
/// next of its track begins, and tracks differ in how often: so many are held, and the earliest of them goes on.
class TrackSorter : public TrackSink {
 public:
  static constexpr size_t MAX_HELD = 4096;

  /// @param nSink not owned, outlives the sorter
  explicit TrackSorter(TrackSink& nSink) : mSink(nSink) {}

  /// What comes is of this recording. @param nBase what the time of its begin is on the clock of all, in milliseconds
  void setRecording(size_t nRecording, int64_t nBase) {
    mRecording = nRecording;
    mBase = nBase;
  }
  void onTrack(size_t nTrack, const std::string& nName) override {
    mSink.onRecording(mRecording);
    mSink.onTrack(nTrack, nName);
  }
  void onEpochsWithoutFix(size_t nTrack, uint64_t nEpochs) override { mSink.onEpochsWithoutFix(nTrack, nEpochs); }
  void onPoint(const TrackPoint& nPoint) override { hold(nPoint.mElapsedMs, {mRecording, nPoint, {}}); }
  void onSky(const Sky& nSky) override { hold(nSky.mElapsedMs, {mRecording, {}, nSky}); }
  bool wantsSky() const override { return mSink.wantsSky(); }
  void onTracksEnd() override { hold(mLast[mRecording], {mRecording, {}, {}}); }

  void finish() {
    while (!mHeld.empty()) giveFirst();
  }

 private:
  struct Held {  // neither of them: the end of the recording's tracks
    size_t mRecording;
    std::optional<TrackPoint> mPoint;
    std::optional<Sky> mSky;
  };

  void hold(uint64_t nElapsedMs, Held nHeld) {
    uint64_t& lLast = mLast[nHeld.mRecording];
    lLast = std::max(lLast, nElapsedMs);
    const int64_t lTime = mBase + static_cast<int64_t>(nElapsedMs);
    mHeld.emplace(lTime, std::move(nHeld));
    if (mHeld.size() > MAX_HELD) giveFirst();
  }

  void giveFirst() {
    const Held lFirst = std::move(mHeld.begin()->second);
    mHeld.erase(mHeld.begin());
    mSink.onRecording(lFirst.mRecording);
    if (lFirst.mPoint) return mSink.onPoint(*lFirst.mPoint);
    if (lFirst.mSky) return mSink.onSky(*lFirst.mSky);
    mSink.onTracksEnd();
  }

  TrackSink& mSink;
  size_t mRecording = 0;
  int64_t mBase = 0;
  std::map<size_t, uint64_t> mLast;    // of each recording, the latest that was told, from its begin on
  std::multimap<int64_t, Held> mHeld;  // by time; of one time as they came
};

}  // namespace logtool
