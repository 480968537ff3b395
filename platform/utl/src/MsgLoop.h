// The engine of both kinds of message-driven threads.
#pragma once

#include <pthread.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "Clock.h"
#include "IndexRing.h"
#include "MsgSlots.h"
#include "SyncWait.h"
#include "TimerTable.h"
#include "utl/MsgDrivenThread.h"

namespace utl {

/// A bounded queue of messages, timers, and the thread that hands both to their listeners.
///
/// Everything the queue needs is taken in the constructor, but for slots above 1 KiB, which are taken on first use and
/// kept. A message is written before the lock is taken, a small one into a buffer on the sender's stack, a large one
/// into a slot set aside for it; under the lock only its index is queued. The listener reads it in its slot. Neither a
/// message's fields, a listener nor a judgement is ever called with the lock held.
///
/// Owned by the thread object and by the running thread together: whichever ends last takes it away.
class MsgLoop : public std::enable_shared_from_this<MsgLoop> {
 public:
  MsgLoop(unsigned int nMaxMsgDataSize, unsigned int nMaxMsgNum, const char* npName, unsigned int nTimerNum);
  static constexpr unsigned int FREED = 8;  // slots that the thread keeps before it gives them back

  MsgLoop(const MsgLoop&) = delete;
  MsgLoop& operator=(const MsgLoop&) = delete;

  /// `npListener` is called for what is queued without a listener.
  int start(ThreadMsgListener* npListener, unsigned int nTimeoutMs, int nPriority);
  int stop(bool nWait, unsigned int nTimeoutMs);
  void leave();  ///< the thread object goes: stops, and when that takes too long calls no listener any more

  bool post(ThreadMsgListener* npListener, const Msg& nMsg) { return queue(npListener, nMsg, nullptr, false); }
  bool send(ThreadMsgListener* npListener, const Msg& nMsg, bool nIsInterrupt);

  int setTimer(ThreadMsgListener* npListener, unsigned int nTimeMs, int nCount, unsigned int nParam);
  bool killTimer(int nTimerId);

  /// A null listener means all messages. A timer that has expired is a message like any other: erased, that expiry is
  /// lost.
  bool hasMsg(const ThreadMsgListener* npListener, int nMsgId);
  unsigned int eraseMsg(const ThreadMsgListener* npListener, int nMsgId);
  unsigned int eraseJudged(const ThreadMsgListener* npListener, MsgDrivenThread::MsgJudgementInterface* npJudgement);
  int firstMsgId();
  void abort(ThreadMsgListener* npListener);

  bool isRunning() const;
  int id() const { return mThreadId.load(std::memory_order_relaxed); }
  const char* name() const { return mName.c_str(); }

 private:
  class SlotWriter;
  struct Ticket;
  enum State { STOPPED, STARTING, READY, RUNNING, STOPPING };

  /// What the thread has taken out of the queue.
  struct Delivery {
    int mSlot = -1;  // -1: a timer's
    TimerTable::Expiry mExpiry = {};
    ThreadMsgListener* mpListener = nullptr;
  };

  static void* enter(void* npTicket);
  void run(unsigned int nRun);
  void deliver(const Delivery& nDelivery);

  bool queue(ThreadMsgListener* npListener, const Msg& nMsg, SyncWait* npWait, bool nIsInterrupt);
  int reserveSlot(bool nIsSync);
  void giveBack(int nSlot);
  bool isOwnThread() const;
  bool isStopping() const;

#define REQUIRES_LOCK ZTS_ANNOTATION(requires_capability(mMutex))
#define GUARDED ZTS_ANNOTATION(guarded_by(mMutex))
  bool startThreadLocked(int nThreadId, int nPriority) REQUIRES_LOCK;
  bool awaitEndLocked(unsigned int nRun, unsigned int nTimeoutMs) REQUIRES_LOCK;
  void stopLocked() REQUIRES_LOCK;
  void discardLocked() REQUIRES_LOCK;

  int takeSlotLocked(bool nIsSync) REQUIRES_LOCK;
  void setSlotAsideLocked() REQUIRES_LOCK;
  void queueExpiredLocked() REQUIRES_LOCK;
  bool nextLocked(Delivery* npDelivery) REQUIRES_LOCK;
  bool takeLocked(Delivery* npDelivery) REQUIRES_LOCK;
  void finishedLocked(const Delivery& nDelivery) REQUIRES_LOCK;
  /// Wakes the thread if it waits, with Condition::sendSignal() after unlocking.
  std::atomic<int>* wakeLocked() REQUIRES_LOCK {
    const bool lIsFirst = mIsWaiting;
    mIsWaiting = false;
    return lIsFirst ? mWork.prepareSignal() : nullptr;
  }
  void sweepTimersLocked() REQUIRES_LOCK;
  bool awaitJudgementLocked() const REQUIRES_LOCK;
  MsgSlot entryLocked(int nEntry) const REQUIRES_LOCK;
  template <class Found>
  bool findLocked(Found nFound) const REQUIRES_LOCK;
  template <class Chosen>
  unsigned int dropLocked(Chosen nChosen) REQUIRES_LOCK;
  void judgeMsgs(MsgDrivenThread::MsgJudgementInterface* npJudgement);
  unsigned int dropJudgedTimers(const ThreadMsgListener* npListener,
                                MsgDrivenThread::MsgJudgementInterface* npJudgement);
  bool dropExpiryLocked(int nTimerId) REQUIRES_LOCK;

  const std::string mName;
  const unsigned int mMaxMsgNum;
  std::atomic<int> mThreadId{0};
  std::atomic<int> mSpareSlot{-1};  // counted in mMsgNum, for the next large message: it needs the lock only once
  MsgSlots mSlots;                  // a slot belongs to who took it

  // What every message changes, in as few cache lines as it takes: sender and receiver pass them to and fro.
  alignas(64) mutable Mutex mMutex;
  State mState GUARDED = STOPPED;
  unsigned int mMsgNum GUARDED = 0;  // slots in the queues or set aside for them
  SlotStack mFree GUARDED{mSlots.num()};
  bool mIsWaiting GUARDED = false;                  // the thread waits, and nobody has signalled it yet
  ThreadMsgListener* mpHandling GUARDED = nullptr;  // its handler runs
  IndexRing mQueue GUARDED;                         // slots, and timers as their complement

  SlotStack mFreed GUARDED{FREED};  // what the thread has handled: given back in one go, for that costs a cache line

  alignas(64) IndexRing mInterrupts GUARDED;  // slots
  TimerTable mTimers GUARDED;
  ThreadMsgListener* mpListener GUARDED = nullptr;
  ClockCondition mWork{mMutex};    // the thread waits here for messages and timers
  mutable Condition mChanged;      // everybody else: state, end of a handler, end of a judgement
  int mJudgingThread GUARDED = 0;  // while it judges, nothing is taken out
  std::vector<int> mJudged;        // that thread's own

  unsigned int mRun GUARDED = 0;  // counts the starts: a thread that came too late finds that it is not meant
  bool mIsJoinable GUARDED = false;
  pthread_t mThread GUARDED = {};
#undef REQUIRES_LOCK
#undef GUARDED
};

}  // namespace utl
