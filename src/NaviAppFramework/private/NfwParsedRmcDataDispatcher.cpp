#include "NfwParsedRmcDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<RmcSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedRmcDataDispatcher::ParsedRmcDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedRmcDataDispatcher", nListenerCapacity, npThread, Here::now()) {}

}  // namespace nfw
