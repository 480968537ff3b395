#include "HostPort.h"

#include <charconv>

namespace drive {

bool HostPort::parse(const std::string& nText) {
  const size_t lColon = nText.rfind(':');
  unsigned int lPort = 0;
  if (lColon == std::string::npos || !parseNumber(nText.substr(lColon + 1), &lPort) || lPort > 65535) return false;
  mHost = nText.substr(0, lColon);
  mPort = nText.substr(lColon + 1);
  const bool lIsBracketed = mHost.size() > 2 && mHost.front() == '[' && mHost.back() == ']';
  if (lIsBracketed) mHost = mHost.substr(1, mHost.size() - 2);
  return true;
}

bool parseNumber(const std::string& nText, unsigned int* npValue) {
  const char* const lpEnd = nText.data() + nText.size();
  const std::from_chars_result lResult = std::from_chars(nText.data(), lpEnd, *npValue);
  return lResult.ec == std::errc() && lResult.ptr == lpEnd && !nText.empty();
}

}  // namespace drive
