// From a message's id to its handler.
#pragma once

#include <cstddef>

#include "NfwAppLog.h"
#include "utl/Msg.h"

namespace nfw {

/// Reads the id; when there is none, says so for the operation ("receiveMsg") of the class.
inline bool readMsgId(const utl::ThreadRawMsg& nMsg, const char* npClass, const char* npOperation, int* npMsgId) {
  if (nMsg.getMsgId(npMsgId)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::%s(): Can't get MsgId", npClass, npOperation);
  return false;
}

inline void logUnknownMsg(const char* npClass, const char* npOperation, int nMsgId) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::%s(): UnknownMsg: MsgId=%d", npClass, npOperation, nMsgId);
}

/// One row of a listener's table of messages.
template <class Owner>
struct MsgRoute {
  int mMsgId;
  void (Owner::*mpHandle)(utl::ThreadRawMsg& nMsg);
};

/// Hands the message to the handler of its id; an unreadable or unknown id is logged and the message dropped.
template <class Owner, size_t N>
void routeMsg(Owner& nOwner, const MsgRoute<Owner> (&nRoutes)[N], utl::ThreadRawMsg& nMsg, const char* npClass,
              const char* npOperation = "receiveMsg") {
  int lMsgId = 0;
  if (!readMsgId(nMsg, npClass, npOperation, &lMsgId)) return;
  for (const MsgRoute<Owner>& lRoute : nRoutes) {
    if (lRoute.mMsgId == lMsgId) return (nOwner.*lRoute.mpHandle)(nMsg);
  }
  logUnknownMsg(npClass, npOperation, lMsgId);
}

}  // namespace nfw
