#include "LogPane.h"

#include <unistd.h>

#include <algorithm>

#include "NfwAppLog.h"

namespace drive {

void LogPane::install() {
  mPassesOn = ::isatty(STDERR_FILENO) != 1;
  mpBefore = syslogservice::setSink(this);
  mIsInstalled = true;
}

void LogPane::remove() {
  if (mIsInstalled) syslogservice::setSink(mpBefore);
  mIsInstalled = false;
}

void LogPane::writeLine(int nType, int nLevel, const char* npText) {
  static const char* const WORDS[] = {"", "ERR ", "WRN ", "INF ", "DTL ", "DBG "};
  const LogKinds::Verdict lVerdict = mKinds.judge(nType, nLevel, npText);
  if (lVerdict.mIsShown || lVerdict.mKind != LogKinds::NO_KIND) count(nLevel);
  if (!lVerdict.mIsShown) return;
  if (mPassesOn) syslogservice::writeToStandardError(nType, nLevel, npText);
  const std::lock_guard<std::mutex> lLock(mMutex);
  if (mLines.size() == mMaxLines) mLines.pop_front();
  mLines.push_back({(nLevel >= 1 && nLevel <= 5 ? WORDS[nLevel] : "") + std::string(npText), lVerdict.mKind});
}

void LogPane::count(int nLevel) {
  const size_t lPlace = nLevel <= nfw::LOG_LEVEL_ERROR ? 0 : nLevel == nfw::LOG_LEVEL_WARNING ? 1 : 2;
  mCounts[lPlace].fetch_add(1, std::memory_order_relaxed);
}

std::vector<std::string> LogPane::lines(size_t nMost) const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  std::vector<std::string> lLines;
  for (size_t i = mLines.size() - std::min(mLines.size(), nMost); i < mLines.size(); ++i) {
    const Line& lLine = mLines[i];
    const uint64_t lCount = lLine.mKind != LogKinds::NO_KIND ? mKinds.count(lLine.mKind) : 1;
    lLines.push_back(lCount > 1 ? std::to_string(lCount) + " x " + lLine.mText : lLine.mText);
  }
  return lLines;
}

}  // namespace drive
