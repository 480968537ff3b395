#pragma once

#include <netdb.h>

#include "HostPort.h"

namespace drive {

/// The addresses of a host and a port.
class Resolved {
 public:
  static constexpr const char* LOOPBACK = "127.0.0.1";

  /// Asks the resolver, which may take its time. An empty host is the loopback.
  /// @param nType SOCK_STREAM or SOCK_DGRAM
  Resolved(const HostPort& nWhere, int nType);
  ~Resolved();
  Resolved(const Resolved&) = delete;
  Resolved& operator=(const Resolved&) = delete;

  const addrinfo* first() const { return mpFirst; }  ///< null when there is none
  const char* getReason() const;                     ///< why there is none
  bool isPermanent() const;                          ///< a name that will not come to exist by waiting

  bool isMulticast() const;  ///< the first one

 private:
  addrinfo* mpFirst = nullptr;
  int mError;
};

/// "127.0.0.1:2000", "[::1]:2000": of what a socket is bound to, or of its peer.
std::string addressText(const sockaddr* npAddress, socklen_t nSize);
std::string localText(int nFd);

/// A descriptor for an address, without blocking; -1 with errno.
int openSocket(const addrinfo& nAddress);

}  // namespace drive
