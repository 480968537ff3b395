#pragma once

#include "Events.h"
#include "Lateness.h"
#include "Playback.h"
#include "Progress.h"
#include "RecordingContents.h"

namespace drive {

/// The rounds of a replay: each is compared with the recording by itself, unless somebody has jumped about in it. On
/// the main thread.
class Rounds {
 public:
  Rounds(const ReplayOptions& nReplay, const Playback& nPlayback, const RecordingContents& nRecorded,
         Progress& nProgress, Events& nEvents)
      : mReplay(nReplay), mPlayback(nPlayback), mRecorded(nRecorded), mProgress(nProgress), mEvents(nEvents) {}

  /// Before the first: where listeners are to hear a part, they hear no more of it than there is.
  void begin();
  /// The place was changed by hand: what is heard from here on is not what a round gives.
  void spoil();
  bool isSpoilt() const { return mIsSpoilt; }
  /// Begins another round behind one of which all has been heard. False: it was not the same, or there is no other.
  bool next();
  /// How the rounds compare, for people. @param nIsWhole the last one went to its end
  std::string verdict(bool nIsWhole, bool* npIsSame) const;

 private:
  void beginAnew();

  const ReplayOptions& mReplay;
  const Playback& mPlayback;
  const RecordingContents& mRecorded;
  Progress& mProgress;
  Events& mEvents;
  unsigned int mSame = 0, mSpoilt = 0;  // rounds that are over
  bool mIsSpoilt = false;               // the one under way
};

}  // namespace drive
