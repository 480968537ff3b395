/// @file
/// A component that works in messages on a shared thread.
#pragma once

#include "NfwComponent.h"
#include "NfwExport.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

/// A component that is bound to a shared thread once and then posts, sends and times messages to itself. Its class
/// implements receiveMsg() beside the phases.
///
/// @code
/// lMap.initializeThread(&lThread);   // before other threads use the operations below: binding takes no lock
/// lMap.postMsg(MY_MSG_ID);           // -> lMap.receiveMsg() on lThread
/// @endcode
///
/// The operations mean what the thread's operations of the same name mean; each returns 0 (false) while no thread is
/// bound. The thread must outlive the component, or its binding to another one. The destructor of this class drops what
/// is still queued there, but by then the class that implements receiveMsg() is gone: a component that may be deleted
/// on another thread while messages are under way calls getThread()->abortMsg(this) first in its own destructor, which
/// drops what is queued and waits for a handler under way.
class NFW_API SharedThreadComponent : public Component, public utl::ThreadMsgListener {
 public:
  explicit SharedThreadComponent(const char* npName);
  ~SharedThreadComponent() override;

  /// Binds the thread; a later call replaces it. Messages and timers that are still on the thread before are dropped,
  /// and unless it is that thread which calls, a handler under way there is waited for. Timer ids of that thread are
  /// void.
  /// @return false for a null thread, and for one that does not run
  bool initializeThread(utl::MsgDrivenSharedThread* npThread);
  utl::MsgDrivenSharedThread* getThread() const;

  bool postMsg(const utl::Msg& nMsg);
  bool postMsg(int nMsgId);
  bool sendMsgSync(const utl::Msg& nMsg);
  bool sendMsgSync(int nMsgId);
  bool sendMsgInterrupt(const utl::Msg& nMsg);
  bool sendMsgInterrupt(int nMsgId);
  int setTimer(unsigned int nTimeMs, int nCount, unsigned int nParam, int nKind);  ///< the timer's id, -1 on failure
  bool killTimer(int nTimerId, int nFlag);

 private:
  utl::MsgDrivenSharedThread* mpThread = nullptr;  // not owned
};

}  // namespace nfw
