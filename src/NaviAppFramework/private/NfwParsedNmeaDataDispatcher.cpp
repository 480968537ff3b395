#include "NfwParsedNmeaDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<NmeaSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedNmeaDataDispatcher::ParsedNmeaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedNmeaDataDispatcher", nListenerCapacity, npThread) {}

bool ParsedNmeaDataDispatcher::attachListener(ParsedNmeaDataListener* npListener) {
  return attach(npListener, Here::now());
}
bool ParsedNmeaDataDispatcher::detachListener(ParsedNmeaDataListener* npListener) {
  return detach(npListener, Here::now());
}
void ParsedNmeaDataDispatcher::dispatch(const NmeaSentence& nRecord) { queue(nRecord, Here::now()); }
void ParsedNmeaDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) { receive(nMsg, Here::now()); }

}  // namespace nfw
