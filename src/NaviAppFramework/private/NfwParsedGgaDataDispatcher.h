// Hands a GGA sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedGgaDataListener.h"
#include "NfwRecordDispatcher.h"

namespace nfw {

class ParsedGgaDataDispatcher
    : public RecordDispatcher<GgaSentence, ParsedGgaDataListener, &ParsedGgaDataListener::onNotifyParsedGgaData> {
 public:
  ParsedGgaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);
};

}  // namespace nfw
