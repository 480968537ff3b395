#include "Limits.h"

namespace drive {

bool Limits::begin(const std::string& nDirectory, const std::string& nPrefix, const RecordOptions& nRecord) {
  end();
  if (!nRecord.isLimited()) return true;
  mpRetention = std::make_unique<nfw::LogRetention>(nDirectory.c_str(), nPrefix.c_str(), nRecord.mKeep);
  return mpRetention->start();
}

void Limits::end() {
  mBefore = getCounts();
  mpRetention.reset();
}

nfw::LogRetentionCounts Limits::endForGood() {
  if (mpRetention != nullptr) {
    mpRetention->stop();
    mpRetention->apply();
  }
  return getCounts();
}

nfw::LogRetentionCounts Limits::getCounts() const {
  if (mpRetention == nullptr) return mBefore;
  nfw::LogRetentionCounts lCounts = mpRetention->getCounts();
  lCounts.mDeletedNum += mBefore.mDeletedNum;
  lCounts.mDeletedSize += mBefore.mDeletedSize;
  lCounts.mFailedNum += mBefore.mFailedNum;
  if (lCounts.mError == 0) lCounts.mError = mBefore.mError;
  return lCounts;
}

}  // namespace drive
