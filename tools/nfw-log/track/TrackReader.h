#pragma once

#include "Problems.h"
#include "Run.h"
#include "Sentences.h"
#include "TrackPoint.h"

namespace logtool {

/// Reads the tracks of each recording; TrackRecords tells which there are.
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
