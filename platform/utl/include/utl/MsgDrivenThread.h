/// @file
/// A thread that handles messages.
#pragma once

#include <memory>

#include "utl/Msg.h"
#include "utl/Thread.h"

namespace utl {

class MsgLoop;

/// A thread that hands queued messages to one listener, one at a time, in the order of their posting.
///
/// @code
/// utl::MsgDrivenThread lThread(64, 32, "App_Tiles_Thread", 0);  // messages of up to 64 bytes, 32 of them
/// if (lThread.start(&lTiles, 1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0) != 0) return false;
/// lThread.postMsg(LoadTileMsg(17));                             // -> lTiles.receiveMsg() on lThread
/// lThread.stop(1, 30000);                                       // handles what is queued first
/// @endcode
///
/// The queue has the length that was given and never grows: a post that finds it full fails. It is made for the most
/// messages that may wait while one is handled. Once running nothing is allocated, but for the first use of places for
/// messages above 1 KiB.
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
  /// @param npListener not owned: it outlives the running thread
  /// @param npWatchdog null, as the library gives it; `nA` 1, `nB` 1, `nC` 0 and `nD` 0 likewise
  /// @param nPriority 3 as the library's services; the host decides whether priorities are applied
  int start(ThreadMsgListener* npListener, int nA, unsigned int nTimeoutMs, WatchdogTimerListener* npWatchdog, int nB,
            unsigned int nC, const ThreadPriority& nPriority, unsigned int nD);

  /// Refuses new messages, lets those queued be handled, drops the timers and ends the thread.
  /// @param nWait 1: waits for the end
  /// @return 0 done; -1 not running or called from the thread itself; -2 not ended within `nTimeoutMs`: it ends later
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

  /// Arms a timer that delivers a TimerMsg when the tick of TimeCounter has gone on by `nTimeMs`: by the clock, nTimeMs
  /// - 1 to nTimeMs milliseconds from now and never sooner. `nCount` times, or until killed when that is 0. The id (1
  /// and up, unique in the process while alive), or -1 when the thread does not run or `nCount` is negative. `nKind` is
  /// 0. A timer whose message still waits adds none.
  int setTimer(unsigned int nTimeMs, int nCount, unsigned int nParam, int nKind = 0);

  /// Cancels a timer and removes its message from the queue. True when there was one. `nFlag` is 1.
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
