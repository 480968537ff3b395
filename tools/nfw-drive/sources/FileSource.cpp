#include "FileSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "ForeignContent.h"

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

int FileSource::read(char* npBuffer, size_t nSize, std::string* npReason) {
  const int lSize = mReader.read(npBuffer, nSize, npReason);
  if (mIsJudged || lSize <= 0) return lSize;
  mIsJudged = true;
  const char* const lpForeign = foreignContent({npBuffer, static_cast<size_t>(lSize)});
  if (lpForeign == nullptr) return lSize;
  *npReason = lpForeign;
  return BROKEN;
}

}  // namespace drive
