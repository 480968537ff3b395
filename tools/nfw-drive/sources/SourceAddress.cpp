#include "SourceAddress.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "SerialSpeed.h"

namespace drive {

namespace {

const std::string TCP_SCHEME = "tcp://";
const char SCHEME_BYTES[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+.-";
const char* const FORMS = "a source is sim, FILE, -, /dev/TTY[:BAUD] or tcp://HOST:PORT";

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

// A name such as a serial line has, also while the device is missing or out of reach.
bool looksSerial(const std::string& nPath) {
  return nPath.rfind("/dev/tty", 0) == 0 || nPath.rfind("/dev/serial/", 0) == 0 || nPath.rfind("/dev/rfcomm", 0) == 0 ||
         nPath.rfind("/dev/pts/", 0) == 0;
}

bool isThere(const std::string& nPath) { return ::access(nPath.c_str(), F_OK) == 0; }

// "udp://..."
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

}  // namespace

bool parseSourceAddress(const std::string& nText, unsigned int nDefaultBaud, SourceAddress* npAddress,
                        std::string* npReason) {
  npAddress->mName = nText;
  npAddress->mBaud = nDefaultBaud;
  if (nText == "sim") return true;
  if (nText == "-") {
    npAddress->mKind = SourceAddress::STDIN;
    npAddress->mName = "standard input";
    return true;
  }
  if (nText.rfind(TCP_SCHEME, 0) == 0) return parseTcp(nText.substr(TCP_SCHEME.size()), npAddress, npReason);
  return !isOddServer(nText, npReason) && parsePath(nText, npAddress, npReason);
}

}  // namespace drive
