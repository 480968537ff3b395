#pragma once

#include "Keys.h"
#include "Lateness.h"
#include "Playback.h"
#include "Rounds.h"

namespace drive {

/// What the keys of the live view do to a replay. On the main thread.
class ReplayKeys {
 public:
  ReplayKeys(const ReplayOptions& nReplay, const Playback& nPlayback, Rounds& nRounds, Lateness& nLateness)
      : mReplay(nReplay), mPlayback(nPlayback), mRounds(nRounds), mLateness(nLateness) {}

  void on(Keys::Key nKey);

 private:
  void togglePause();
  void changeRate(bool nIsFaster);
  void jump(int64_t nByMs);

  const ReplayOptions& mReplay;
  const Playback& mPlayback;
  Rounds& mRounds;
  Lateness& mLateness;
};

}  // namespace drive
