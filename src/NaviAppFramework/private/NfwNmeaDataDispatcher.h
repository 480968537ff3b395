// Hands sentences, as they came, to their listeners.
#pragma once

#include "NfwDispatcherCore.h"
#include "NfwNmeaDataListener.h"

namespace nfw {

class NmeaDataDispatcher : public DispatcherCore {
 public:
  NmeaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(NmeaDataListener* npListener) { return attach(npListener); }
  bool detachListener(NmeaDataListener* npListener) { return detach(npListener); }
  /// Queues a copy; the caller does not wait. More than 256 bytes are dropped.
  void dispatch(unsigned char const* npData, unsigned int nSize);

 private:
  void onDispatch(utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
