#include "NfwParsedGllDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<GllSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedGllDataDispatcher::ParsedGllDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedGllDataDispatcher", nListenerCapacity, npThread) {}

bool ParsedGllDataDispatcher::attachListener(ParsedGllDataListener* npListener) {
  return attach(npListener, Here::now());
}
bool ParsedGllDataDispatcher::detachListener(ParsedGllDataListener* npListener) {
  return detach(npListener, Here::now());
}
void ParsedGllDataDispatcher::dispatch(const GllSentence& nRecord) { queue(nRecord, Here::now()); }
void ParsedGllDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) { receive(nMsg, Here::now()); }

}  // namespace nfw
