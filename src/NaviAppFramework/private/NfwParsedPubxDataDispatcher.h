// Hands a "$PUBX,00" sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedPubxDataListener.h"
#include "NfwRecordDispatcher.h"

namespace nfw {

class ParsedPubxDataDispatcher
    : public RecordDispatcher<PubxSentence, ParsedPubxDataListener, &ParsedPubxDataListener::onNotifyParsedPubxData> {
 public:
  ParsedPubxDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);
};

}  // namespace nfw
