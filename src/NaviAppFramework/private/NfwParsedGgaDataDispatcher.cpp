#include "NfwParsedGgaDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<GgaSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedGgaDataDispatcher::ParsedGgaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedGgaDataDispatcher", nListenerCapacity, npThread) {}

bool ParsedGgaDataDispatcher::attachListener(ParsedGgaDataListener* npListener) {
  return attach(npListener, Here::now());
}
bool ParsedGgaDataDispatcher::detachListener(ParsedGgaDataListener* npListener) {
  return detach(npListener, Here::now());
}
void ParsedGgaDataDispatcher::dispatch(const GgaSentence& nRecord) { queue(nRecord, Here::now()); }
void ParsedGgaDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) { receive(nMsg, Here::now()); }

}  // namespace nfw
