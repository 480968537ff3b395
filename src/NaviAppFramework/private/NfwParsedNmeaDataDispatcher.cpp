#include "NfwParsedNmeaDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<NmeaSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedNmeaDataDispatcher::ParsedNmeaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedNmeaDataDispatcher", nListenerCapacity, npThread, Here::now()) {}

}  // namespace nfw
