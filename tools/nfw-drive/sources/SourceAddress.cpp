#include "SourceAddress.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "SerialSpeed.h"

namespace drive {

namespace {

const std::string TCP_SCHEME = "tcp://";
const std::string GPSD_SCHEME = "gpsd://";
const std::string UDP_SCHEME = "udp://";
const std::string GPSD_PORT = ":2947";
const char NAME_BYTES[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
const char SCHEME_BYTES[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+.-";
const char* const FORMS =
    "a source is sim, FILE, -, /dev/TTY[:BAUD], tcp://HOST:PORT, gpsd://HOST[:PORT] or udp://[ADDR]:PORT";

bool isCharacterDevice(const std::string& nPath) {
  struct stat lStat = {};
  return ::stat(nPath.c_str(), &lStat) == 0 && S_ISCHR(lStat.st_mode);
}

bool isTerminal(const std::string& nPath) {
  if (!isCharacterDevice(nPath)) return false;
  const int lFd = ::open(nPath.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  const bool lIsTerminal = lFd >= 0 && ::isatty(lFd) == 1;
  if (lFd >= 0) ::close(lFd);
  return lIsTerminal;
}

bool isThere(const std::string& nPath) { return ::access(nPath.c_str(), F_OK) == 0; }

// A name such as a serial line has, also while the device is missing or out of reach.
bool looksSerial(const std::string& nPath) {
  return nPath.rfind("/dev/tty", 0) == 0 || nPath.rfind("/dev/serial/", 0) == 0 || nPath.rfind("/dev/rfcomm", 0) == 0 ||
         nPath.rfind("/dev/pts/", 0) == 0 || (nPath.rfind("/dev/", 0) == 0 && !isThere(nPath));
}

// "ftp://..."
bool hasScheme(const std::string& nText) {
  const size_t lEnd = nText.find("://");
  return lEnd != std::string::npos && lEnd > 0 && nText.find_first_not_of(SCHEME_BYTES) == lEnd;
}

bool parseTcp(const std::string& nAddress, SourceAddress* npAddress, std::string* npReason) {
  npAddress->mKind = SourceAddress::TCP;
  if (!npAddress->mWhere.parse(nAddress) || npAddress->mWhere.mPort == "0") {
    *npReason = "needs a port: tcp://HOST:PORT";
  } else if (npAddress->mWhere.mHost.empty()) {
    *npReason = "needs a host: tcp://HOST:PORT";
  }
  return npReason->empty();
}

// A port is told, or that of every gpsd.
bool parseGpsd(const std::string& nAddress, SourceAddress* npAddress, std::string* npReason) {
  const bool lHasPort = nAddress.find(':', nAddress.find(']') + 1) != std::string::npos;
  npAddress->mKind = SourceAddress::TCP;
  npAddress->mIsGpsd = true;
  const bool lIsOne = npAddress->mWhere.parse(lHasPort ? nAddress : nAddress + GPSD_PORT) &&
                      !npAddress->mWhere.mHost.empty() && npAddress->mWhere.mPort != "0";
  if (!lIsOne) *npReason = "needs a host: gpsd://HOST[:PORT]";
  return lIsOne;
}

bool parseUdp(const std::string& nAddress, SourceAddress* npAddress, std::string* npReason) {
  npAddress->mKind = SourceAddress::UDP;
  const bool lIsOne = npAddress->mWhere.parse(nAddress) && npAddress->mWhere.mPort != "0";
  if (!lIsOne) *npReason = "needs a port: udp://[ADDR]:PORT";
  return lIsOne;
}

// "localhost:2947", which is no path
bool isHostAndPort(const std::string& nText) {
  SourceAddress lAddress;
  std::string lIgnored;
  return nText.find('/') == std::string::npos && parseTcp(nText, &lAddress, &lIgnored);
}

// What is meant for a server, but is not written as one.
bool isOddServer(const std::string& nText, std::string* npReason) {
  if (isThere(nText)) return false;
  if (hasScheme(nText)) {
    const std::string lAddress = nText.substr(nText.find("://") + 3);
    *npReason = "is of a kind that cannot be opened: " + std::string(FORMS);
    if (isHostAndPort(lAddress)) *npReason += ", as tcp://" + lAddress;
    return true;
  }
  if (isHostAndPort(nText)) *npReason = "is no file; of a server: tcp://" + nText;
  return !npReason->empty();
}

// "/dev/ttyUSB0:4800" is the device and its speed.
void splitBaud(const std::string& nText, SourceAddress* npAddress) {
  const size_t lColon = nText.rfind(':');
  unsigned int lBaud = 0;
  if (lColon == std::string::npos || isThere(nText)) return;
  if (!parseNumber(nText.substr(lColon + 1), &lBaud)) return;
  const std::string lPath = nText.substr(0, lColon);
  if (!looksSerial(lPath) && !isTerminal(lPath)) return;
  npAddress->mPath = lPath;
  npAddress->mBaud = lBaud;
}

bool parsePath(const std::string& nText, SourceAddress* npAddress, std::string* npReason) {
  npAddress->mPath = nText;
  splitBaud(nText, npAddress);
  npAddress->mKind =
      looksSerial(npAddress->mPath) || isTerminal(npAddress->mPath) ? SourceAddress::SERIAL : SourceAddress::FILE;
  if (npAddress->mKind != SourceAddress::SERIAL || isSerialSpeed(npAddress->mBaud)) return true;
  *npReason = "has no speed of " + std::to_string(npAddress->mBaud) + " baud";
  return false;
}

// "left=/dev/ttyUSB0". A file of that whole name, and a path or an address with an "=" in it, have none.
bool splitName(const std::string& nText, std::string* npName, std::string* npReason) {
  const size_t lEqual = nText.find('=');
  if (lEqual == std::string::npos || nText.find('/') < lEqual || isThere(nText)) return true;
  *npName = nText.substr(0, lEqual);
  if (lEqual == 0 || npName->find_first_not_of(NAME_BYTES) != std::string::npos) {
    *npReason = "is no NAME=SOURCE: a name has letters, digits, - and _";
  } else if (lEqual + 1 == nText.size()) {
    *npReason = "names no source: NAME=SOURCE";
  }
  return npReason->empty();
}

bool parseUnnamed(const std::string& nText, SourceAddress* npAddress, std::string* npReason) {
  npAddress->mName = nText;
  if (nText == "sim") return true;
  if (nText == "-") {
    npAddress->mKind = SourceAddress::STDIN;
    npAddress->mName = "standard input";
    return true;
  }
  if (nText.rfind(TCP_SCHEME, 0) == 0) return parseTcp(nText.substr(TCP_SCHEME.size()), npAddress, npReason);
  if (nText.rfind(GPSD_SCHEME, 0) == 0) return parseGpsd(nText.substr(GPSD_SCHEME.size()), npAddress, npReason);
  if (nText.rfind(UDP_SCHEME, 0) == 0) return parseUdp(nText.substr(UDP_SCHEME.size()), npAddress, npReason);
  return !isOddServer(nText, npReason) && parsePath(nText, npAddress, npReason);
}

bool isSameDevice(const std::string& nOne, const std::string& nOther) {
  struct stat lOne = {}, lOther = {};
  const bool lAreThere = ::stat(nOne.c_str(), &lOne) == 0 && ::stat(nOther.c_str(), &lOther) == 0;
  return nOne == nOther || (lAreThere && lOne.st_rdev == lOther.st_rdev);
}

bool isSameInput(const SourceAddress& nOne, const SourceAddress& nOther) {
  if (nOne.mKind != nOther.mKind) return false;
  return nOne.mKind == SourceAddress::STDIN ||
         (nOne.mKind == SourceAddress::SERIAL && isSameDevice(nOne.mPath, nOther.mPath));
}

std::string clash(const SourceAddress& nOne, const SourceAddress& nOther) {
  const std::string lBoth = nOne.mName + " and " + nOther.mName;
  if (isSameInput(nOne, nOther)) return lBoth + ": each would get a part of the same";
  return nOne.mLabel != nOther.mLabel ? ""
                                      : lBoth + ": of several sources each needs a name of its own, as NAME=SOURCE";
}

}  // namespace

bool parseSourceAddress(const std::string& nText, unsigned int nDefaultBaud, SourceAddress* npAddress,
                        std::string* npReason) {
  std::string lName;
  npAddress->mBaud = nDefaultBaud;
  if (!splitName(nText, &lName, npReason)) return false;
  const bool lIsOne = parseUnnamed(lName.empty() ? nText : nText.substr(lName.size() + 1), npAddress, npReason);
  npAddress->mLabel = lName.empty() ? npAddress->mName : lName;
  if (!lName.empty()) npAddress->mName.insert(0, lName + "=");
  return lIsOne;
}

bool canBeTogether(const std::vector<SourceAddress>& nSources, std::string* npReason) {
  for (size_t i = 0; i < nSources.size() && npReason->empty(); ++i) {
    for (size_t j = 0; j < i && npReason->empty(); ++j) *npReason = clash(nSources[j], nSources[i]);
  }
  return npReason->empty();
}

}  // namespace drive
