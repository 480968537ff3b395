/// @file
/// Settings of the inter-process message service.
#pragma once

#include "NfwExport.h"
#include "NfwMsgLogInfo.h"
#include "ZTSync.h"

namespace nfw {

/// The limits and the table of message names that the service reads when it is created.
class NFW_API ProcessMsg {
 public:
  static void initializeMaxListenerNum(unsigned int nValue);
  static void initializeMaxHookListenerNum(unsigned int nValue);
  static void initializeMsgLogInfo(const MsgLogInfoMap& nMap);  ///< not copied: it must outlive the library's use

  static unsigned int mMaxListenerNum;
  static unsigned int mMaxHookListenerNum;
  static const MsgLogInfoMap* mpMsgLogInfoMap;
  static ZTSync& mInstantiationSyncObject;
  static ZTSync& mSequenceNoSyncObject;
};

}  // namespace nfw
