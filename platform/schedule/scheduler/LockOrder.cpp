#include "LockOrder.h"

#include <fstream>

namespace schedule {

namespace {

bool matches(const std::string& nPattern, const std::string& nName) {
  const size_t lStar = nPattern.find('*');
  if (lStar == std::string::npos) return nPattern == nName;
  const std::string lTail = nPattern.substr(lStar + 1);
  return nName.size() >= nPattern.size() - 1 && nName.compare(0, lStar, nPattern, 0, lStar) == 0 &&
         nName.compare(nName.size() - lTail.size(), lTail.size(), lTail) == 0;
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
