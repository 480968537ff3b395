#include "Application.h"
#include "StandardStreams.h"

int main(int nArgc, char** npArgv) {
  tool::openStandardStreams();
  int lExit = drive::EXIT_DONE;
  const std::optional<drive::Options> lOptions = drive::parseCommandLine(nArgc, npArgv, &lExit);
  return lOptions ? drive::Application(*lOptions).run() : lExit;
}
