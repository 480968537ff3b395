#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "RecordingReader.h"
#include "Selection.h"

namespace logtool {

/// What the begin of a recording tells. Nothing of standard input, which can be read only once.
struct MergeStart {
  bool mHasTick = false;  ///< it has a record
  uint32_t mTick = 0;     ///< of the first
  bool mHasClock = false;
  int64_t mClockOffset = 0;  ///< what its clock shows more than its ticks, in milliseconds
};
MergeStart findStart(const Recording& nRecording);

/// One recording of a merge, with its next record in hand. It is opened when its first record may be next and closed
/// behind its last, so that any number of recordings that follow each other can be merged.
class MergeInput {
 public:
  /// @param nStart as findStart() tells @param nShift added to its ticks, to bring them onto the clock of the first
  /// input
  /// @param nIsOfAll has the records that are not selected, too
  MergeInput(const Recording& nRecording, const Selection& nSelection, Problems& nProblems, const MergeStart& nStart,
             int64_t nShift, bool nIsOfAll)
      : mRecording(nRecording), mProblems(nProblems), mSelector(nSelection), mShift(nShift), mIsOfAll(nIsOfAll) {
    mBase = mShift + nStart.mTick;
    if (!nStart.mHasTick) advance();
  }

  /// Its first record is still to be read; its key is before none of its records.
  bool isWaiting() const { return mIsWaiting; }
  bool hasRecord() const { return mHasRecord; }
  const tool::Record& getRecord() const { return mRecord; }
  bool isSelected() const { return mIsSelected; }
  /// The bytes of the record with its tick on the common clock.
  std::string_view getBytes();
  const Selector& getSelector() const { return mSelector; }
  Selector& getSelector() { return mSelector; }
  uint64_t getBackward() const { return mBackward; }  ///< how often a tick was before that of the record in front of it
  int64_t getKey() const { return mBase + static_cast<int64_t>(mSelector.getTimeline().getElapsedMs()); }
  int64_t getBase() const { return mBase; }  ///< the key of its first record, known with that
  uint64_t getRead() const { return mReader ? mReader->getRead() : mRead; }

  void advance();

 private:
  const Recording& mRecording;
  Problems& mProblems;
  std::optional<RecordingReader> mReader;
  uint64_t mRead = 0;
  uint64_t mBackward = 0;
  Selector mSelector;
  const int64_t mShift;
  const bool mIsOfAll;
  bool mIsWaiting = true;
  bool mIsFirst = true;
  int64_t mBase = 0;
  bool mHasRecord = false;
  bool mIsSelected = false;
  tool::Record mRecord;
  std::string mShifted;
};

}  // namespace logtool
