#include "UdpSource.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "Resolved.h"

namespace drive {

namespace {

const int RECEIVE_BUFFER = 1024 * 1024;  // as much of it as the system gives

// By the options that emulators know, too.
bool joinGroup(int nFd, const sockaddr_in& nGroup) {
  const ip_mreq lRequest = {nGroup.sin_addr, {INADDR_ANY}};
  return ::setsockopt(nFd, IPPROTO_IP, IP_ADD_MEMBERSHIP, &lRequest, sizeof(lRequest)) == 0;
}

bool joinGroup(int nFd, const sockaddr_in6& nGroup) {
  const ipv6_mreq lRequest = {nGroup.sin6_addr, nGroup.sin6_scope_id};
  return ::setsockopt(nFd, IPPROTO_IPV6, IPV6_ADD_MEMBERSHIP, &lRequest, sizeof(lRequest)) == 0;
}

template <class Address>
bool joinGroup(int nFd, const addrinfo& nGroup) {
  Address lGroup = {};
  std::memcpy(&lGroup, nGroup.ai_addr, std::min<size_t>(sizeof(lGroup), nGroup.ai_addrlen));
  return joinGroup(nFd, lGroup);
}

bool joinGroup(int nFd, const addrinfo& nGroup) {
  return nGroup.ai_family == AF_INET6 ? joinGroup<sockaddr_in6>(nFd, nGroup) : joinGroup<sockaddr_in>(nFd, nGroup);
}

}  // namespace

// Several programs may listen to a group, and each gets everything; of those at a port only one would.
SentenceSource::OpenResult UdpSource::open(std::string* npReason) {
  const Resolved lFound(mWhere, SOCK_DGRAM);
  *npReason = lFound.getReason();
  if (lFound.first() == nullptr) return lFound.isPermanent() ? OPEN_FAILED : OPEN_LATER;
  const addrinfo& lAddress = *lFound.first();
  const int lFd = openSocket(lAddress), lIsGroup = lFound.isMulticast() ? 1 : 0;
  mReader.begin(lFd);
  ::setsockopt(lFd, SOL_SOCKET, SO_RCVBUF, &RECEIVE_BUFFER, sizeof(RECEIVE_BUFFER));
  ::setsockopt(lFd, SOL_SOCKET, SO_REUSEADDR, &lIsGroup, sizeof(lIsGroup));
  const bool lIsOpen = lFd >= 0 && ::bind(lFd, lAddress.ai_addr, lAddress.ai_addrlen) == 0 &&
                       (lIsGroup == 0 || joinGroup(lFd, lAddress));
  *npReason = std::strerror(errno);
  return lIsOpen ? OPENED : OPEN_FAILED;
}

// A datagram ends its last sentence, unless it is cut itself.
int UdpSource::read(char* npBuffer, size_t nSize, std::string* npReason) {
  int lSize = 0;
  while ((lSize = mReader.read(npBuffer, nSize - 1, npReason)) == END) {  // a datagram may be empty
  }
  if (lSize <= 0 || static_cast<size_t>(lSize) == nSize - 1) return lSize;
  npBuffer[lSize] = '\n';
  return lSize + 1;
}

}  // namespace drive
