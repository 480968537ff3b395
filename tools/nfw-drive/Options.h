#pragma once

#include <optional>

#include "PacedSink.h"
#include "Simulator.h"
#include "SourceSpec.h"

namespace drive {

enum Format { FORMAT_TABLE, FORMAT_JSON, FORMAT_NONE };

enum ExitCode {
  EXIT_DONE = 0,
  EXIT_RUNTIME = 1,  ///< something broke on the way
  EXIT_USAGE = 2,    ///< a wrong command line, or a source that cannot be read
};

/// What the command line asks for.
struct Options {
  SourceSpec mSource;
  SimulatorOptions mSimulator;
  PlayOptions mPlay;
  std::optional<int64_t> mWallLimitMs;  ///< ends a source that is not paced
  Format mFormat = FORMAT_TABLE;
  int mLogLevel = 3;
  bool mJudgesChecksums = true;
};

/// Reads the command line. Without a value the program is to end with *npExit: help or an error was printed.
std::optional<Options> parseCommandLine(int nArgc, const char* const* npArgv, int* npExit);

}  // namespace drive
