#include "CommandLine.h"
#include "StandardStreams.h"

int main(int nArgc, char** npArgv) {
  tool::openStandardStreams();
  return logtool::runProgram(nArgc, npArgv);
}
