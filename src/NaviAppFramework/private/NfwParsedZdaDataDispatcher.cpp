#include "NfwParsedZdaDataDispatcher.h"

#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

const ThreadMsgProfile<DispatchMsg<ZdaSentence>> gProfile(THREAD_MSG_GNSS);

}  // namespace

ParsedZdaDataDispatcher::ParsedZdaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : RecordDispatcher("nfw::ParsedZdaDataDispatcher", nListenerCapacity, npThread) {}

bool ParsedZdaDataDispatcher::attachListener(ParsedZdaDataListener* npListener) {
  return attach(npListener, Here::now());
}
bool ParsedZdaDataDispatcher::detachListener(ParsedZdaDataListener* npListener) {
  return detach(npListener, Here::now());
}
void ParsedZdaDataDispatcher::dispatch(const ZdaSentence& nRecord) { queue(nRecord, Here::now()); }
void ParsedZdaDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) { receive(nMsg, Here::now()); }

}  // namespace nfw
