#include "NfwParsedRmcDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<RmcSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedRmcDataDispatcher::ParsedRmcDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedRmcDataDispatcher", nListenerCapacity, npThread) {}

bool ParsedRmcDataDispatcher::attachListener(ParsedRmcDataListener* npListener) {
  return attach(npListener, Here::now());
}
bool ParsedRmcDataDispatcher::detachListener(ParsedRmcDataListener* npListener) {
  return detach(npListener, Here::now());
}
void ParsedRmcDataDispatcher::dispatch(const RmcSentence& nRecord) { queue(nRecord, Here::now()); }
void ParsedRmcDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) { receive(nMsg, Here::now()); }

}  // namespace nfw
