// Hands a ZDA sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedZdaDataListener.h"
#include "RecordDispatcher.h"

namespace nfw {

class ParsedZdaDataDispatcher
    : public RecordDispatcher<ZdaSentence, ParsedZdaDataListener, &ParsedZdaDataListener::onNotifyParsedZdaData> {
 public:
  ParsedZdaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(ParsedZdaDataListener* npListener);
  bool detachListener(ParsedZdaDataListener* npListener);
  void dispatch(const ZdaSentence& nRecord);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
