#pragma once

#include <string>

namespace drive {

/// A host and a port as an address has them: "HOST:PORT", "[::1]:PORT", or ":PORT" with an empty host.
struct HostPort {
  std::string mHost;
  std::string mPort;  ///< a number of 0 to 65535

  /// False when the text has no port, or one that is none.
  bool parse(const std::string& nText);
};

/// The digits of a number that fits, and nothing else.
bool parseNumber(const std::string& nText, unsigned int* npValue);

}  // namespace drive
