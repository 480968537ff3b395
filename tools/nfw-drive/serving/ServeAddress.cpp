#include "ServeAddress.h"

namespace drive {

namespace {

struct Scheme {
  const char* mpPrefix;
  ServeAddress::Kind mKind;
};
const Scheme SCHEMES[] = {{"tcp://", ServeAddress::TCP}, {"udp://", ServeAddress::UDP}, {"pty:", ServeAddress::PTY}};

}  // namespace

bool ServeAddress::parse(const std::string& nText, std::string* npReason) {
  mName = nText;
  for (const Scheme& lScheme : SCHEMES) {
    if (nText.rfind(lScheme.mpPrefix, 0) != 0) continue;
    mKind = lScheme.mKind;
    mPath = nText.substr(std::string(lScheme.mpPrefix).size());
    const bool lIsWhole = mKind == PTY ? !mPath.empty() : mWhere.parse(mPath) && (mKind == TCP || mWhere.mPort != "0");
    if (!lIsWhole)
      *npReason = mKind == PTY ? "needs a path: pty:PATH" : "needs a port: " + nText.substr(0, 6) + "[ADDR]:PORT";
    return lIsWhole;
  }
  *npReason = "is none of tcp://[ADDR]:PORT, udp://[ADDR]:PORT and pty:PATH";
  return false;
}

}  // namespace drive
