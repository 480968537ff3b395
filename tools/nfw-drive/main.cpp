#include <unistd.h>

#include <cstdio>
#include <exception>

#include "Application.h"
#include "StandardStreams.h"
#include "TerminalGuard.h"

namespace {

// Memory has run out, most likely, on whichever thread: the end is told in one line, and leaves no core.
[[noreturn]] void endAtOnce() {
  const char* lpWhat = "ended by an unknown failure";
  drive::TerminalGuard::restore();
  try {
    if (std::current_exception()) std::rethrow_exception(std::current_exception());
  } catch (const std::exception& lError) {
    lpWhat = lError.what();
  } catch (...) {
  }
  std::fprintf(stderr, "nfw-drive: %s\n", lpWhat);
  ::_exit(drive::EXIT_RUNTIME);
}

}  // namespace

int main(int nArgc, char** npArgv) {
  tool::openStandardStreams();
  std::set_terminate(&endAtOnce);
  int lExit = drive::EXIT_DONE;
  const std::optional<drive::Options> lOptions = drive::parseCommandLine(nArgc, npArgv, &lExit);
  return lOptions ? drive::Application(*lOptions).run() : lExit;
}
