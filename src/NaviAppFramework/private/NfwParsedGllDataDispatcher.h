// Hands a GLL sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedGllDataListener.h"
#include "NfwRecordDispatcher.h"

namespace nfw {

class ParsedGllDataDispatcher
    : public RecordDispatcher<GllSentence, ParsedGllDataListener, &ParsedGllDataListener::onNotifyParsedGllData> {
 public:
  ParsedGllDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);
};

}  // namespace nfw
