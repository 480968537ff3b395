#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "PlatformSeams.h"
#include "SysLogServiceHost.h"

namespace seams {

class CapturedLog::Store : public syslogservice::Sink {
 public:
  void writeLine(int nType, int nLevel, const char* npText) override {
    std::lock_guard<std::mutex> lLock(mMutex);
    mLines.push_back(Line{nType, nLevel, npText});
    mHasNew.notify_all();
  }

  unsigned int countLocked(const std::string& nText) const {
    return static_cast<unsigned int>(
        std::count_if(mLines.begin(), mLines.end(), [&](const Line& nLine) { return nLine.mText == nText; }));
  }

  syslogservice::Sink* mpBefore = nullptr;
  mutable std::mutex mMutex;  // guards mLines
  std::condition_variable mHasNew;
  std::vector<Line> mLines;
};

CapturedLog::CapturedLog() : mpStore(new Store) { mpStore->mpBefore = syslogservice::setSink(mpStore.get()); }
CapturedLog::~CapturedLog() { syslogservice::setSink(mpStore->mpBefore); }

std::vector<CapturedLog::Line> CapturedLog::lines() const {
  std::lock_guard<std::mutex> lLock(mpStore->mMutex);
  return mpStore->mLines;
}

std::vector<std::string> CapturedLog::texts() const {
  std::vector<std::string> lTexts;
  for (const Line& lLine : lines()) lTexts.push_back(lLine.mText);
  return lTexts;
}

bool CapturedLog::has(const std::string& nText) const { return count(nText) > 0; }

unsigned int CapturedLog::count(const std::string& nText) const {
  std::lock_guard<std::mutex> lLock(mpStore->mMutex);
  return mpStore->countLocked(nText);
}

bool CapturedLog::waitFor(const std::string& nText, unsigned int nTimeoutMs) const {
  const auto lLimit = std::chrono::steady_clock::now() + std::chrono::milliseconds(nTimeoutMs);
  std::unique_lock<std::mutex> lLock(mpStore->mMutex);
  return mpStore->mHasNew.wait_until(lLock, lLimit, [&] { return mpStore->countLocked(nText) > 0; });
}

void CapturedLog::clear() {
  std::lock_guard<std::mutex> lLock(mpStore->mMutex);
  mpStore->mLines.clear();
}

}  // namespace seams
