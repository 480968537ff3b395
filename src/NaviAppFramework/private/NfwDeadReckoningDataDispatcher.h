// The one entry through which every source of dead-reckoning data delivers.
#pragma once

#include "NfwDeadReckoningNmeaDataDispatcher.h"

namespace nfw {

/// Owns the dispatcher of sentence sets.
class DeadReckoningDataDispatcher {
 public:
  DeadReckoningDataDispatcher(utl::MsgDrivenSharedThread* npThread, unsigned int nListenerCapacity);

  bool attachDeadReckoningNmeaDataListener(DeadReckoningNmeaDataListener* npListener);
  bool detachDeadReckoningNmeaDataListener(DeadReckoningNmeaDataListener* npListener);
  void dispatch(const DeadReckoningNmeaSentence& nSet);
  void mute() { mDispatcher.mute(); }  ///< no listener is called any more; any thread

 private:
  DeadReckoningNmeaDataDispatcher mDispatcher;
};

}  // namespace nfw
