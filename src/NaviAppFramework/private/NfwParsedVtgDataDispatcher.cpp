#include "NfwParsedVtgDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<VtgSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedVtgDataDispatcher::ParsedVtgDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedVtgDataDispatcher", nListenerCapacity, npThread) {}

bool ParsedVtgDataDispatcher::attachListener(ParsedVtgDataListener* npListener) {
  return attach(npListener, Here::now());
}
bool ParsedVtgDataDispatcher::detachListener(ParsedVtgDataListener* npListener) {
  return detach(npListener, Here::now());
}
void ParsedVtgDataDispatcher::dispatch(const VtgSentence& nRecord) { queue(nRecord, Here::now()); }
void ParsedVtgDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) { receive(nMsg, Here::now()); }

}  // namespace nfw
