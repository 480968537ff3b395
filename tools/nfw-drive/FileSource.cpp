#include "FileSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace drive {

SentenceSource::OpenResult FileSource::open(std::string* npReason) {
  const bool lIsStdin = mPath == "/dev/stdin";  // its name cannot be opened when it is a socket
  const int lFd = lIsStdin ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                           : ::open(mPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  mReader.reset(lFd);
  struct stat lStat = {};
  if (lFd < 0 || ::fstat(lFd, &lStat) != 0) {
    *npReason = std::strerror(errno);
    return OPEN_FAILED;
  }
  if (!S_ISDIR(lStat.st_mode)) return OPENED;
  *npReason = std::strerror(EISDIR);
  return OPEN_FAILED;
}

}  // namespace drive
