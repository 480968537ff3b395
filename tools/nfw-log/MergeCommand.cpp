#include <cstdlib>
#include <memory>

#include "MergeInput.h"
#include "Messages.h"
#include "OutputFile.h"
#include "ProblemReport.h"
#include "Run.h"

namespace logtool {

namespace {

const int64_t SAME_CLOCK_MS = 2000;  // recordings of one run of the system agree better than this

/// What has to be added to the ticks of each recording so that they count from one begin: nothing when they do already,
/// or when it cannot be known.
std::vector<int64_t> findShifts(const std::vector<Recording>& nRecordings, bool nByTime) {
  std::vector<int64_t> lOffsets(nRecordings.size(), 0);
  std::vector<int64_t> lShifts(nRecordings.size(), 0);
  bool lAreKnown = true;
  bool lAreSame = !nByTime;
  for (size_t i = 0; i < nRecordings.size(); ++i) {
    lAreKnown = lAreKnown && findClockOffset(nRecordings[i], &lOffsets[i]);
    lAreSame = lAreSame && std::llabs(lOffsets[i] - lOffsets[0]) < SAME_CLOCK_MS;
  }
  if (!lAreKnown || lAreSame) return lShifts;
  for (size_t i = 0; i < nRecordings.size(); ++i) lShifts[i] = lOffsets[i] - lOffsets[0];
  return lShifts;
}

using Inputs = std::vector<std::unique_ptr<MergeInput>>;

MergeInput* earliest(const Inputs& nInputs) {
  MergeInput* lpEarliest = nullptr;
  for (const auto& lpInput : nInputs) {
    if (!lpInput->hasRecord()) continue;
    if (lpEarliest == nullptr || lpInput->getKey() < lpEarliest->getKey()) lpEarliest = lpInput.get();
  }
  return lpEarliest;
}

uint64_t readOf(const Inputs& nInputs) {
  uint64_t lTotal = 0;
  for (const auto& lpInput : nInputs) lTotal += lpInput->getRead();
  return lTotal;
}

}  // namespace

int runMerge(Run& nRun) {
  const Options& lOptions = nRun.getOptions();
  OutputFile lOutput;
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  ProblemReport lProblems;
  const std::vector<int64_t> lShifts = findShifts(nRun.getRecordings(), lOptions.mByTime);
  Inputs lInputs;
  for (size_t i = 0; i < lShifts.size(); ++i) {
    const Recording& lRecording = nRun.getRecordings()[i];
    lInputs.push_back(std::make_unique<MergeInput>(lRecording, lOptions.mSelection, lProblems, lShifts[i]));
    if (lShifts[i] != 0) {
      tell("{}: of another start of the system: {} ms added to its ticks", lRecording.mName, lShifts[i]);
    }
  }
  tool::RecordKind lKind = tool::UNKNOWN_RECORD;
  while (MergeInput* const lpInput = earliest(lInputs)) {
    if (lKind == tool::UNKNOWN_RECORD) lKind = lpInput->getRecord().mKind;
    if (lKind != lpInput->getRecord().mKind) {
      say("the inputs are of both kinds, log and sensor log: name those of one");
      return EXIT_TROUBLE;
    }
    lOutput.write(lpInput->getBytes());
    if (lOutput.isClosed()) break;
    lpInput->advance();
    nRun.getProgress().update(readOf(lInputs));
  }
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  return lOutput.commit() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace logtool
