// Hands dead-reckoning results to their listeners, sentence by sentence.
#pragma once

#include "DispatcherCore.h"
#include "NfwDeadReckoningNmeaDataListener.h"
#include "NfwDeadReckoningNmeaSentence.h"

namespace nfw {

/// One dispatch carries a whole set; each sentence goes to all listeners before the next one does.
class DeadReckoningNmeaDataDispatcher : public DispatcherCore {
 public:
  DeadReckoningNmeaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(DeadReckoningNmeaDataListener* npListener);
  bool detachListener(DeadReckoningNmeaDataListener* npListener);
  /// Queues a copy; the caller does not wait.
  void dispatch(const DeadReckoningNmeaSentence& nSet);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 private:
  void onDispatch(utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
