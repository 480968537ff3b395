#pragma once

#include "HostPort.h"

namespace drive {

/// Where sentences are handed out, as the command line names it.
struct ServeAddress {
  enum Kind { TCP, UDP, PTY };

  Kind mKind = TCP;
  std::string mName;  ///< as the user wrote it, for messages
  HostPort mWhere;    ///< of TCP and UDP; without a host the loopback
  std::string mPath;  ///< of PTY

  /// "tcp://[ADDR]:PORT", "udp://[ADDR]:PORT" or "pty:PATH". @param npReason of false
  bool parse(const std::string& nText, std::string* npReason);
};

}  // namespace drive
