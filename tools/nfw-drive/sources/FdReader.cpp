#include "FdReader.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Format.h"

namespace drive {

void FdReader::reset(int nFd) {
  if (mFd >= 0) ::close(mFd);
  mFd = nFd;
}

ssize_t FdReader::take(char* npBuffer, size_t nSize) { return ::read(mFd, npBuffer, nSize); }

int FdReader::read(char* npBuffer, size_t nSize, std::string* npReason) {
  tool::Stopper::Outcome lOutcome = tool::Stopper::READY;
  while ((lOutcome = mStopper.waitFor(mFd, POLLIN, mSilence)) == tool::Stopper::READY) {
    const ssize_t lSize = take(npBuffer, nSize);
    if (lSize >= 0) return static_cast<int>(lSize);
    if (errno == EINTR || errno == EAGAIN) continue;
    *npReason = std::strerror(errno);
    return SentenceSource::BROKEN;
  }
  if (lOutcome == tool::Stopper::STOPPED) return SentenceSource::STOPPED;
  *npReason = fmt::format("nothing received for {:g} s", static_cast<double>(mSilence.count()) / 1000.0);
  return SentenceSource::BROKEN;
}

}  // namespace drive
