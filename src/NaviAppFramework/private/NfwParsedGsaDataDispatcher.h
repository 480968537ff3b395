// Hands a GSA sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedGsaDataListener.h"
#include "RecordDispatcher.h"

namespace nfw {

class ParsedGsaDataDispatcher
    : public RecordDispatcher<GsaSentence, ParsedGsaDataListener, &ParsedGsaDataListener::onNotifyParsedGsaData> {
 public:
  ParsedGsaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(ParsedGsaDataListener* npListener);
  bool detachListener(ParsedGsaDataListener* npListener);
  void dispatch(const GsaSentence& nRecord);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
