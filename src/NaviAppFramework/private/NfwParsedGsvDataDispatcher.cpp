#include "NfwParsedGsvDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<GsvSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedGsvDataDispatcher::ParsedGsvDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedGsvDataDispatcher", nListenerCapacity, npThread) {}

bool ParsedGsvDataDispatcher::attachListener(ParsedGsvDataListener* npListener) {
  return attach(npListener, Here::now());
}
bool ParsedGsvDataDispatcher::detachListener(ParsedGsvDataListener* npListener) {
  return detach(npListener, Here::now());
}
void ParsedGsvDataDispatcher::dispatch(const GsvSentence& nRecord) { queue(nRecord, Here::now()); }
void ParsedGsvDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) { receive(nMsg, Here::now()); }

}  // namespace nfw
