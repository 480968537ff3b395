#include "RoadClient.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace drive {

RoadClient::RoadClient(int nFd, std::string nName, const SentenceRing& nRing, const RoadLimits& nLimits)
    : mFd(nFd), mName(std::move(nName)), mRing(nRing), mLimits(nLimits), mAt(nRing.getEnd()) {}

RoadClient::~RoadClient() { ::close(mFd); }

pollfd RoadClient::poll() const {
  const int lEvents = (mIsMute ? 0 : POLLIN) | (isDone() ? 0 : POLLOUT);
  return {mFd, static_cast<short>(lEvents), 0};
}

RoadClient::Fate RoadClient::serve(short nEvents) {
  if ((nEvents & (POLLERR | POLLHUP)) != 0) return GONE;
  if ((nEvents & POLLIN) != 0) discardInput();
  if (isDone()) mTaken = Road::Clock::now();
  const Fate lFate = isDone() ? HERE : send();
  return lFate == HERE && !isDone() && Road::Clock::now() - mTaken > mLimits.mStall ? TOO_SLOW : lFate;
}

RoadClient::Fate RoadClient::send() {
  char lBuffer[16 * 1024];
  int lSize = 0;
  while ((lSize = mRing.read(mAt, lBuffer, sizeof(lBuffer))) > 0) {
    const ssize_t lSent = ::send(mFd, lBuffer, static_cast<size_t>(lSize), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (lSent < 0) return errno == EAGAIN || errno == EINTR ? HERE : GONE;
    mAt += static_cast<uint64_t>(lSent);
    mTaken = Road::Clock::now();
  }
  return lSize < 0 ? TOO_SLOW : HERE;
}

// Programs ask for what they want, which they get anyway. What is left unread would cost them the end of the stream.
void RoadClient::discardInput() {
  char lBuffer[1024];
  const ssize_t lSize = ::recv(mFd, lBuffer, sizeof(lBuffer), MSG_DONTWAIT);
  mIsMute = lSize == 0;
}

}  // namespace drive
