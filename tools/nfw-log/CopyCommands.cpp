#include <fmt/format.h>

#include "OutputFile.h"
#include "ProblemReport.h"
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
      fmt::print(stderr, "nfw-log: the inputs are of both kinds, log and sensor log: name those of one\n");
    }
    return mKind == nRecord.mKind;
  }
  bool isMixed() const { return mIsMixed; }

 private:
  tool::RecordKind mKind = tool::UNKNOWN_RECORD;
  bool mIsMixed = false;
};

struct Copied {
  uint64_t mRecords = 0;
  uint64_t mBytes = 0;
};

bool copy(Run& nRun, ProblemReport& nProblems, OutputFile& nOutput, Copied* npCopied) {
  KindGuard lKind;
  for (const Recording& lRecording : nRun.getRecordings()) {
    nRun.readSelected(lRecording, nProblems, [&](const tool::Record& nRecord, const Selector&) {
      if (!lKind.takes(nRecord)) return false;
      nOutput.write(nRecord.mBytes);
      ++npCopied->mRecords;
      npCopied->mBytes += nRecord.mBytes.size();
      return !nOutput.isClosed();
    });
    if (lKind.isMixed()) return false;
  }
  return true;
}

int write(Run& nRun, bool nTells) {
  OutputFile lOutput;
  ProblemReport lProblems;
  Copied lCopied;
  const Options& lOptions = nRun.getOptions();
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  if (!copy(nRun, lProblems, lOutput, &lCopied)) return EXIT_TROUBLE;
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  if (!lOutput.commit()) return EXIT_FOUND;
  if (!nTells) return EXIT_DONE;
  fmt::print(stderr, "nfw-log: {} records of {} bytes written, {} bytes lost at {} places\n", lCopied.mRecords,
             lCopied.mBytes, lProblems.getLostBytes(), lProblems.getDamages());
  return EXIT_DONE;
}

}  // namespace

int runCut(Run& nRun) { return write(nRun, false); }

int runRecover(Run& nRun) { return write(nRun, true); }

}  // namespace logtool
