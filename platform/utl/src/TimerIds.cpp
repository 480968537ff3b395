#include "TimerIds.h"

#include <algorithm>
#include <climits>

namespace utl {

// Never destroyed: threads may end after the process has begun to.
TimerIds& TimerIds::ofProcess() {
  static TimerIds* const lpIds = new TimerIds;
  return *lpIds;
}

void TimerIds::reserve(unsigned int nNum) {
  MutexLock lLock(mMutex);
  mReserved += nNum;
  mAlive.reserve(mReserved);
}

void TimerIds::unreserve(unsigned int nNum) {
  MutexLock lLock(mMutex);
  mReserved -= nNum;
}

int TimerIds::take() {
  MutexLock lLock(mMutex);
  std::vector<int>::iterator lAt;
  do {
    mLast = mLast == INT_MAX ? 1 : mLast + 1;
    lAt = std::lower_bound(mAlive.begin(), mAlive.end(), mLast);
  } while (lAt != mAlive.end() && *lAt == mLast);
  mAlive.insert(lAt, mLast);
  return mLast;
}

void TimerIds::give(int nId) {
  MutexLock lLock(mMutex);
  const auto lAt = std::lower_bound(mAlive.begin(), mAlive.end(), nId);
  if (lAt != mAlive.end() && *lAt == nId) mAlive.erase(lAt);
}

}  // namespace utl
