#pragma once

#include <functional>
#include <set>

#include "Inputs.h"
#include "Options.h"
#include "Problems.h"
#include "Progress.h"
#include "RecordingReader.h"

namespace logtool {

/// One run of a command: its options, what it reads, and how far it is.
class Run {
 public:
  /// @param nOptions not owned, outlives the run
  Run(const Options& nOptions, std::vector<Recording> nRecordings)
      : mOptions(nOptions), mRecordings(std::move(nRecordings)), mProgress(totalSize(mRecordings)) {}

  const Options& getOptions() const { return mOptions; }
  const std::vector<Recording>& getRecordings() const { return mRecordings; }
  Progress& getProgress() { return mProgress; }

  /// Goes through the records of a recording; ends early when `nUse` returns false.
  template <class Use>
  void read(const Recording& nRecording, Problems& nProblems, Use nUse) {
    RecordingReader lReader(nRecording, nProblems);
    tool::Record lRecord;
    while (lReader.next(&lRecord) && nUse(lReader, lRecord)) mProgress.update(mDone + lReader.getRead());
    mDone += lReader.getRead();
  }

  /// As above; `nUse` is given each record, the selector, and whether the command line selects the record.
  template <class Use>
  void readAll(const Recording& nRecording, Problems& nProblems, Use nUse) {
    const Selection lSelection = selectionOf(nRecording);
    Selector lSelector(lSelection);
    read(nRecording, nProblems, [&](const RecordingReader&, const tool::Record& nRecord) {
      const bool lIsSelected = lSelector.takes(nRecord);
      return nUse(nRecord, lSelector, lIsSelected) && !lSelector.isOver();
    });
    note(lSelector);
  }

  /// As above, only what the command line selects. `nUse` is given the record and the selector.
  template <class Use>
  void readSelected(const Recording& nRecording, Problems& nProblems, Use nUse) {
    readAll(nRecording, nProblems, [&](const tool::Record& nRecord, Selector& nSelector, bool nIsSelected) {
      return !nIsSelected || nUse(nRecord, nSelector);
    });
  }

  /// Whether what the selection asks for can be found in these files: their end is known before they are read only
  /// where they can be read twice. False with a line on standard error.
  bool isReadable() const;
  /// What the command line selects, from the recording's own end back where it says so.
  Selection selectionOf(const Recording& nRecording) const;
  /// Takes in what a selector that has seen its recording found.
  void note(const Selector& nSelector);
  /// Whether the recordings had what the selection asks for: a type at least, and an end behind the begin. False with a
  /// line on standard error; for when all are read.
  bool wasSelectable() const;

 private:
  const Options& mOptions;
  const std::vector<Recording> mRecordings;
  Progress mProgress;
  Seen mSeen{mOptions.mSelection};
  bool mIsTurnedRound = false;
  uint64_t mDone = 0;  // bytes of the recordings before
};

}  // namespace logtool
