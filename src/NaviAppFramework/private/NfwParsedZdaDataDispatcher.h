// Hands a ZDA sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedZdaDataListener.h"
#include "NfwRecordDispatcher.h"

namespace nfw {

class ParsedZdaDataDispatcher
    : public RecordDispatcher<ZdaSentence, ParsedZdaDataListener, &ParsedZdaDataListener::onNotifyParsedZdaData> {
 public:
  ParsedZdaDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);
};

}  // namespace nfw
