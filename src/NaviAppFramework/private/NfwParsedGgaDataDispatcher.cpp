#include "NfwParsedGgaDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<GgaSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedGgaDataDispatcher::ParsedGgaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedGgaDataDispatcher", nListenerCapacity, npThread, Here::now()) {}

}  // namespace nfw
