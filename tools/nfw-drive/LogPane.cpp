#include "LogPane.h"

namespace drive {

void LogPane::install() {
  mpBefore = syslogservice::setSink(this);
  mIsInstalled = true;
}

void LogPane::remove() {
  if (mIsInstalled) syslogservice::setSink(mpBefore);
  mIsInstalled = false;
}

void LogPane::writeLine(int, int nLevel, const char* npText) {
  static const char* const WORDS[] = {"", "ERR ", "WRN ", "INF ", "DTL ", "DBG "};
  const std::lock_guard<std::mutex> lLock(mMutex);
  if (mLines.size() == mMaxLines) mLines.pop_front();
  mLines.push_back((nLevel >= 1 && nLevel <= 5 ? WORDS[nLevel] : "") + std::string(npText));
}

std::vector<std::string> LogPane::lines() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return {mLines.begin(), mLines.end()};
}

}  // namespace drive
