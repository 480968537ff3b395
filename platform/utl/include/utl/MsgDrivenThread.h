#pragma once

#include <memory>

#include "utl/Msg.h"
#include "utl/Thread.h"

namespace utl {

class MsgLoop;

/// A thread that hands queued messages to one listener, one at a time, in the order of their posting.
///
/// Every operation may be called from any thread, also from the thread itself; operations on a thread that does not run
/// fail at once. A message that is being handled is no longer queued. The object may be destroyed when the thread is
/// stopped; destroying a running one stops it, without waiting for ever for a stuck handler.
class MsgDrivenThread : public Thread {
 public:
  /// Chooses queued messages. Judged on the calling thread; it may restore the message and must not call the thread.
  class MsgJudgementInterface {
   public:
    virtual ~MsgJudgementInterface() = default;
    virtual bool judge(ThreadRawMsg& nMsg) = 0;
  };
  class MsgJudgement : public MsgJudgementInterface {};

  /// `nMaxMsgDataSize`: bytes of the largest message by the 32-bit count of its fields. `nMaxMsgNum`: queue length.
  /// `npName` is copied. `nTimerNum`: timers to reserve, not a limit. Queue and timers are allocated here.
  MsgDrivenThread(unsigned int nMaxMsgDataSize, unsigned int nMaxMsgNum, const char* npName, unsigned int nTimerNum);
  ~MsgDrivenThread() override;
  MsgDrivenThread(const MsgDrivenThread&) = delete;
  MsgDrivenThread& operator=(const MsgDrivenThread&) = delete;

  /// Starts the thread and waits for its loop, at most `nTimeoutMs`. 0 on success; non-zero when it runs already, there
  /// is no listener, or the thread cannot be had in time. A stopped thread may be started again.
  /// No listener is called before this returns.
  int start(ThreadMsgListener* npListener, int nA, unsigned int nTimeoutMs, WatchdogTimerListener* npWatchdog, int nB,
            unsigned int nC, const ThreadPriority& nPriority, unsigned int nD);

  /// Refuses new messages, lets those queued be handled, drops the timers and ends the thread.
  /// 0 done; -1 not running or called from the thread itself; -2 not ended within `nTimeoutMs`: it ends later.
  int stop(int nWait, unsigned int nTimeoutMs);

  /// Queues the message and returns at once. False: not running, stopping, queue full, message too large.
  bool postMsg(const Msg& nMsg);
  bool postMsg(int nMsgId);

  /// Queues the message and waits until it was handled: true. False at once when called from the thread itself or when
  /// it cannot be queued; false when the message is erased or the thread ends before it was handled.
  bool sendMsgSync(const Msg& nMsg);
  bool sendMsgSync(int nMsgId);

  /// As sendMsgSync, ahead of every ordinary message and behind earlier interrupts.
  bool sendMsgInterrupt(const Msg& nMsg);
  bool sendMsgInterrupt(int nMsgId);

  /// Arms a timer that delivers a TimerMsg after `nTimeMs` on the millisecond grid of TimeCounter, `nCount` times, or
  /// until killed when that is 0. Never early. The id (1 and up, unique in the process while alive), or -1.
  int setTimer(unsigned int nTimeMs, int nCount, unsigned int nParam, int nKind = 0);

  /// Cancels a timer and removes its message from the queue. True when there was one.
  bool killTimer(int nTimerId, int nFlag);

  /// These see the messages of expired timers too. Erased, an expiry is lost; the timer's later ones come.
  bool hasMsg(int nMsgId) const;
  unsigned int eraseMsg(int nMsgId);  ///< the number of messages removed; their senders are released with false
  unsigned int eraseMsgInternal(MsgJudgementInterface* npJudgement);  ///< erases those judged true
  int getFirstMsgId() const;                                          ///< 0 when the queue is empty

  bool isRunning() const override;
  int getId() const override;
  const char* getName() const override;

 private:
  std::shared_ptr<MsgLoop> mpLoop;  // shared with the running thread, which may outlive this object
};

}  // namespace utl
