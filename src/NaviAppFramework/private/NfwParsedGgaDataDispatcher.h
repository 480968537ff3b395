// Hands a GGA sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedGgaDataListener.h"
#include "RecordDispatcher.h"

namespace nfw {

class ParsedGgaDataDispatcher
    : public RecordDispatcher<GgaSentence, ParsedGgaDataListener, &ParsedGgaDataListener::onNotifyParsedGgaData> {
 public:
  ParsedGgaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(ParsedGgaDataListener* npListener);
  bool detachListener(ParsedGgaDataListener* npListener);
  void dispatch(const GgaSentence& nRecord);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
