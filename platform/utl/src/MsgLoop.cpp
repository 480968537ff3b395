// The queue: what any thread does to it. The thread itself is in MsgLoopRun.cpp.
#include "MsgLoop.h"

#include <climits>

#include "FullQueues.h"
#include "SeamState.h"
#include "SlotWriter.h"
#include "ThreadId.h"

namespace utl {

namespace {

const unsigned int SYNC_PLACES = 8;  // beyond the queue's length: a flood of posts cannot refuse a synchronous send
const unsigned int POINTER_FACTOR = sizeof(void*) / 4;  // sizes are counted with pointers of 4 bytes

unsigned int slotSizeFor(unsigned int nMaxMsgDataSize) {
  return nMaxMsgDataSize > UINT_MAX / POINTER_FACTOR ? UINT_MAX : nMaxMsgDataSize * POINTER_FACTOR;
}

unsigned int slotNumFor(unsigned int nMaxMsgNum) {
  const unsigned int HANDLED = 1 + MsgLoop::FREED;  // one that is handled, and those that were and are kept for a while
  return nMaxMsgNum > INT_MAX / 2 ? INT_MAX / 2 : nMaxMsgNum + SYNC_PLACES + HANDLED;
}

}  // namespace

MsgLoop::MsgLoop(unsigned int nMaxMsgDataSize, unsigned int nMaxMsgNum, const char* npName, unsigned int nTimerNum)
    : mName(npName != nullptr ? npName : ""),
      mMaxMsgNum(nMaxMsgNum),
      mSlots(slotNumFor(nMaxMsgNum), nMaxMsgDataSize, slotSizeFor(nMaxMsgDataSize)),
      mQueue(mSlots.num() + nTimerNum),
      mInterrupts(mSlots.num()),
      mTimers(nTimerNum) {
  mJudged.reserve(mSlots.num());
  for (int i = static_cast<int>(mSlots.num()) - 1; i >= 0; --i) mFree.push(i);
}

bool MsgLoop::send(ThreadMsgListener* npListener, const Msg& nMsg, bool nIsInterrupt) {
  if (isOwnThread()) return false;
  SyncWait lWait;
  return queue(npListener, nMsg, &lWait, nIsInterrupt) && lWait.await();
}

bool MsgLoop::queue(ThreadMsgListener* npListener, const Msg& nMsg, SyncWait* npWait, bool nIsInterrupt) {
  if (seams::fails(seams::POST)) return false;
  SlotWriter lData(*this, npWait != nullptr);
  if (!lData.store(nMsg)) return false;
  std::atomic<int>* lpWake = nullptr;
  {
    MutexLock lLock(mMutex);
    if (mState != RUNNING) return false;
    int lIndex = lData.slot();
    const unsigned char* lpData = lData.data();
    if (lIndex >= 0) {
      lData.queued();
      setSlotAsideLocked();  // for the next message of such a size
    } else {
      lIndex = takeSlotLocked(npWait != nullptr);
      if (lIndex < 0) return false;
      lpData = mSlots.copy(lIndex, lpData, lData.size());
    }
    mSlots[lIndex] = {lpData, lData.size(), nMsg.getMsgId(), npListener, npWait, false};
    if (!nIsInterrupt) queueExpiredLocked();  // what expired before this message goes before it
    (nIsInterrupt ? mInterrupts : mQueue).push(lIndex);
    lpWake = wakeLocked();
  }
  Condition::sendSignal(lpWake);  // from here on the handler may have destroyed the thread
  return true;
}

int MsgLoop::takeSlotLocked(bool nIsSync) {
  if (mMsgNum >= mMaxMsgNum + (nIsSync ? SYNC_PLACES : 0)) {
    const int lSpare = mSpareSlot.exchange(-1, std::memory_order_acquire);
    if (lSpare < 0) FullQueues::note();
    return lSpare;
  }
  ++mMsgNum;
  return mFree.pop();
}

void MsgLoop::setSlotAsideLocked() {
  if (mMsgNum >= mMaxMsgNum || mSpareSlot.load(std::memory_order_relaxed) >= 0) return;
  ++mMsgNum;
  mSpareSlot.store(mFree.pop(), std::memory_order_release);
}

int MsgLoop::reserveSlot(bool nIsSync) {
  const int lSpare = mSpareSlot.exchange(-1, std::memory_order_acquire);
  if (lSpare >= 0) return lSpare;
  MutexLock lLock(mMutex);
  return takeSlotLocked(nIsSync);
}

void MsgLoop::giveBack(int nSlot) {
  MutexLock lLock(mMutex);
  --mMsgNum;
  mFree.push(nSlot);
}

int MsgLoop::setTimer(ThreadMsgListener* npListener, unsigned int nTimeMs, int nCount, unsigned int nParam) {
  if (nCount < 0 || seams::fails(seams::TIMER)) return -1;
  std::atomic<int>* lpWake = nullptr;
  int lId = -1;
  {
    MutexLock lLock(mMutex);
    if (mState != RUNNING) return -1;
    const int64_t lEarliestMs = mTimers.earliestMs();
    lId = mTimers.arm(npListener, Clock::nowMs(), nTimeMs, nCount, nParam);
    mQueue.reserve(mSlots.num() + mTimers.capacity());
    if (mTimers.earliestMs() != lEarliestMs) lpWake = wakeLocked();
  }
  Condition::sendSignal(lpWake);
  return lId;
}

bool MsgLoop::killTimer(int nTimerId) {
  MutexLock lLock(mMutex);
  const bool lIsKnown = mTimers.remove(nTimerId);
  if (lIsKnown) sweepTimersLocked();
  return lIsKnown;
}

/// Takes the messages of timers that are gone out of the queue.
void MsgLoop::sweepTimersLocked() {
  const TimerTable* const lpTimers = &mTimers;
  mQueue.removeIf([lpTimers](int nEntry) { return nEntry < 0 && !lpTimers->isQueued(~nEntry); });
}

void MsgLoop::queueExpiredLocked() {
  if (mTimers.earliestMs() == Clock::NEVER) return;
  const int64_t lNowMs = Clock::nowMs();
  for (int lIndex = mTimers.expire(lNowMs); lIndex >= 0; lIndex = mTimers.expire(lNowMs)) mQueue.push(~lIndex);
}

template <class Found>
int MsgLoop::findLocked(Found nFound) const {
  for (const IndexRing* lpRing : {&mInterrupts, &mQueue}) {
    for (unsigned int i = 0; i < lpRing->size(); ++i) {
      if (lpRing->at(i) >= 0 && nFound(lpRing->at(i))) return lpRing->at(i);
    }
  }
  return -1;
}

template <class Chosen>
unsigned int MsgLoop::dropLocked(Chosen nChosen) {
  const unsigned int lBefore = mInterrupts.size() + mQueue.size();
  SlotStack* const lpFree = &mFree;
  const auto lDrop = [this, nChosen, lpFree](int nEntry) {
    if (nEntry < 0 || !nChosen(mSlots[nEntry])) return false;
    if (mSlots[nEntry].mpWait != nullptr) mSlots[nEntry].mpWait->finish(SyncWait::DISCARDED);
    lpFree->push(nEntry);
    return true;
  };
  mInterrupts.removeIf(lDrop);
  mQueue.removeIf(lDrop);
  const unsigned int lDropped = lBefore - mInterrupts.size() - mQueue.size();
  mMsgNum -= lDropped;
  return lDropped;
}

bool MsgLoop::hasMsg(const ThreadMsgListener* npListener, int nMsgId) const {
  MutexLock lLock(mMutex);
  return findLocked([=](int nIndex) { return mSlots[nIndex].isOf(npListener) && mSlots[nIndex].mMsgId == nMsgId; }) >=
         0;
}

int MsgLoop::firstMsgId() const {
  MutexLock lLock(mMutex);
  const int lIndex = findLocked([](int) { return true; });
  return lIndex >= 0 ? mSlots[lIndex].mMsgId : 0;
}

unsigned int MsgLoop::eraseMsg(const ThreadMsgListener* npListener, int nMsgId) {
  MutexLock lLock(mMutex);
  if (!awaitJudgementLocked()) return 0;
  return dropLocked([=](const MsgSlot& nSlot) { return nSlot.isOf(npListener) && nSlot.mMsgId == nMsgId; });
}

void MsgLoop::discardLocked() {
  awaitJudgementLocked();
  dropLocked([](const MsgSlot&) { return true; });
}

/// Waits until nobody judges. False when the caller itself does: a judgement must not call its thread.
bool MsgLoop::awaitJudgementLocked() const {
  if (mJudgingThread == 0) return true;
  if (mJudgingThread == ThreadId::current()) return false;
  while (mJudgingThread != 0) mChanged.wait(mMutex);
  return true;
}

// While mJudgingThread is set nothing is taken out of the queue, so the judgement can run without the lock; posts go
// on.
unsigned int MsgLoop::eraseJudged(const ThreadMsgListener* npListener,
                                  MsgDrivenThread::MsgJudgementInterface* npJudgement) {
  if (npJudgement == nullptr) return 0;
  {
    MutexLock lLock(mMutex);
    if (!awaitJudgementLocked()) return 0;
    mJudgingThread = ThreadId::current();
    mJudged.clear();
    findLocked([=](int nIndex) {
      if (mSlots[nIndex].isOf(npListener)) mJudged.push_back(nIndex);
      return false;
    });
  }
  for (const int lIndex : mJudged) {
    MsgSlot& lSlot = mSlots[lIndex];
    RawMsg lMsg(lSlot.mMsgId, lSlot.mpData, lSlot.mSize);
    lSlot.mIsChosen = npJudgement->judge(lMsg);
  }
  MutexLock lLock(mMutex);
  const unsigned int lErased = dropLocked([](const MsgSlot& nSlot) { return nSlot.mIsChosen; });
  mJudgingThread = 0;
  mChanged.broadcast();
  Condition::sendSignal(wakeLocked());
  return lErased;
}

// A handler under way may post to its listener again, and that may be handled before this is awake: until neither is
// left.
void MsgLoop::abort(ThreadMsgListener* npListener) {
  MutexLock lLock(mMutex);
  while (awaitJudgementLocked()) {
    dropLocked([=](const MsgSlot& nSlot) { return nSlot.mpListener == npListener; });
    mTimers.removeOf(npListener);
    sweepTimersLocked();
    if (isOwnThread() || mpHandling != npListener) return;
    mChanged.wait(mMutex);
  }
}

}  // namespace utl
