#include "ServiceRequests.h"

#include "NfwAppLog.h"
#include "TimedReplay.h"

namespace nfw {

bool ServiceRequests::isOwnThread() const { return mThread.getId() == utl::Thread::getCurrentId(); }

bool ServiceRequests::isInListener() { return TimedReplay::delivering() != nullptr; }

bool ServiceRequests::attach(ZTSync& nSync, const utl::Msg& nMsg, bool& nResult, const char* npOperation) {
  if (isInListener()) return false;
  const WatchedLock lLock(nSync, mHere.in(npOperation));
  nResult = false;
  return logged(watched([&] { return mThread.sendMsgInterrupt(nMsg); }, mHere.in(npOperation)), npOperation) && nResult;
}

bool ServiceRequests::detach(const utl::Msg& nMsg, const char* npOperation) {
  return logged(watched([&] { return isInListener() ? mThread.postMsg(nMsg) : mThread.sendMsgInterrupt(nMsg); },
                        mHere.in(npOperation)),
                npOperation);
}

bool ServiceRequests::logged(bool nIsSent, const char* npOperation) const {
  if (!nIsSent) APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::%s(): Can't send thread", mpClass, npOperation);
  return nIsSent;
}

}  // namespace nfw
