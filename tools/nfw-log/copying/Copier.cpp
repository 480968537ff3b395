#include "Copier.h"

#include "Messages.h"

namespace logtool {

bool Copier::copy(const tool::Record& nRecord) {
  if (!takes(nRecord)) return false;
  mOutput.write(nRecord.mBytes);
  ++mRecords;
  mBytes += nRecord.mBytes.size();
  return !mOutput.isClosed();
}

bool Copier::takes(const tool::Record& nRecord) {
  if (mKind == tool::UNKNOWN_RECORD) mKind = nRecord.mKind;
  if (mKind != nRecord.mKind && !mIsMixed) {
    mIsMixed = true;
    say("the inputs are of both kinds, log and sensor log: name those of one");
  }
  return mKind == nRecord.mKind;
}

int copyRecordings(Run& nRun, CopyRecording npCopy, TellCopied npTell) {
  OutputFile lOutput;
  ProblemReport lProblems;
  Copier lCopier(lOutput);
  const Options& lOptions = nRun.getOptions();
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  for (const Recording& lRecording : nRun.getRecordings()) {
    npCopy(nRun, lRecording, lProblems, lCopier);
    if (lCopier.isMixed()) return EXIT_TROUBLE;
  }
  if (!nRun.wasSelectable()) return EXIT_TROUBLE;
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  if (!lOutput.commit()) return EXIT_FOUND;
  if (npTell != nullptr) npTell(lCopier, lProblems);
  return EXIT_DONE;
}

}  // namespace logtool
