#pragma once

#include <cstdint>
#include <string>

#include "RecordingReader.h"
#include "Selection.h"

namespace logtool {

/// What a recording's clock showed more than its ticks, in milliseconds, at the first record that tells both. False for
/// standard input, which can be read only once, and for a recording that never tells the time.
bool findClockOffset(const Recording& nRecording, int64_t* npOffset);

/// One recording of a merge, with its next record in hand.
class MergeInput {
 public:
  /// @param nShift added to its ticks, to bring them onto the clock of the first input
  MergeInput(const Recording& nRecording, const Selection& nSelection, Problems& nProblems, int64_t nShift)
      : mReader(nRecording, nProblems), mSelector(nSelection), mShift(nShift) {
    advance();
  }

  bool hasRecord() const { return mHasRecord; }
  const tool::Record& getRecord() const { return mRecord; }
  /// The bytes of the record with its tick on the common clock.
  std::string_view getBytes();
  int64_t getKey() const { return mBase + static_cast<int64_t>(mSelector.getTimeline().getElapsedMs()); }
  uint64_t getRead() const { return mReader.getRead(); }

  void advance();

 private:
  RecordingReader mReader;
  Selector mSelector;
  const int64_t mShift;
  bool mIsFirst = true;
  int64_t mBase = 0;
  bool mHasRecord = false;
  tool::Record mRecord;
  std::string mShifted;
};

}  // namespace logtool
