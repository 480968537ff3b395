#include "Commands.h"
#include "Follower.h"
#include "MergeQueue.h"
#include "OutputFile.h"
#include "ProblemReport.h"
#include "RecordPrinter.h"

namespace logtool {

namespace {

void printSorted(Run& nRun, ProblemReport& nProblems, OutputFile& nOutput) {
  RecordPrinter lPrinter(nRun.getOptions());
  MergeQueue lQueue(nRun, nProblems);
  for (; MergeInput* const lpInput = lQueue.next(); lQueue.advance()) {
    nOutput.write(lPrinter.print(lpInput->getRecord(), lpInput->getSelector()));
    if (nOutput.isClosed()) return;
  }
  lQueue.finish();
}

}  // namespace

int runCat(Run& nRun) {
  const Options& lOptions = nRun.getOptions();
  OutputFile lOutput;
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  ProblemReport lProblems;
  if (lOptions.mSort) {
    printSorted(nRun, lProblems, lOutput);
    if (!lOutput.isClosed() && !nRun.wasSelectable()) return EXIT_TROUBLE;
    return lOutput.commit() ? lProblems.exitCode() : static_cast<int>(EXIT_FOUND);
  }
  for (const Recording& lRecording : nRun.getRecordings()) {
    RecordPrinter lPrinter(lOptions);
    const auto lPrint = [&](const tool::Record& nRecord, Selector& nSelector) {
      lOutput.write(lPrinter.print(nRecord, nSelector));
      return !lOutput.isClosed();
    };
    if (!lOptions.mFollow) {
      nRun.readSelected(lRecording, lProblems, lPrint);
      continue;
    }
    const Selection lSelection = nRun.selectionOf(lRecording);
    Selector lSelector(lSelection);
    Follower lFollower(lRecording, lOptions.mInputs.front(), lProblems);
    tool::Record lRecord;
    while (!lSelector.isOver() && lFollower.next(&lRecord, [&] { lOutput.flush(); })) {
      if (lSelector.takes(lRecord) && !lPrint(lRecord, lSelector)) break;
    }
  }
  if (!lOptions.mFollow && !lOutput.isClosed() && !nRun.wasSelectable()) return EXIT_TROUBLE;
  return lOutput.commit() ? lProblems.exitCode() : static_cast<int>(EXIT_FOUND);
}

}  // namespace logtool
