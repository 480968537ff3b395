#include "Commands.h"
#include "Copier.h"
#include "Messages.h"
#include "RecordJudge.h"

namespace logtool {

namespace {

void copyWhole(Run& nRun, const Recording& nRecording, ProblemReport& nProblems, Copier& nCopier) {
  RecordJudge lJudge;
  nRun.read(nRecording, nProblems, [&](const RecordingReader& nReader, const tool::Record& nRecord) {
    tool::RecordDamage lFault;
    if (lJudge.accepts(nRecord, &lFault)) return nCopier.copy(nRecord);
    nProblems.onDamage(nReader.getPath(), lFault);
    return true;
  });
}

void tellCopied(const Copier& nCopier, const ProblemReport& nProblems) {
  tell("{} of {} written, {} lost at {}", countText(nCopier.getRecords(), "record"),
       countText(nCopier.getBytes(), "byte"), countText(nProblems.getLostBytes(), "byte"),
       countText(nProblems.getDamages(), "place"));
}

}  // namespace

int runRecover(Run& nRun) { return copyRecordings(nRun, copyWhole, tellCopied); }

}  // namespace logtool
