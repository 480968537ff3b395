// Hands sentences, as they came, to their listeners.
#pragma once

#include "DispatcherCore.h"
#include "NfwNmeaDataListener.h"

namespace nfw {

class NmeaDataDispatcher : public DispatcherCore {
 public:
  NmeaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(NmeaDataListener* npListener);
  bool detachListener(NmeaDataListener* npListener);
  /// Queues a copy; the caller does not wait. More than 256 bytes are dropped.
  void dispatch(unsigned char const* npData, unsigned int nSize);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 private:
  void onDispatch(utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
