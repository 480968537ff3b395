#pragma once

#include "TrackRecords.h"

namespace logtool {

/// Takes the records that tracks are made of, of several recordings by turns.
class SortedSink {
 public:
  virtual ~SortedSink() = default;
  /// What follows is of this one of the run's recordings. @param nBase of its first record, on the clock of all of
  /// them, in milliseconds
  virtual void onTurn(size_t /*nRecording*/, int64_t /*nBase*/) {}
  virtual bool onRecord(const tool::Record& nRecord, const TrackRecords::Place& nPlace) = 0;  ///< false: no more
  virtual void onEnd() {}  ///< of the recording whose turn it is
};

/// Reads all recordings in the order of their times, as MergeQueue has it. Of each the same is taken as where they are
/// read one behind the other; of standard input, which can be read only once, what comes before its first record of
/// the receiver comes late.
void readSorted(Run& nRun, TrackChoice nChoice, Problems& nProblems, SortedSink& nSink);

}  // namespace logtool
