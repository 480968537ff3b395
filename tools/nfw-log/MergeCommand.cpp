#include "Commands.h"
#include "MergeQueue.h"
#include "Messages.h"
#include "OutputFile.h"
#include "ProblemReport.h"

namespace logtool {

int runMerge(Run& nRun) {
  const Options& lOptions = nRun.getOptions();
  OutputFile lOutput;
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  ProblemReport lProblems;
  tool::RecordKind lKind = tool::UNKNOWN_RECORD;
  MergeQueue lQueue(nRun, lProblems);
  for (; MergeInput* const lpInput = lQueue.next(); lQueue.advance()) {
    if (lKind == tool::UNKNOWN_RECORD) lKind = lpInput->getRecord().mKind;
    if (lKind != lpInput->getRecord().mKind) {
      say("the inputs are of both kinds, log and sensor log: name those of one");
      return EXIT_TROUBLE;
    }
    lOutput.write(lpInput->getBytes());
    if (lOutput.isClosed()) break;
  }
  lQueue.finish();
  if (!nRun.wasSelectable()) return EXIT_TROUBLE;
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  return lOutput.commit() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace logtool
