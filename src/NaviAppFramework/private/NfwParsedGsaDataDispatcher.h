// Hands a GSA sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedGsaDataListener.h"
#include "NfwRecordDispatcher.h"

namespace nfw {

class ParsedGsaDataDispatcher
    : public RecordDispatcher<GsaSentence, ParsedGsaDataListener, &ParsedGsaDataListener::onNotifyParsedGsaData> {
 public:
  ParsedGsaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);
};

}  // namespace nfw
