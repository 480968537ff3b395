#pragma once

#include "utl/MsgDrivenThread.h"

namespace utl {

/// A MsgDrivenThread that several listeners share: each message and timer is delivered to the listener given with it.
/// A listener must outlive what is queued for it: its owner calls abortMsg before it goes.
class MsgDrivenSharedThread : public Thread {
 public:
  /// `nReserved` has no meaning here.
  MsgDrivenSharedThread(unsigned int nMaxMsgDataSize, unsigned int nMaxMsgNum, unsigned int nReserved,
                        const char* npName, unsigned int nTimerNum);
  ~MsgDrivenSharedThread() override;
  MsgDrivenSharedThread(const MsgDrivenSharedThread&) = delete;
  MsgDrivenSharedThread& operator=(const MsgDrivenSharedThread&) = delete;

  int start(int nA, unsigned int nTimeoutMs, WatchdogTimerListener* npWatchdog, int nB, unsigned int nC,
            const ThreadPriority& nPriority, unsigned int nD);
  int stop(int nWait, unsigned int nTimeoutMs);

  bool postMsg(ThreadMsgListener* npListener, const Msg& nMsg);
  bool postMsg(ThreadMsgListener* npListener, int nMsgId);
  bool sendMsgSync(ThreadMsgListener* npListener, const Msg& nMsg);
  bool sendMsgSync(ThreadMsgListener* npListener, int nMsgId);
  bool sendMsgInterrupt(ThreadMsgListener* npListener, const Msg& nMsg);
  bool sendMsgInterrupt(ThreadMsgListener* npListener, int nMsgId);

  int setTimer(ThreadMsgListener* npListener, unsigned int nTimeMs, int nCount, unsigned int nParam, int nKind = 0);
  bool killTimer(int nTimerId, int nFlag);

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
