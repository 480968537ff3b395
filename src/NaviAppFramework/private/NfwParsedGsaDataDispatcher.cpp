#include "NfwParsedGsaDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<GsaSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedGsaDataDispatcher::ParsedGsaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedGsaDataDispatcher", nListenerCapacity, npThread, Here::now()) {}

}  // namespace nfw
