#pragma once

namespace logtool {

/// The program: reads the command line and runs the command. Returns the exit code.
int runProgram(int nArgc, const char* const* npArgv);

}  // namespace logtool
