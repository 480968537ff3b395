#include "MergeQueue.h"

#include <sys/resource.h>

#include <cstdlib>

#include "Messages.h"

namespace logtool {

namespace {

const int64_t SAME_CLOCK_MS = 2000;  // recordings of one run of the system agree better than this

/// What has to be added to the ticks of each recording so that they count from one begin: nothing when they do already,
/// or when it cannot be known.
std::vector<int64_t> findShifts(const std::vector<MergeStart>& nStarts, bool nByTime) {
  std::vector<int64_t> lShifts(nStarts.size(), 0);
  bool lAreKnown = true;
  bool lAreSame = !nByTime;
  for (const MergeStart& lStart : nStarts) {
    lAreKnown = lAreKnown && lStart.mHasClock;
    lAreSame = lAreSame && std::llabs(lStart.mClockOffset - nStarts[0].mClockOffset) < SAME_CLOCK_MS;
  }
  if (!lAreKnown || lAreSame) return lShifts;
  for (size_t i = 0; i < nStarts.size(); ++i) lShifts[i] = nStarts[i].mClockOffset - nStarts[0].mClockOffset;
  return lShifts;
}

/// Recordings of one time are open together: as many as the system allows.
void allowManyFiles() {
  rlimit lLimit = {};
  if (::getrlimit(RLIMIT_NOFILE, &lLimit) != 0) return;
  lLimit.rlim_cur = lLimit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &lLimit);
}

}  // namespace

MergeQueue::MergeQueue(Run& nRun, Problems& nProblems, bool nIsOfAll) : mRun(nRun) {
  const Options& lOptions = nRun.getOptions();
  allowManyFiles();
  std::vector<MergeStart> lStarts;
  for (const Recording& lRecording : nRun.getRecordings()) lStarts.push_back(findStart(lRecording));
  const std::vector<int64_t> lShifts = findShifts(lStarts, lOptions.mByTime);
  for (size_t i = 0; i < lShifts.size(); ++i) {
    const Recording& lRecording = nRun.getRecordings()[i];
    mInputs.push_back(
        std::make_unique<MergeInput>(lRecording, lOptions.mSelection, nProblems, lStarts[i], lShifts[i], nIsOfAll));
    push(i);
    if (lShifts[i] == 0) continue;
    tell("{}: of another start of the system: {} ms added to its ticks", lRecording.mName, lShifts[i]);
  }
}

MergeInput* MergeQueue::next() {
  while (!mPlaces.empty()) {
    const size_t lIndex = mPlaces.top().second;
    if (!mInputs[lIndex]->isWaiting()) return mInputs[lIndex].get();
    advance();
  }
  return nullptr;
}

void MergeQueue::advance() {
  const size_t lIndex = mPlaces.top().second;
  mPlaces.pop();
  mRead -= mInputs[lIndex]->getRead();
  mInputs[lIndex]->advance();
  push(lIndex);
  mRun.getProgress().update(mRead);
}

void MergeQueue::push(size_t nIndex) {
  const MergeInput& lInput = *mInputs[nIndex];
  mRead += lInput.getRead();
  if (lInput.isWaiting() || lInput.hasRecord()) mPlaces.emplace(lInput.getKey(), nIndex);
}

void MergeQueue::finish() {
  for (size_t i = 0; i < mInputs.size(); ++i) {
    mRun.note(mInputs[i]->getSelector());
    if (mInputs[i]->getBackward() == 0) continue;
    tell("{}: its ticks go back {} time{}: what stands behind follows as a stretch of its own, as in a replay",
         mRun.getRecordings()[i].mName, mInputs[i]->getBackward(), mInputs[i]->getBackward() == 1 ? "" : "s");
  }
}

}  // namespace logtool
