#include "Run.h"

#include <algorithm>
#include <filesystem>

#include "Messages.h"

namespace logtool {

namespace {

void unite(const std::vector<bool>& nOther, std::vector<bool>* npSeen) {
  for (size_t i = 0; i < nOther.size(); ++i) (*npSeen)[i] = (*npSeen)[i] || nOther[i];
}

/// What was not seen goes to `nTell`. True when something was, or nothing was asked for.
template <class Tell>
bool hasAny(const std::vector<std::string>& nWords, const std::vector<bool>& nSeen, Tell nTell) {
  for (size_t i = 0; i < nWords.size(); ++i) {
    if (!nSeen[i]) nTell(nWords[i]);
  }
  return nWords.empty() || std::find(nSeen.begin(), nSeen.end(), true) != nSeen.end();
}

}  // namespace

bool Run::isReadable() const {
  if (mOptions.mSelection.mLastMs < 0) return true;
  for (const Recording& lRecording : mRecordings) {
    for (const std::string& lPath : lRecording.mPaths) {
      std::error_code lError;
      if (std::filesystem::is_regular_file(lPath, lError)) continue;
      tell("--last: {} can be read only once: write it to a file first", lPath == "-" ? "standard input" : lPath);
      return false;
    }
  }
  return true;
}

Selection Run::selectionOf(const Recording& nRecording) const {
  Selection lSelection = mOptions.mSelection;
  if (lSelection.mLastMs < 0) return lSelection;
  Silence lSilence;  // what is wrong is told when it is read
  RecordingReader lReader(nRecording, lSilence);
  Timeline lTimeline;
  tool::Record lRecord;
  while (lReader.next(&lRecord)) lTimeline.step(lRecord.mTick);
  const int64_t lEnd = static_cast<int64_t>(lTimeline.getElapsedMs());
  lSelection.mFrom = {Moment::OFFSET, std::max<int64_t>(0, lEnd - lSelection.mLastMs)};
  return lSelection;
}

void Run::note(const Selector& nSelector) {
  unite(nSelector.getSeen().mTypes, &mSeen.mTypes);
  unite(nSelector.getSeen().mExcludedTypes, &mSeen.mExcludedTypes);
  unite(nSelector.getSeen().mTexts, &mSeen.mTexts);
  mIsTurnedRound = mIsTurnedRound || nSelector.isTurnedRound();
}

bool Run::wasSelectable() const {
  const Selection& lAsked = mOptions.mSelection;
  const bool lHasTypes = hasAny(lAsked.mTypes, mSeen.mTypes, [](const std::string& nType) {
    tell("--type: no record is of the type {}; info tells the types", nType);
  });
  hasAny(lAsked.mExcludedTypes, mSeen.mExcludedTypes, [](const std::string& nType) {
    tell("--exclude: no record is of the type {}: nothing is left out for it", nType);
  });
  const bool lHasTexts = hasAny(lAsked.mTexts, mSeen.mTexts, [](const std::string& nText) {
    tell("--match: no record of what was selected has the text \"{}\"", nText);
  });
  if (mIsTurnedRound) say("--from: the end is before the begin");
  return !mIsTurnedRound && lHasTypes && lHasTexts;
}

}  // namespace logtool
