#include "NfwDeadReckoningDataDispatcher.h"

namespace nfw {

DeadReckoningDataDispatcher::DeadReckoningDataDispatcher(utl::MsgDrivenSharedThread* npThread,
                                                         unsigned int nListenerCapacity)
    : mDispatcher(nListenerCapacity, npThread) {}

bool DeadReckoningDataDispatcher::attachDeadReckoningNmeaDataListener(DeadReckoningNmeaDataListener* npListener) {
  return mDispatcher.attachListener(npListener);
}

bool DeadReckoningDataDispatcher::detachDeadReckoningNmeaDataListener(DeadReckoningNmeaDataListener* npListener) {
  return mDispatcher.detachListener(npListener);
}

void DeadReckoningDataDispatcher::dispatch(const DeadReckoningNmeaSentence& nSet) { mDispatcher.dispatch(nSet); }

}  // namespace nfw
