#include "Turns.h"

#include <algorithm>

namespace drive {

void Turns::end(size_t nSource) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  if (mHolder == nSource) pass();
}

void Turns::close() {
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsClosed = true;
  mChange.notify_all();
}

void Turns::pass() {
  mHolder = NOBODY;
  mChange.notify_all();
}

Turns::Clock::time_point Turns::due() const { return std::min(mLastUse + mLimits.mQuiet, mBegin + mLimits.mLongest); }

// Only the next one looks at the clock: the others wait until it has come.
bool Turns::await(size_t nSource, std::unique_lock<std::mutex>& nLock) {
  if (mHolder == nSource) return !mIsClosed;
  mWaiting.push_back(nSource);
  while (!mIsClosed && (mWaiting.front() != nSource || !isFree())) {
    mWaiting.front() == nSource ? (void)mChange.wait_until(nLock, due()) : mChange.wait(nLock);
  }
  mWaiting.erase(std::find(mWaiting.begin(), mWaiting.end(), nSource));
  mHolder = nSource;
  mBegin = mLastUse = Clock::now();
  mChange.notify_all();
  return !mIsClosed;
}

}  // namespace drive
