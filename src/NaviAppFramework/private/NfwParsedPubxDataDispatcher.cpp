#include "NfwParsedPubxDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<PubxSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedPubxDataDispatcher::ParsedPubxDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedPubxDataDispatcher", nListenerCapacity, npThread) {}

bool ParsedPubxDataDispatcher::attachListener(ParsedPubxDataListener* npListener) {
  return attach(npListener, Here::now());
}
bool ParsedPubxDataDispatcher::detachListener(ParsedPubxDataListener* npListener) {
  return detach(npListener, Here::now());
}
void ParsedPubxDataDispatcher::dispatch(const PubxSentence& nRecord) { queue(nRecord, Here::now()); }
void ParsedPubxDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) { receive(nMsg, Here::now()); }

}  // namespace nfw
