#include "FdReader.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace drive {

void FdReader::reset(int nFd) {
  if (mFd >= 0) ::close(mFd);
  mFd = nFd;
}

int FdReader::read(char* npBuffer, size_t nSize, std::string* npReason) {
  while (mStopper.waitFor(mFd, POLLIN)) {
    const ssize_t lSize = ::read(mFd, npBuffer, nSize);
    if (lSize >= 0) return static_cast<int>(lSize);
    if (errno == EINTR || errno == EAGAIN) continue;
    *npReason = std::strerror(errno);
    return SentenceSource::BROKEN;
  }
  return SentenceSource::STOPPED;
}

}  // namespace drive
