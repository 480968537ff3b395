#include "SortedRecords.h"

#include "MergeQueue.h"

namespace logtool {

namespace {

/// One recording under way.
struct Part {
  TrackRecords mRecords;
  int64_t mBase = 0;
  bool mHasEnded = false;
};

std::vector<Part> makeParts(Run& nRun, TrackChoice nChoice, const TrackRecords::Use& nUse) {
  TrackRecords lRecords(nRun, nChoice);
  std::vector<Part> lParts;
  for (const Recording& lRecording : nRun.getRecordings()) {
    lParts.push_back({lRecords.lookAhead(lRecording, nUse)});
  }
  return lParts;
}

}  // namespace

void readSorted(Run& nRun, TrackChoice nChoice, Problems& nProblems, SortedSink& nSink) {
  const TrackRecords::Use lUse = [&](const tool::Record& nRecord, const TrackRecords::Place& nPlace) {
    return nSink.onRecord(nRecord, nPlace);
  };
  std::vector<Part> lParts = makeParts(nRun, nChoice, lUse);
  const auto lEnd = [&](size_t nIndex) {
    if (lParts[nIndex].mHasEnded) return;
    lParts[nIndex].mHasEnded = true;
    nSink.onTurn(nIndex, lParts[nIndex].mBase);
    lParts[nIndex].mRecords.end(nRun.getRecordings()[nIndex]);
    nSink.onEnd();
  };
  MergeQueue lQueue(nRun, nProblems, true);
  bool lGoesOn = true;
  while (MergeInput* const lpInput = lGoesOn ? lQueue.next() : nullptr) {
    const size_t lIndex = lQueue.getIndex();
    lParts[lIndex].mBase = lpInput->getBase();
    nSink.onTurn(lIndex, lpInput->getBase());
    lGoesOn = lParts[lIndex].mRecords.take(lpInput->getRecord(), lpInput->getSelector(), lpInput->isSelected());
    lQueue.advance();
    if (!lpInput->hasRecord()) lEnd(lIndex);
  }
  lQueue.finish();
  for (size_t i = 0; i < lParts.size(); ++i) lEnd(i);
}

}  // namespace logtool
