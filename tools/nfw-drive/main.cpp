#include <cstdio>
#include <exception>

#include "Application.h"
#include "StandardStreams.h"

int main(int nArgc, char** npArgv) {
  tool::openStandardStreams();
  try {
    int lExit = drive::EXIT_DONE;
    const std::optional<drive::Options> lOptions = drive::parseCommandLine(nArgc, npArgv, &lExit);
    return lOptions ? drive::Application(*lOptions).run() : lExit;
  } catch (const std::exception& lError) {  // memory has run out, most likely
    std::fprintf(stderr, "nfw-drive: %s\n", lError.what());
    return drive::EXIT_RUNTIME;
  }
}
