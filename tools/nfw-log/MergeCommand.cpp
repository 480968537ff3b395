#include <sys/resource.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <queue>

#include "Commands.h"
#include "MergeInput.h"
#include "Messages.h"
#include "OutputFile.h"
#include "ProblemReport.h"

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

/// The inputs in the order of their next records; of two at one time the first on the command line is first.
class Queue {
 public:
  explicit Queue(std::vector<std::unique_ptr<MergeInput>> nInputs) : mInputs(std::move(nInputs)) {
    for (size_t i = 0; i < mInputs.size(); ++i) push(i);
  }

  /// The input with the earliest record; null when there is none.
  MergeInput* next() {
    while (!mPlaces.empty()) {
      const size_t lIndex = mPlaces.top().second;
      if (!mInputs[lIndex]->isWaiting()) return mInputs[lIndex].get();
      advance();
    }
    return nullptr;
  }

  /// Goes on in the input that is next.
  void advance() {
    const size_t lIndex = mPlaces.top().second;
    mPlaces.pop();
    mRead -= mInputs[lIndex]->getRead();
    mInputs[lIndex]->advance();
    push(lIndex);
  }

  uint64_t getRead() const { return mRead; }
  const std::vector<std::unique_ptr<MergeInput>>& getInputs() const { return mInputs; }

 private:
  void push(size_t nIndex) {
    const MergeInput& lInput = *mInputs[nIndex];
    mRead += lInput.getRead();
    if (lInput.isWaiting() || lInput.hasRecord()) mPlaces.emplace(lInput.getKey(), nIndex);
  }

  using Place = std::pair<int64_t, size_t>;
  const std::vector<std::unique_ptr<MergeInput>> mInputs;
  std::priority_queue<Place, std::vector<Place>, std::greater<>> mPlaces;
  uint64_t mRead = 0;
};

/// Recordings of one time are open together: as many as the system allows.
void allowManyFiles() {
  rlimit lLimit = {};
  if (::getrlimit(RLIMIT_NOFILE, &lLimit) != 0) return;
  lLimit.rlim_cur = lLimit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &lLimit);
}

}  // namespace

int runMerge(Run& nRun) {
  const Options& lOptions = nRun.getOptions();
  OutputFile lOutput;
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  ProblemReport lProblems;
  allowManyFiles();
  std::vector<MergeStart> lStarts;
  for (const Recording& lRecording : nRun.getRecordings()) lStarts.push_back(findStart(lRecording));
  const std::vector<int64_t> lShifts = findShifts(lStarts, lOptions.mByTime);
  std::vector<std::unique_ptr<MergeInput>> lInputs;
  for (size_t i = 0; i < lShifts.size(); ++i) {
    const Recording& lRecording = nRun.getRecordings()[i];
    lInputs.push_back(std::make_unique<MergeInput>(lRecording, lOptions.mSelection, lProblems, lStarts[i], lShifts[i]));
    if (lShifts[i] != 0) {
      tell("{}: of another start of the system: {} ms added to its ticks", lRecording.mName, lShifts[i]);
    }
  }
  tool::RecordKind lKind = tool::UNKNOWN_RECORD;
  Queue lQueue(std::move(lInputs));
  while (MergeInput* const lpInput = lQueue.next()) {
    if (lKind == tool::UNKNOWN_RECORD) lKind = lpInput->getRecord().mKind;
    if (lKind != lpInput->getRecord().mKind) {
      say("the inputs are of both kinds, log and sensor log: name those of one");
      return EXIT_TROUBLE;
    }
    lOutput.write(lpInput->getBytes());
    if (lOutput.isClosed()) break;
    lQueue.advance();
    nRun.getProgress().update(lQueue.getRead());
  }
  for (const auto& lpInput : lQueue.getInputs()) nRun.note(lpInput->getSelector());
  if (!nRun.wasSelectable()) return EXIT_TROUBLE;
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  return lOutput.commit() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace logtool
