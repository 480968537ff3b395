#include "NfwParsedPubxDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<PubxSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedPubxDataDispatcher::ParsedPubxDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedPubxDataDispatcher", nListenerCapacity, npThread, Here::now()) {}

}  // namespace nfw
