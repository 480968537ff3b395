#include "DatagramReader.h"

#include <sys/socket.h>

#include <cstring>

namespace drive {

void DatagramReader::begin(int nFd) {
  const int lIsWanted = 1;
  reset(nFd);
  mDropped = 0;
  ::setsockopt(nFd, SOL_SOCKET, SO_RXQ_OVFL, &lIsWanted, sizeof(lIsWanted));
}

ssize_t DatagramReader::take(char* npBuffer, size_t nSize) {
  alignas(cmsghdr) char lControl[CMSG_SPACE(sizeof(uint32_t))];
  iovec lPart = {npBuffer, nSize};
  msghdr lMessage = {};
  lMessage.msg_iov = &lPart;
  lMessage.msg_iovlen = 1;
  lMessage.msg_control = lControl;
  lMessage.msg_controllen = sizeof(lControl);
  const ssize_t lSize = ::recvmsg(getFd(), &lMessage, 0);
  const cmsghdr* const lpNote = lSize < 0 ? nullptr : CMSG_FIRSTHDR(&lMessage);
  if (lpNote == nullptr || lpNote->cmsg_level != SOL_SOCKET || lpNote->cmsg_type != SO_RXQ_OVFL) return lSize;
  uint32_t lDropped = 0;
  std::memcpy(&lDropped, CMSG_DATA(lpNote), sizeof(lDropped));
  note(lDropped);
  return lSize;
}

// The system's count goes round.
void DatagramReader::note(uint32_t nDropped) {
  mLost += nDropped - mDropped;
  mDropped = nDropped;
}

}  // namespace drive
