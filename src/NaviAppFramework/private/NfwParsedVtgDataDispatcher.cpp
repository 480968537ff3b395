#include "NfwParsedVtgDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<VtgSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedVtgDataDispatcher::ParsedVtgDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedVtgDataDispatcher", nListenerCapacity, npThread, Here::now()) {}

}  // namespace nfw
