/// @file
/// A thread that handles the messages of several listeners.
#pragma once

#include "utl/MsgDrivenThread.h"

namespace utl {

/// A MsgDrivenThread that several listeners share: each message and timer is delivered to the listener given with it.
/// An application has one for its components: the ComponentManager runs the phases on it, and SharedThreadComponents
/// post and time messages to themselves and to one another.
///
/// @code
/// utl::MsgDrivenSharedThread lThread(nfw::ComponentManager::getMaxMsgDataSize(), 64, 0, "App_SharedThread", 0);
/// if (lThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0) != 0) return 1;  // within 10 s
/// lThread.postMsg(&lDisplay, SpeedMsg(50));                // -> lDisplay.receiveMsg() on lThread
/// const int lTimerId = lThread.setTimer(&lDisplay, 500, 0, 0);  // a utl::TimerMsg every 500 ms
/// ...
/// lThread.abortMsg(&lDisplay);                             // before lDisplay goes
/// lThread.stop(1, 30000);
/// @endcode
///
/// Its message size is that of the largest message of all who post to it, ComponentManager::getMaxMsgDataSize() among
/// them, and its queue is longer than the number of components. A handler holds up all listeners of the thread.
///
/// Threads: any thread may call, the thread itself included; a synchronous send from there fails at once. Operations
/// mean what those of MsgDrivenThread mean, and fail for a null listener. A listener must outlive what is queued for
/// it: its owner calls abortMsg before it goes. Listeners are not owned.
class MsgDrivenSharedThread : public Thread {
 public:
  /// As MsgDrivenThread; `nReserved` has no meaning here: 0.
  MsgDrivenSharedThread(unsigned int nMaxMsgDataSize, unsigned int nMaxMsgNum, unsigned int nReserved,
                        const char* npName, unsigned int nTimerNum);
  ~MsgDrivenSharedThread() override;
  MsgDrivenSharedThread(const MsgDrivenSharedThread&) = delete;
  MsgDrivenSharedThread& operator=(const MsgDrivenSharedThread&) = delete;

  /// As MsgDrivenThread::start: 1, the time-out, null, 1, 0, the priority, 0. 0 on success.
  int start(int nA, unsigned int nTimeoutMs, WatchdogTimerListener* npWatchdog, int nB, unsigned int nC,
            const ThreadPriority& nPriority, unsigned int nD);
  /// As MsgDrivenThread::stop: 0 done, -1 not running or own thread, -2 not ended in time.
  int stop(int nWait, unsigned int nTimeoutMs);

  /// Queues and returns. @return false: not running, stopping, queue full, message too large
  bool postMsg(ThreadMsgListener* npListener, const Msg& nMsg);
  bool postMsg(ThreadMsgListener* npListener, int nMsgId);
  /// Queues and waits until it was handled. @return false: as above, the thread itself calls, or it was erased
  bool sendMsgSync(ThreadMsgListener* npListener, const Msg& nMsg);
  bool sendMsgSync(ThreadMsgListener* npListener, int nMsgId);
  /// As sendMsgSync, ahead of every ordinary message.
  bool sendMsgInterrupt(ThreadMsgListener* npListener, const Msg& nMsg);
  bool sendMsgInterrupt(ThreadMsgListener* npListener, int nMsgId);

  /// Delivers a TimerMsg after `nTimeMs`, `nCount` times, until killed when that is 0. @return its id, -1 on failure
  int setTimer(ThreadMsgListener* npListener, unsigned int nTimeMs, int nCount, unsigned int nParam, int nKind = 0);
  bool killTimer(int nTimerId, int nFlag);

  /// Of the listener's queued messages those of this id, those of expired timers (TimerMsg::MSG_ID) included.
  bool hasMsg(ThreadMsgListener* npListener, int nMsgId) const;
  unsigned int eraseMsg(ThreadMsgListener* npListener, int nMsgId);
  unsigned int eraseMsgInternal(ThreadMsgListener* npListener, MsgDrivenThread::MsgJudgementInterface* npJudgement);
  int getFirstMsgId() const;

  /// Drops the listener's queued messages and timers. From another thread it also waits until a running handler of the
  /// listener has returned; from within such a handler it does not.
  void abortMsg(ThreadMsgListener* npListener);

  bool isRunning() const override;
  int getId() const override;
  const char* getName() const override;

 private:
  std::shared_ptr<MsgLoop> mpLoop;
};

}  // namespace utl
