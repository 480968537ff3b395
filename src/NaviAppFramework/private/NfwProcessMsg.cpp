#include "NfwProcessMsg.h"

namespace nfw {

unsigned int ProcessMsg::mMaxListenerNum = 0;
unsigned int ProcessMsg::mMaxHookListenerNum = 0;
const MsgLogInfoMap* ProcessMsg::mpMsgLogInfoMap = nullptr;

// Never destroyed: a thread may still want them while the process ends.
ZTSync& ProcessMsg::mInstantiationSyncObject = *new ZTSync("nfw::ProcessMsg_Instantiation");
ZTSync& ProcessMsg::mSequenceNoSyncObject = *new ZTSync("nfw::ProcessMsg_SequenceNo");

void ProcessMsg::initializeMaxListenerNum(unsigned int nValue) { mMaxListenerNum = nValue; }
void ProcessMsg::initializeMaxHookListenerNum(unsigned int nValue) { mMaxHookListenerNum = nValue; }
void ProcessMsg::initializeMsgLogInfo(const MsgLogInfoMap& nMap) { mpMsgLogInfoMap = &nMap; }

}  // namespace nfw
