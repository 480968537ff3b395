#include "CommandLine.h"

int main(int nArgc, char** npArgv) { return logtool::runProgram(nArgc, npArgv); }
