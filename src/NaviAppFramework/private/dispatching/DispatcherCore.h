// What every dispatcher of positioning data does alike: attach, detach and post on a shared thread.
#pragma once

#include "ListenerTable.h"
#include "NfwThreadSafety.h"
#include "Watched.h"
#include "ZTSync.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

/// The messages of every dispatcher, each on its own listener object.
enum DispatcherMsg : int {
  DISPATCHER_ATTACH = static_cast<int>(0x80000C02u),
  DISPATCHER_DETACH = static_cast<int>(0x80000C03u),
  DISPATCHER_DISPATCH = static_cast<int>(0x80000C04u),
};

/// Listeners are attached and called on the shared thread only, from the last attached to the first. Any thread may
/// attach, detach and post; attach and detach return when they are done. The thread is not owned and is stopped before
/// this object goes.
class DispatcherCore : public utl::ThreadMsgListener {
 public:
  /// From any thread: listeners are not called any more. For a thread that has outlasted its service.
  void mute() { mListeners.mute(); }

 protected:
  /// `npName` is the class with its namespace, a literal: the lock and the log lines carry it.
  DispatcherCore(const char* npName, unsigned int nCapacity, utl::MsgDrivenSharedThread* npThread);

  /// What the class's operations do; `nHere` stands in the operation that was called, whose name the log lines carry.
  bool attach(void* npListener, const Here& nHere) NFW_EXCLUDES(mSync);
  bool detach(void* npListener, const Here& nHere) NFW_EXCLUDES(mSync);
  void post(const utl::Msg& nMsg, const Here& nHere);
  void receive(utl::ThreadRawMsg& nMsg, const Here& nHere);

  /// Restores the dispatch message and hands it to the listeners.
  virtual void onDispatch(utl::ThreadRawMsg& nMsg) = 0;

  ListenerTable mListeners;  // on the shared thread only

 private:
  bool request(int nMsgId, void* npListener, const Here& nHere) NFW_EXCLUDES(mSync);
  bool isOwnThread() const;
  void onAttachListener(utl::ThreadRawMsg& nMsg);
  void onDetachListener(utl::ThreadRawMsg& nMsg);

  const char* const mpName;
  bool mResult = false;  // of the request under way: written by its handler while the requester waits, under mSync
  ZTSync mSync;          // one request at a time
  utl::MsgDrivenSharedThread* const mpThread;
};

}  // namespace nfw
