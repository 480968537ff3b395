#include "LockOrder.h"

#include <fstream>

namespace schedule {

namespace {

bool matches(const std::string& nPattern, const std::string& nName) {
  if (nPattern.empty() || nPattern.back() != '*') return nPattern == nName;
  return nName.compare(0, nPattern.size() - 1, nPattern, 0, nPattern.size() - 1) == 0;
}

}  // namespace

bool LockOrder::read(const char* npPath) {
  std::ifstream lFile(npPath);
  bool lIsInside = false;
  for (std::string lLine; std::getline(lFile, lLine);) {
    if (lLine.compare(0, 3, "```") == 0) {
      lIsInside = lLine == "```lock-order";
    } else if (lIsInside) {
      const size_t lAt = lLine.find(" > ");
      if (lAt == std::string::npos) return false;
      mInner.emplace(lLine.substr(0, lAt), lLine.substr(lAt + 3));
    }
  }
  return !mInner.empty();
}

bool LockOrder::allows(const std::string& nHeld, const std::string& nTaken) const {
  const std::string lPair = nHeld + '\n' + nTaken;
  const auto lKnown = mKnown.find(lPair);
  if (lKnown != mKnown.end()) return lKnown->second;
  std::set<std::string> lSeen;
  return mKnown[lPair] = reaches(nHeld, nTaken, lSeen);
}

bool LockOrder::reaches(const std::string& nFrom, const std::string& nTo, std::set<std::string>& nSeen) const {
  if (!nSeen.insert(nFrom).second) return false;
  for (const auto& lEach : mInner) {
    if (!matches(lEach.first, nFrom)) continue;
    if (matches(lEach.second, nTo) || reaches(lEach.second, nTo, nSeen)) return true;
  }
  return false;
}

}  // namespace schedule
