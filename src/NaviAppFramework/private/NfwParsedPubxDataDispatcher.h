// Hands a "$PUBX,00" sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedPubxDataListener.h"
#include "RecordDispatcher.h"

namespace nfw {

class ParsedPubxDataDispatcher
    : public RecordDispatcher<PubxSentence, ParsedPubxDataListener, &ParsedPubxDataListener::onNotifyParsedPubxData> {
 public:
  ParsedPubxDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(ParsedPubxDataListener* npListener);
  bool detachListener(ParsedPubxDataListener* npListener);
  void dispatch(const PubxSentence& nRecord);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
