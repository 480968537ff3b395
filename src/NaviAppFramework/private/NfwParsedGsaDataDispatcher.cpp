#include "NfwParsedGsaDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<GsaSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedGsaDataDispatcher::ParsedGsaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedGsaDataDispatcher", nListenerCapacity, npThread) {}

bool ParsedGsaDataDispatcher::attachListener(ParsedGsaDataListener* npListener) {
  return attach(npListener, Here::now());
}
bool ParsedGsaDataDispatcher::detachListener(ParsedGsaDataListener* npListener) {
  return detach(npListener, Here::now());
}
void ParsedGsaDataDispatcher::dispatch(const GsaSentence& nRecord) { queue(nRecord, Here::now()); }
void ParsedGsaDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) { receive(nMsg, Here::now()); }

}  // namespace nfw
