#include "TcpRoad.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "DriveLog.h"
#include "Resolved.h"

namespace drive {

namespace {

const int SEND_BUFFER = 64 * 1024;  // what waits in there is not seen as waiting

void setOption(int nFd, int nOption, int nValue) { ::setsockopt(nFd, SOL_SOCKET, nOption, &nValue, sizeof(nValue)); }

}  // namespace

void TcpRoad::close() {
  mClients.clear();
  Road::close();
}

bool TcpRoad::open(std::string* npReason) {
  const Resolved lFound(mAddress.mWhere, SOCK_STREAM);
  if (lFound.first() == nullptr) {
    *npReason = lFound.getReason();
    return false;
  }
  const addrinfo& lAddress = *lFound.first();
  mFd.reset(openSocket(lAddress));
  setOption(mFd.get(), SO_REUSEADDR, 1);
  const bool lIsOpen =
      mFd.isOpen() && ::bind(mFd.get(), lAddress.ai_addr, lAddress.ai_addrlen) == 0 && ::listen(mFd.get(), 64) == 0;
  if (!lIsOpen) *npReason = std::strerror(errno);
  if (lIsOpen) mName = "tcp://" + localText(mFd.get());
  return lIsOpen;
}

void TcpRoad::collect(std::vector<pollfd>* npFds) const {
  npFds->push_back({mFd.get(), static_cast<short>(Clock::now() < mRetry ? 0 : POLLIN), 0});
  for (const RoadClient& lClient : mClients) npFds->push_back(lClient.poll());
}

const pollfd* TcpRoad::serve(const pollfd* npFds) {
  const bool lIsCalled = (npFds++->revents & POLLIN) != 0;
  for (auto lClient = mClients.begin(); lClient != mClients.end(); ++npFds) {
    lClient = isKept(*lClient, npFds->revents) ? std::next(lClient) : mClients.erase(lClient);
  }
  if (lIsCalled) accept();
  return npFds;
}

bool TcpRoad::isKept(RoadClient& nClient, short nEvents) {
  const RoadClient::Fate lFate = nClient.serve(nEvents);
  if (lFate == RoadClient::HERE) return true;
  if (lFate == RoadClient::TOO_SLOW) {
    ++mCounts.mDropped;
    APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_WARNING, "%s: client %s does not read, %llu bytes behind: dropped",
           mName.c_str(), nClient.getName().c_str(), static_cast<unsigned long long>(nClient.behind()));
  } else {
    APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "%s: client %s has left", mName.c_str(), nClient.getName().c_str());
  }
  return false;
}

void TcpRoad::accept() {
  sockaddr_storage lAddress = {};
  socklen_t lSize = sizeof(lAddress);
  auto* const lpAddress = reinterpret_cast<sockaddr*>(&lAddress);
  const int lFd = ::accept4(mFd.get(), lpAddress, &lSize, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (lFd < 0 && (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM)) {
    mRetry = Clock::now() + std::chrono::seconds(5);
    APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_WARNING, "%s: no further client: %s", mName.c_str(), std::strerror(errno));
  }
  if (lFd < 0) return;
  setOption(lFd, SO_SNDBUF, SEND_BUFFER);
  mClients.emplace_back(lFd, addressText(lpAddress, lSize), mRing, mLimits);
  ++mCounts.mClients;
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "%s: client %s", mName.c_str(), mClients.back().getName().c_str());
}

bool TcpRoad::isDone() const {
  return std::all_of(mClients.begin(), mClients.end(), [](const RoadClient& nClient) { return nClient.isDone(); });
}

}  // namespace drive
