#pragma once

#include "Run.h"

namespace logtool {

// The commands; each returns its exit code.
int runInfo(Run& nRun);
int runCat(Run& nRun);
int runCheck(Run& nRun);
int runRecover(Run& nRun);
int runCut(Run& nRun);  ///< cut and filter: they differ in the options they take
int runMerge(Run& nRun);
int runConvert(Run& nRun);
int runPlot(Run& nRun);
int runPrune(Run& nRun);

}  // namespace logtool
