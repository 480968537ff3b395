#include "NfwNmeaDataDispatcher.h"

#include "BytesMsg.h"
#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

class DispatchMsg : public BytesMsg<256> {
 public:
  static constexpr const char* NAME = "DispatchMsg";
  using BytesMsg<256>::BytesMsg;
};

const ThreadMsgProfile<DispatchMsg> gProfile(THREAD_MSG_GNSS);

}  // namespace

NmeaDataDispatcher::NmeaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread)
    : DispatcherCore("nfw::NmeaDataDispatcher", nListenerCapacity, npThread) {}

bool NmeaDataDispatcher::attachListener(NmeaDataListener* npListener) { return attach(npListener, Here::now()); }
bool NmeaDataDispatcher::detachListener(NmeaDataListener* npListener) { return detach(npListener, Here::now()); }
void NmeaDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) { receive(nMsg, Here::now()); }

void NmeaDataDispatcher::dispatch(unsigned char const* npData, unsigned int nSize) {
  if (nSize > DispatchMsg::DATA_MAX || (npData == nullptr && nSize > 0)) return;
  post(DispatchMsg(DISPATCHER_DISPATCH, npData, nSize), Here::now());
}

void NmeaDataDispatcher::onDispatch(utl::ThreadRawMsg& nMsg) {
  DispatchMsg lMsg;
  if (!lMsg.restoreFrom(nMsg)) return;
  ListenerTable::Walk lWalk(mListeners);
  while (void* const lpListener = lWalk.next()) {
    static_cast<NmeaDataListener*>(lpListener)->onNotifyNmeaData(lMsg.mData, lMsg.mSize);
  }
}

}  // namespace nfw
