// Hands one epoch of all six kinds that every epoch has, parsed, to its listeners.
#pragma once

#include "NfwParsedNmeaDataListener.h"
#include "RecordDispatcher.h"

namespace nfw {

class ParsedNmeaDataDispatcher
    : public RecordDispatcher<NmeaSentence, ParsedNmeaDataListener, &ParsedNmeaDataListener::onNotifyParsedNmeaData> {
 public:
  ParsedNmeaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(ParsedNmeaDataListener* npListener);
  bool detachListener(ParsedNmeaDataListener* npListener);
  void dispatch(const NmeaSentence& nRecord);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
