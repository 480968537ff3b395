// Hands a GSV sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedGsvDataListener.h"
#include "NfwRecordDispatcher.h"

namespace nfw {

class ParsedGsvDataDispatcher
    : public RecordDispatcher<GsvSentence, ParsedGsvDataListener, &ParsedGsvDataListener::onNotifyParsedGsvData> {
 public:
  ParsedGsvDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);
};

}  // namespace nfw
