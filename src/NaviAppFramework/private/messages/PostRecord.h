// How every source of the positioning services queues what came in.
#pragma once

#include "NfwAppLog.h"
#include "Watched.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

/// Queues a record for its source on the shared thread; a failure names the operation ("nfw::Class::operation()").
inline void postRecord(utl::MsgDrivenSharedThread& nThread, utl::ThreadMsgListener* npSource, const utl::Msg& nMsg,
                       const char* npWhere, const Here& nHere = Here::now()) {
  if (watched([&] { return nThread.postMsg(npSource, nMsg); }, nHere)) return;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s: Can't post thread: MsgId=%d ", npWhere, nMsg.getMsgId());
}

}  // namespace nfw
