// The queue: what any thread does to it. The thread itself is in MsgLoopRun.cpp.
#include "MsgLoop.h"

#include <climits>

#include "ExpiredTimer.h"
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

/// What is queued, without its bytes; a timer's expiry too.
MsgSlot MsgLoop::entryLocked(int nEntry) const {
  if (nEntry >= 0) return mSlots[nEntry];
  return {nullptr, 0, TimerMsg::MSG_ID, mTimers.expiry(~nEntry).mpListener, nullptr, false};
}

template <class Found>
bool MsgLoop::findLocked(Found nFound) const {
  for (const IndexRing* lpRing : {&mInterrupts, &mQueue}) {
    for (unsigned int i = 0; i < lpRing->size(); ++i) {
      if (nFound(lpRing->at(i), entryLocked(lpRing->at(i)))) return true;
    }
  }
  return false;
}

template <class Chosen>
unsigned int MsgLoop::dropLocked(Chosen nChosen) {
  unsigned int lSlots = 0, lTimers = 0;
  const auto lDrop = [this, nChosen, &lSlots, &lTimers](int nEntry) ZTS_ANNOTATION(no_thread_safety_analysis) {
    const MsgSlot lEntry = entryLocked(nEntry);
    if (!nChosen(lEntry)) return false;
    if (nEntry < 0) {
      mTimers.take(~nEntry, Clock::nowMs());
      return ++lTimers != 0;
    }
    if (lEntry.mpWait != nullptr) lEntry.mpWait->finish(SyncWait::DISCARDED);
    mFree.push(nEntry);
    return ++lSlots != 0;
  };
  mInterrupts.removeIf(lDrop);
  mQueue.removeIf(lDrop);
  mMsgNum -= lSlots;
  return lSlots + lTimers;
}

bool MsgLoop::hasMsg(const ThreadMsgListener* npListener, int nMsgId) {
  MutexLock lLock(mMutex);
  queueExpiredLocked();
  return findLocked([=](int, const MsgSlot& nMsg) { return nMsg.isOf(npListener) && nMsg.mMsgId == nMsgId; });
}

int MsgLoop::firstMsgId() {
  MutexLock lLock(mMutex);
  queueExpiredLocked();
  int lMsgId = 0;
  findLocked([&lMsgId](int, const MsgSlot& nMsg) {
    lMsgId = nMsg.mMsgId;
    return true;
  });
  return lMsgId;
}

unsigned int MsgLoop::eraseMsg(const ThreadMsgListener* npListener, int nMsgId) {
  MutexLock lLock(mMutex);
  if (!awaitJudgementLocked()) return 0;
  queueExpiredLocked();
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
    queueExpiredLocked();
    mJudged.clear();
    findLocked([=](int nEntry, const MsgSlot& nMsg) ZTS_ANNOTATION(no_thread_safety_analysis) {
      if (nEntry >= 0 && nMsg.isOf(npListener)) mJudged.push_back(nEntry);
      return false;
    });
  }
  judgeMsgs(npJudgement);
  const unsigned int lTimers = dropJudgedTimers(npListener, npJudgement);
  MutexLock lLock(mMutex);
  const unsigned int lErased = dropLocked([](const MsgSlot& nSlot) { return nSlot.mIsChosen; });
  mJudgingThread = 0;
  mChanged.broadcast();
  Condition::sendSignal(wakeLocked());
  return lErased + lTimers;
}

void MsgLoop::judgeMsgs(MsgDrivenThread::MsgJudgementInterface* npJudgement) {
  for (const int lIndex : mJudged) {
    MsgSlot& lSlot = mSlots[lIndex];
    RawMsg lMsg(lSlot.mMsgId, lSlot.mpData, lSlot.mSize);
    lSlot.mIsChosen = npJudgement->judge(lMsg);
  }
}

// Timers may be killed and set while one of them is judged: each is looked up again by its id.
unsigned int MsgLoop::dropJudgedTimers(const ThreadMsgListener* npListener,
                                       MsgDrivenThread::MsgJudgementInterface* npJudgement) {
  unsigned int lErased = 0;
  MutexLock lLock(mMutex);
  for (int lIndex = mTimers.nextQueued(npListener, 0), lId = 0; lIndex >= 0;
       lIndex = mTimers.nextQueued(npListener, lId)) {
    const TimerTable::Expiry lExpiry = mTimers.expiry(lIndex);
    lId = lExpiry.mId;
    mMutex.unlock();
    const ExpiredTimer lTimer(lExpiry);
    RawMsg lMsg = lTimer.msg();
    const bool lIsChosen = npJudgement->judge(lMsg);
    mMutex.lock();
    if (lIsChosen && dropExpiryLocked(lId)) ++lErased;
  }
  return lErased;
}

bool MsgLoop::dropExpiryLocked(int nTimerId) {
  const int lIndex = mTimers.nextQueued(nullptr, nTimerId - 1);
  if (lIndex < 0 || mTimers.expiry(lIndex).mId != nTimerId) return false;
  mQueue.removeIf([lIndex](int nEntry) { return nEntry == ~lIndex; });
  mTimers.take(lIndex, Clock::nowMs());
  return true;
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
