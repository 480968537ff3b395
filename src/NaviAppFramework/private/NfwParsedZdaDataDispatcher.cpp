#include "NfwParsedZdaDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<ZdaSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedZdaDataDispatcher::ParsedZdaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedZdaDataDispatcher", nListenerCapacity, npThread, Here::now()) {}

}  // namespace nfw
