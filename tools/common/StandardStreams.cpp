#include "StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

namespace tool {

// An opening takes the lowest free descriptor, so they are filled in their order. Where there is no null device, a
// directory holds the place: it takes and gives nothing either.
void openStandardStreams() {
  const int MODES[] = {O_WRONLY, O_RDONLY, O_WRONLY};
  for (int lFd = STDIN_FILENO; lFd <= STDERR_FILENO; ++lFd) {
    const bool lIsOpen = ::fcntl(lFd, F_GETFD) >= 0 || ::open("/dev/null", MODES[lFd]) >= 0;
    if (!lIsOpen) static_cast<void>(::open("/", O_RDONLY | O_DIRECTORY));
  }
}

}  // namespace tool
