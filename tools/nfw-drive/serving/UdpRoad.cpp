#include "UdpRoad.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "DriveLog.h"
#include "Resolved.h"

namespace drive {

bool UdpRoad::open(std::string* npReason) {
  const Resolved lFound(mAddress.mWhere, SOCK_DGRAM);
  if (lFound.first() == nullptr) {
    *npReason = lFound.getReason();
    return false;
  }
  const int lYes = 1;
  mFd.reset(openSocket(*lFound.first()));
  ::setsockopt(mFd.get(), SOL_SOCKET, SO_BROADCAST, &lYes, sizeof(lYes));
  const bool lIsOpen = mFd.isOpen() && ::connect(mFd.get(), lFound.first()->ai_addr, lFound.first()->ai_addrlen) == 0;
  if (!lIsOpen) *npReason = std::strerror(errno);
  return lIsOpen;
}

void UdpRoad::collect(std::vector<pollfd>* npFds) const { npFds->push_back({isDone() ? -1 : mFd.get(), POLLOUT, 0}); }

const pollfd* UdpRoad::serve(const pollfd* npFds) {
  char lBuffer[16 * 1024];
  int lSize = 0;
  while ((lSize = mRing.read(mAt, lBuffer, sizeof(lBuffer))) != 0) {
    if (lSize < 0) {
      noteLoss(ENOBUFS);
      mAt = mRing.getEnd();
      continue;
    }
    const std::string_view lText(lBuffer, static_cast<size_t>(lSize));
    const size_t lLine = lText.find('\n') + 1;
    if (!send(lBuffer, lLine)) break;
    mAt += lLine;
  }
  return npFds + 1;
}

// False when it is to wait. Nobody has to listen there; what else goes wrong is told when it begins.
bool UdpRoad::send(const char* npText, size_t nSize) {
  if (::send(mFd.get(), npText, nSize, MSG_DONTWAIT) >= 0 || errno == ECONNREFUSED) return true;
  if (errno == EAGAIN || errno == EINTR) return false;
  noteLoss(errno);
  return true;
}

void UdpRoad::noteLoss(int nError) {
  if (mCounts.mLost++ > 0) return;
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_WARNING, "%s: %s", mName.c_str(), std::strerror(nError));
}

}  // namespace drive
