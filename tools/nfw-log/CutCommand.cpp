#include "Commands.h"
#include "Copier.h"

namespace logtool {

int runCut(Run& nRun) {
  if (nRun.getOptions().mSort) return runMerge(nRun);
  return copyRecordings(nRun, [](Run& nTheRun, const Recording& nRecording, ProblemReport& nProblems, Copier& nCopier) {
    nTheRun.readSelected(nRecording, nProblems,
                         [&](const tool::Record& nRecord, const Selector&) { return nCopier.copy(nRecord); });
  });
}

}  // namespace logtool
