// How callers reach the thread of a recording service.
#pragma once

#include "Watched.h"
#include "ZTSync.h"
#include "utl/MsgDrivenThread.h"

namespace nfw {

/// Lists are changed on the service's thread only. A caller there runs the change itself; a caller inside a replay's
/// listener, for which the service may be waiting, must not wait in its turn; every other caller waits until it is
/// done.
class ServiceRequests {
 public:
  /// `npClass` without its namespace, for the log lines; `nHere` is in its file.
  ServiceRequests(const char* npClass, utl::MsgDrivenThread& nThread, const Here& nHere)
      : mpClass(npClass), mHere(nHere), mThread(nThread) {}

  bool isOwnThread() const;
  static bool isInListener();

  /// Waits for the handler, which writes `nResult`; one attach of a kind at a time. False inside a listener.
  bool attach(ZTSync& nSync, const utl::Msg& nMsg, bool& nResult, const char* npOperation) NFW_EXCLUDES(nSync);
  /// Waits for the handler; inside a listener it only posts.
  bool detach(const utl::Msg& nMsg, const char* npOperation);

 private:
  bool logged(bool nIsSent, const char* npOperation) const;

  const char* const mpClass;
  const Here mHere;
  utl::MsgDrivenThread& mThread;
};

}  // namespace nfw
