#include "Resolved.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>

namespace drive {

Resolved::Resolved(const HostPort& nWhere, int nType) {
  addrinfo lHints = {};
  lHints.ai_socktype = nType;
  const char* const lpHost = nWhere.mHost.empty() ? LOOPBACK : nWhere.mHost.c_str();
  mError = ::getaddrinfo(lpHost, nWhere.mPort.c_str(), &lHints, &mpFirst);
}

Resolved::~Resolved() {
  if (mpFirst != nullptr) ::freeaddrinfo(mpFirst);
}

const char* Resolved::getReason() const { return ::gai_strerror(mError); }

bool Resolved::isPermanent() const { return mError == EAI_NONAME || mError == EAI_SERVICE; }

bool Resolved::isMulticast() const {
  if (mpFirst == nullptr) return false;
  sockaddr_in lAddress = {};
  sockaddr_in6 lAddress6 = {};
  if (mpFirst->ai_family == AF_INET) std::memcpy(&lAddress, mpFirst->ai_addr, sizeof(lAddress));
  if (mpFirst->ai_family == AF_INET6) std::memcpy(&lAddress6, mpFirst->ai_addr, sizeof(lAddress6));
  return (ntohl(lAddress.sin_addr.s_addr) >> 28) == 0xE || lAddress6.sin6_addr.s6_addr[0] == 0xFF;
}

std::string addressText(const sockaddr* npAddress, socklen_t nSize) {
  char lHost[NI_MAXHOST] = "?", lPort[NI_MAXSERV] = "?";
  ::getnameinfo(npAddress, nSize, lHost, sizeof(lHost), lPort, sizeof(lPort), NI_NUMERICHOST | NI_NUMERICSERV);
  const bool lHasColon = std::strchr(lHost, ':') != nullptr;
  return (lHasColon ? "[" + std::string(lHost) + "]:" : std::string(lHost) + ":") + lPort;
}

std::string localText(int nFd) {
  sockaddr_storage lAddress = {};
  socklen_t lSize = sizeof(lAddress);
  auto* const lpAddress = reinterpret_cast<sockaddr*>(&lAddress);
  return ::getsockname(nFd, lpAddress, &lSize) == 0 ? addressText(lpAddress, lSize) : std::string("?");
}

int openSocket(const addrinfo& nAddress) {
  return ::socket(nAddress.ai_family, nAddress.ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, nAddress.ai_protocol);
}

}  // namespace drive
