#include "TimerTable.h"

#include <algorithm>

#include "TimerIds.h"

namespace utl {

TimerTable::TimerTable(unsigned int nReserved) : mReserved(nReserved), mTimers(nReserved) {
  mArmed.reserve(nReserved);
  TimerIds::ofProcess().reserve(nReserved);
}

TimerTable::~TimerTable() {
  clear();
  TimerIds::ofProcess().unreserve(mReserved);
}

int TimerTable::freeIndex() {
  const auto lFree =
      std::find_if(mTimers.begin(), mTimers.end(), [](const Timer& nEach) { return nEach.mState == FREE; });
  const int lIndex = static_cast<int>(lFree - mTimers.begin());
  if (lFree == mTimers.end()) mTimers.emplace_back();
  return lIndex;
}

void TimerTable::insert(int nIndex) {
  const auto lIsLater = [this](int nLeft, int nRight) {
    const Timer &lLeft = timer(nLeft), &lRight = timer(nRight);
    return lLeft.mDueMs != lRight.mDueMs ? lLeft.mDueMs > lRight.mDueMs : lLeft.mOrder > lRight.mOrder;
  };
  mArmed.insert(std::upper_bound(mArmed.begin(), mArmed.end(), nIndex, lIsLater), nIndex);
  timer(nIndex).mState = ARMED;
  noteEarliest();
}

void TimerTable::noteEarliest() { mEarliestMs = mArmed.empty() ? Clock::NEVER : timer(mArmed.back()).mDueMs; }

int TimerTable::arm(ThreadMsgListener* npListener, int64_t nNowMs, unsigned int nIntervalMs, int nCount,
                    unsigned int nParam) {
  const int lIndex = freeIndex();
  Timer& lTimer = timer(lIndex);
  lTimer.mId = TimerIds::ofProcess().take();
  lTimer.mDueMs = nNowMs + nIntervalMs;
  lTimer.mOrder = ++mLastOrder;
  lTimer.mIntervalMs = nIntervalMs;
  lTimer.mLeft = nCount;
  lTimer.mParam = nParam;
  lTimer.mpListener = npListener;
  insert(lIndex);
  return lTimer.mId;
}

int TimerTable::expire(int64_t nNowMs) {
  if (earliestMs() > nNowMs) return -1;
  const int lIndex = mArmed.back();
  mArmed.pop_back();
  noteEarliest();
  timer(lIndex).mState = QUEUED;
  return lIndex;
}

int TimerTable::nextQueued(const ThreadMsgListener* npListener, int nAboveId) const {
  int lFound = -1;
  for (int i = 0; i < static_cast<int>(mTimers.size()); ++i) {
    const Timer& lTimer = timer(i);
    const bool lIsMeant = npListener == nullptr || lTimer.mpListener == npListener;
    if (lTimer.mState != QUEUED || !lIsMeant || lTimer.mId <= nAboveId) continue;
    if (lFound < 0 || lTimer.mId < timer(lFound).mId) lFound = i;
  }
  return lFound;
}

TimerTable::Expiry TimerTable::take(int nIndex, int64_t nNowMs) {
  Timer& lTimer = timer(nIndex);
  const Expiry lExpiry = expiry(nIndex);
  if (lTimer.mLeft == 1) {
    release(&lTimer);
    return lExpiry;
  }
  if (lTimer.mLeft > 1) --lTimer.mLeft;
  lTimer.mDueMs += lTimer.mIntervalMs;
  if (lTimer.mIntervalMs != 0 && lTimer.mDueMs <= nNowMs) {  // periods that passed meanwhile went into this message
    lTimer.mDueMs += ((nNowMs - lTimer.mDueMs) / lTimer.mIntervalMs + 1) * lTimer.mIntervalMs;
  }
  insert(nIndex);
  return lExpiry;
}

void TimerTable::release(Timer* npTimer) {
  TimerIds::ofProcess().give(npTimer->mId);
  npTimer->mState = FREE;
}

template <class Chosen>
bool TimerTable::removeIf(Chosen nChosen) {
  bool lHasRemoved = false;
  for (Timer& lEach : mTimers) {
    if (lEach.mState == FREE || !nChosen(lEach)) continue;
    release(&lEach);
    lHasRemoved = true;
  }
  const auto lIsGone = [this](int nIndex) { return timer(nIndex).mState != ARMED; };
  mArmed.erase(std::remove_if(mArmed.begin(), mArmed.end(), lIsGone), mArmed.end());
  noteEarliest();
  return lHasRemoved;
}

bool TimerTable::remove(int nId) {
  return removeIf([nId](const Timer& nEach) { return nEach.mId == nId; });
}

void TimerTable::removeOf(const ThreadMsgListener* npListener) {
  removeIf([npListener](const Timer& nEach) { return nEach.mpListener == npListener; });
}

void TimerTable::clear() {
  removeIf([](const Timer&) { return true; });
}

}  // namespace utl
