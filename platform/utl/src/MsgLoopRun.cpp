// The thread of a MsgLoop: how it begins, hands messages to their listeners, and ends.
#include "ExpiredTimer.h"
#include "KernelName.h"
#include "MsgLoop.h"
#include "RawMsg.h"
#include "Scheduling.h"
#include "SeamState.h"
#include "ThreadId.h"

namespace utl {

namespace {

const size_t STACK_SIZE = 512 * 1024;  // handlers pass records of 10 KB by value, several calls deep
const unsigned int LEAVE_TIMEOUT_MS = 30000;

}  // namespace

/// What a new thread gets to know.
struct MsgLoop::Ticket {
  std::shared_ptr<MsgLoop> mpLoop;
  unsigned int mRun;
  int mThreadId;
  int mPriority;
};

int MsgLoop::start(ThreadMsgListener* npListener, unsigned int nTimeoutMs, int nPriority) {
  if (seams::fails(seams::THREAD_START) || !mSlots.isWhole()) return 1;
  const int64_t lDeadline = Clock::realNs() + nTimeoutMs * Clock::NS_PER_MS;
  const int lThreadId = ThreadId::next();
  MutexLock lLock(mMutex);
  if (mState != STOPPED || !startThreadLocked(lThreadId, nPriority)) return 1;
  mState = STARTING;
  while (mState == STARTING && mChanged.wait(mMutex, lDeadline)) {
  }
  const bool lIsReady = mState == READY;
  if (lIsReady) {
    mThreadId = lThreadId;
    mpListener = npListener;
  } else {
    mIsJoinable = false;
    pthread_detach(mThread);
  }
  mState = lIsReady ? RUNNING : STOPPED;
  return lIsReady ? 0 : 1;
}

bool MsgLoop::startThreadLocked(int nThreadId, int nPriority) {
  if (mIsJoinable) pthread_join(mThread, nullptr);  // of the run before: it has nothing left to do
  std::unique_ptr<Ticket> lpTicket(new Ticket{shared_from_this(), ++mRun, nThreadId, nPriority});
  pthread_attr_t lAttr;
  pthread_attr_init(&lAttr);
  pthread_attr_setstacksize(&lAttr, STACK_SIZE);
  mIsJoinable = pthread_create(&mThread, &lAttr, &MsgLoop::enter, lpTicket.get()) == 0;
  pthread_attr_destroy(&lAttr);
  if (mIsJoinable) static_cast<void>(lpTicket.release());  // the thread has it now
  return mIsJoinable;
}

void* MsgLoop::enter(void* npTicket) {
  const std::unique_ptr<Ticket> lpTicket(static_cast<Ticket*>(npTicket));
  ThreadId::setCurrent(lpTicket->mThreadId);
  introduceToKernel(KernelName(lpTicket->mpLoop->name()).get(), lpTicket->mPriority);
  lpTicket->mpLoop->run(lpTicket->mRun);
  return nullptr;
}

void MsgLoop::run(unsigned int nRun) {
  mMutex.lock();
  if (mState == STARTING && mRun == nRun) {
    mState = READY;
    mChanged.broadcast();
    Delivery lDelivery;
    while (nextLocked(&lDelivery)) {
      mMutex.unlock();
      deliver(lDelivery);
      mMutex.lock();
      finishedLocked(lDelivery);
    }
    mState = STOPPED;
    mChanged.broadcast();
  }
  mMutex.unlock();
}

/// Waits for the next message. False when the thread is to end.
bool MsgLoop::nextLocked(Delivery* npDelivery) {
  for (;;) {
    queueExpiredLocked();
    if (mJudgingThread == 0) {
      if (takeLocked(npDelivery)) return true;
      if (mState == STOPPING) return false;
    }
    mFree.pushAll(&mFreed);
    const int64_t lDueMs = mTimers.earliestMs();
    mIsWaiting = true;
    mWork.waitForClock(mMutex, lDueMs == Clock::NEVER ? Clock::NEVER : lDueMs * Clock::NS_PER_MS);
    mIsWaiting = false;
  }
}

bool MsgLoop::takeLocked(Delivery* npDelivery) {
  if (mInterrupts.empty() && mQueue.empty()) return false;
  const int lEntry = (mInterrupts.empty() ? mQueue : mInterrupts).pop();
  if (mQueue.size() > 1) mSlots.prefetch(mQueue.at(1));
  if (lEntry < 0) {
    const TimerTable::Expiry lExpiry = mTimers.take(~lEntry, Clock::nowMs());
    *npDelivery = {-1, lExpiry, lExpiry.mpListener};
  } else {
    --mMsgNum;
    *npDelivery = {lEntry, {}, mSlots[lEntry].mpListener};
  }
  if (npDelivery->mpListener == nullptr) npDelivery->mpListener = mpListener;
  mpHandling = npDelivery->mpListener;
  return true;
}

void MsgLoop::deliver(const Delivery& nDelivery) {
  if (nDelivery.mSlot < 0) {
    const ExpiredTimer lTimer(nDelivery.mExpiry);
    RawMsg lMsg = lTimer.msg();
    nDelivery.mpListener->receiveMsg(id(), lMsg);
  } else {
    const MsgSlot& lSlot = mSlots[nDelivery.mSlot];
    RawMsg lMsg(lSlot.mMsgId, lSlot.mpData, lSlot.mSize);
    nDelivery.mpListener->receiveMsg(id(), lMsg);
    if (lSlot.mpWait != nullptr) lSlot.mpWait->finish(SyncWait::HANDLED);
  }
}

void MsgLoop::finishedLocked(const Delivery& nDelivery) {
  if (nDelivery.mSlot >= 0) mFreed.push(nDelivery.mSlot);
  if (mFreed.size() == FREED) mFree.pushAll(&mFreed);
  mpHandling = nullptr;
  mChanged.broadcast();
}

int MsgLoop::stop(bool nWait, unsigned int nTimeoutMs) {
  if (isOwnThread()) return -1;
  if (seams::fails(seams::THREAD_STOP)) nTimeoutMs = 0;
  bool lHasEnded = false, lIsMine = false;
  pthread_t lThread = {};
  {
    MutexLock lLock(mMutex);
    if (mState != RUNNING && mState != STOPPING) return -1;
    const unsigned int lRun = mRun;
    stopLocked();
    lHasEnded = nWait && awaitEndLocked(lRun, nTimeoutMs);
    lIsMine = mIsJoinable && mRun == lRun;
    if (lIsMine) mIsJoinable = false;
    lThread = mThread;
  }
  if (lIsMine) lHasEnded ? pthread_join(lThread, nullptr) : pthread_detach(lThread);
  return lHasEnded || !nWait ? 0 : -2;
}

/// What is queued is still handled; nothing new comes in.
void MsgLoop::stopLocked() {
  if (mState == RUNNING) mState = STOPPING;
  mTimers.clear();
  sweepTimersLocked();
  Condition::sendSignal(wakeLocked());
}

bool MsgLoop::awaitEndLocked(unsigned int nRun, unsigned int nTimeoutMs) {
  const int64_t lDeadline = Clock::realNs() + nTimeoutMs * Clock::NS_PER_MS;
  while (mState == STOPPING && mRun == nRun) {
    if (!mChanged.wait(mMutex, lDeadline)) return mState != STOPPING || mRun != nRun;
  }
  return true;
}

void MsgLoop::leave() {
  const bool lMayWait = !isOwnThread() && !isStopping();  // who has waited in vain before does not wait again
  if (lMayWait && stop(true, LEAVE_TIMEOUT_MS) != -2) return;
  MutexLock lLock(mMutex);
  stopLocked();
  discardLocked();
  if (mIsJoinable) pthread_detach(mThread);
  mIsJoinable = false;
}

bool MsgLoop::isStopping() const {
  MutexLock lLock(mMutex);
  return mState == STOPPING;
}

bool MsgLoop::isRunning() const {
  MutexLock lLock(mMutex);
  return mState == RUNNING || mState == STOPPING;
}

bool MsgLoop::isOwnThread() const { return ThreadId::current() == id(); }

}  // namespace utl
