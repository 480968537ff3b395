#pragma once

#include <map>
#include <memory>

#include "EpochBuilder.h"
#include "ProblemReport.h"
#include "Run.h"
#include "Sentences.h"

namespace logtool {

/// Reads the track of each recording. The log type id that has the first position is the track; others with positions
/// (a receiver and dead reckoning may be recorded beside each other) are named on standard error and left out.
class TrackReader {
 public:
  explicit TrackReader(Run& nRun) : mRun(nRun) {}

  /// @param nSink told of the points of all recordings
  void read(Problems& nProblems, TrackSink& nSink);

  uint64_t getUndecoded() const { return mUndecoded; }  ///< records of sentences that could not be decoded

 private:
  Run& mRun;
  Sentences mSentences;
  uint64_t mUndecoded = 0;
};

}  // namespace logtool
