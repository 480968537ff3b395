#include "Messages.h"
#include "OutputFile.h"
#include "ProblemReport.h"
#include "RecordJudge.h"
#include "Run.h"

namespace logtool {

namespace {

/// A file may hold records of one kind only.
class KindGuard {
 public:
  bool takes(const tool::Record& nRecord) {
    if (mKind == tool::UNKNOWN_RECORD) mKind = nRecord.mKind;
    if (mKind != nRecord.mKind && !mIsMixed) {
      mIsMixed = true;
      say("the inputs are of both kinds, log and sensor log: name those of one");
    }
    return mKind == nRecord.mKind;
  }
  bool isMixed() const { return mIsMixed; }

 private:
  tool::RecordKind mKind = tool::UNKNOWN_RECORD;
  bool mIsMixed = false;
};

/// Writes records one after the other, and counts them.
class Copier {
 public:
  explicit Copier(OutputFile& nOutput) : mOutput(nOutput) {}

  /// False when no more can be taken.
  bool copy(const tool::Record& nRecord) {
    if (!mKind.takes(nRecord)) return false;
    mOutput.write(nRecord.mBytes);
    ++mRecords;
    mBytes += nRecord.mBytes.size();
    return !mOutput.isClosed();
  }
  bool isMixed() const { return mKind.isMixed(); }
  uint64_t getRecords() const { return mRecords; }
  uint64_t getBytes() const { return mBytes; }

 private:
  OutputFile& mOutput;
  KindGuard mKind;
  uint64_t mRecords = 0;
  uint64_t mBytes = 0;
};

void copySelected(Run& nRun, const Recording& nRecording, ProblemReport& nProblems, Copier& nCopier) {
  nRun.readSelected(nRecording, nProblems,
                    [&](const tool::Record& nRecord, const Selector&) { return nCopier.copy(nRecord); });
}

void copyWhole(Run& nRun, const Recording& nRecording, ProblemReport& nProblems, Copier& nCopier) {
  RecordJudge lJudge;
  nRun.read(nRecording, nProblems, [&](const RecordingReader& nReader, const tool::Record& nRecord) {
    tool::RecordDamage lFault;
    if (lJudge.accepts(nRecord, &lFault)) return nCopier.copy(nRecord);
    nProblems.onDamage(nReader.getPath(), lFault);
    return true;
  });
}

int write(Run& nRun, bool nRecovers) {
  OutputFile lOutput;
  ProblemReport lProblems;
  Copier lCopier(lOutput);
  const Options& lOptions = nRun.getOptions();
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  for (const Recording& lRecording : nRun.getRecordings()) {
    (nRecovers ? copyWhole : copySelected)(nRun, lRecording, lProblems, lCopier);
    if (lCopier.isMixed()) return EXIT_TROUBLE;
  }
  if (!nRun.wasSelectable()) return EXIT_TROUBLE;
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  if (!lOutput.commit()) return EXIT_FOUND;
  if (!nRecovers) return EXIT_DONE;
  tell("{} of {} written, {} lost at {}", countText(lCopier.getRecords(), "record"),
       countText(lCopier.getBytes(), "byte"), countText(lProblems.getLostBytes(), "byte"),
       countText(lProblems.getDamages(), "place"));
  return EXIT_DONE;
}

}  // namespace

int runCut(Run& nRun) { return write(nRun, false); }

int runRecover(Run& nRun) { return write(nRun, true); }

}  // namespace logtool
