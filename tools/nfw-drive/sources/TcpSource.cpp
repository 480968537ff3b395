#include "TcpSource.h"

#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <string_view>

namespace drive {

namespace {

const std::string_view WATCH = "?WATCH={\"enable\":true,\"nmea\":true};\n";

// The outcome of a connection that was under way, as an errno.
int connectError(int nFd) {
  int lError = 0;
  socklen_t lSize = sizeof(lError);
  return ::getsockopt(nFd, SOL_SOCKET, SO_ERROR, &lError, &lSize) == 0 ? lError : errno;
}

}  // namespace

SentenceSource::OpenResult TcpSource::open(std::string* npReason) {
  const Resolved lFound(mWhere, SOCK_STREAM);
  *npReason = lFound.getReason();
  bool lIsConnected = false;
  for (const addrinfo* lpAddress = lFound.first(); lpAddress != nullptr && !lIsConnected;
       lpAddress = lpAddress->ai_next) {
    lIsConnected = connectTo(*lpAddress, npReason);
  }
  if (lIsConnected) return OPENED;
  return lFound.isPermanent() ? OPEN_FAILED : OPEN_LATER;
}

bool TcpSource::connectTo(const addrinfo& nAddress, std::string* npReason) {
  const int lFd = openSocket(nAddress);
  mReader.reset(lFd);
  mFilter = GpsdFilter();
  int lError = lFd >= 0 && ::connect(lFd, nAddress.ai_addr, nAddress.ai_addrlen) == 0 ? 0 : errno;
  if (lError == EINPROGRESS) lError = awaitConnection(lFd);
  *npReason = std::strerror(lError);
  return lError == 0;
}

int TcpSource::awaitConnection(int nFd) const {
  const tool::Stopper::Outcome lOutcome = mStopper.waitFor(nFd, POLLOUT, mSilence);
  if (lOutcome == tool::Stopper::READY) return connectError(nFd);
  return lOutcome == tool::Stopper::STOPPED ? ECANCELED : ETIMEDOUT;
}

int TcpSource::read(char* npBuffer, size_t nSize, std::string* npReason) {
  for (;;) {
    const int lSize = mReader.read(npBuffer, nSize, npReason);
    if (lSize == END) *npReason = "the server closed the connection";
    if (lSize <= 0) return lSize == END ? static_cast<int>(BROKEN) : lSize;
    const size_t lLeft = mFilter.filter(npBuffer, static_cast<size_t>(lSize));
    if (mIsGpsd && mFilter.isPlain()) {
      *npReason = "the server is no gpsd: it does not greet as one";
      return BROKEN;
    }
    if (mFilter.takeGreeting() && !askForSentences(npReason)) return BROKEN;
    if (lLeft > 0) return static_cast<int>(lLeft);
  }
}

bool TcpSource::askForSentences(std::string* npReason) {
  const ssize_t lSize = ::send(mReader.getFd(), WATCH.data(), WATCH.size(), MSG_NOSIGNAL);
  if (lSize == static_cast<ssize_t>(WATCH.size())) return true;
  *npReason = lSize < 0 ? std::strerror(errno) : "the server takes no request";
  return false;
}

}  // namespace drive
