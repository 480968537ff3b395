#pragma once

#include <memory>

#include "Problems.h"
#include "Run.h"
#include "Sentences.h"
#include "TrackPoint.h"
#include "TrackRecords.h"

namespace logtool {

class Tracks;

/// Reads the tracks of each recording; TrackRecords tells which there are.
class TrackReader {
 public:
  explicit TrackReader(Run& nRun, TrackChoice nChoice = TRACK_OF_RECEIVER);
  ~TrackReader();
  TrackReader(const TrackReader&) = delete;
  TrackReader& operator=(const TrackReader&) = delete;

  /// @param nSink told of the points of all recordings, in the order of their times where the command line asks so
  void read(Problems& nProblems, TrackSink& nSink);

  /// The steps of read(), for who reads the records: all of a recording in their order. @param nSink outlives them
  void begin(const Recording& nRecording, TrackSink& nSink);
  bool take(const tool::Record& nRecord, Selector& nSelector, bool nIsSelected);  ///< false: no more is wanted
  void end(const Recording& nRecording);

  uint64_t getUndecoded() const { return mUndecoded; }  ///< records of sentences that could not be decoded

 private:
  class Sorted;

  std::unique_ptr<Tracks> makeTracks(const Recording& nRecording, TrackSink& nSink);
  bool use(Tracks& nTracks, const tool::Record& nRecord, const TrackRecords::Place& nPlace);

  Run& mRun;
  const TrackChoice mChoice;
  const bool mHasPrefix;  // of the tracks' names: the recording's
  TrackRecords mRecords;
  const TrackRecords::Use mUse;
  Sentences mSentences;
  std::unique_ptr<Tracks> mTracks;  // of the recording under way
  size_t mTrackNum = 0;
  uint64_t mUndecoded = 0;
};

}  // namespace logtool
