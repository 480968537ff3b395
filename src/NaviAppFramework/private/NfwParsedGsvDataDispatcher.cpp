#include "NfwParsedGsvDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<GsvSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedGsvDataDispatcher::ParsedGsvDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedGsvDataDispatcher", nListenerCapacity, npThread, Here::now()) {}

}  // namespace nfw
