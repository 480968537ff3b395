#include "NfwParsedGllDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<GllSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedGllDataDispatcher::ParsedGllDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedGllDataDispatcher", nListenerCapacity, npThread, Here::now()) {}

}  // namespace nfw
