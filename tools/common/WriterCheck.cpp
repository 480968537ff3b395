#include "WriterCheck.h"

#include <fcntl.h>

#include <cerrno>
#include <csignal>

namespace tool {

// A read lease is not given then. The signal of one that is asked back is ignored; nobody ever has to see it.
int writerError(int nFile) {
  ::fcntl(nFile, F_SETSIG, SIGURG);
  if (::fcntl(nFile, F_SETLEASE, F_RDLCK) != 0) return errno;
  ::fcntl(nFile, F_SETLEASE, F_UNLCK);
  return 0;
}

}  // namespace tool
