#include "NfwDeadReckoningNmeaDataDispatcher.h"

#include "DeadReckoningSlots.h"
#include "FieldMsg.h"
#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

/// Carries the whole set, a little over 10 KB.
class DispatchMsg : public FieldMsg<DispatchMsg> {
 public:
  static constexpr const char* NAME = "DispatchMsg";
  DispatchMsg() = default;
  DispatchMsg(int nMsgId, const DeadReckoningNmeaSentence& nSet) : FieldMsg<DispatchMsg>(nMsgId), mSet(nSet) {}

  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    auto& lSet = nSelf.mSet;
    const auto lSlot = [&nVisit](auto& nSlot) { return nVisit(nSlot.mText) && nVisit(nSlot.mLength); };
    const auto lSlots = [&lSlot](auto& nSlots) {
      for (auto& lItem : nSlots) {
        if (!lSlot(lItem)) return false;
      }
      return true;
    };
    return lSlot(lSet.mRmc) && lSlot(lSet.mVtg) && lSlot(lSet.mGga) && nVisit(lSet.mGsaCount) && lSlots(lSet.mGsa) &&
           nVisit(lSet.mGsvCount) && lSlots(lSet.mGsv) && lSlot(lSet.mPubx);
  }

  DeadReckoningNmeaSentence mSet;
};

const ThreadMsgProfile<DispatchMsg> gProfile(THREAD_MSG_DEAD_RECKONING);

}  // namespace

DeadReckoningNmeaDataDispatcher::DeadReckoningNmeaDataDispatcher(unsigned int nListenerCapacity,
                                                                 utl::MsgDrivenSharedThread* npThread)
    : DispatcherCore("nfw::DeadReckoningNmeaDataDispatcher", nListenerCapacity, npThread) {}

bool DeadReckoningNmeaDataDispatcher::attachListener(DeadReckoningNmeaDataListener* npListener) {
  return attach(npListener, Here::now());
}
bool DeadReckoningNmeaDataDispatcher::detachListener(DeadReckoningNmeaDataListener* npListener) {
  return detach(npListener, Here::now());
}
void DeadReckoningNmeaDataDispatcher::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  receive(nMsg, Here::now());
}

void DeadReckoningNmeaDataDispatcher::dispatch(const DeadReckoningNmeaSentence& nSet) {
  post(DispatchMsg(DISPATCHER_DISPATCH, nSet), Here::now());
}

void DeadReckoningNmeaDataDispatcher::onDispatch(utl::ThreadRawMsg& nMsg) {
  DispatchMsg lMsg;
  if (!lMsg.restoreFrom(nMsg)) return;
  eachSlot(lMsg.mSet, [this](const NmeaSentenceData& nSlot) {
    ListenerTable::Walk lWalk(mListeners);
    while (void* const lpListener = lWalk.next()) {
      static_cast<DeadReckoningNmeaDataListener*>(lpListener)
          ->onNotifyDeadReckoningNmeaData(nSlot.mText, nSlot.mLength);
    }
  });
}

}  // namespace nfw
