// Hands an RMC sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedRmcDataListener.h"
#include "NfwRecordDispatcher.h"

namespace nfw {

class ParsedRmcDataDispatcher
    : public RecordDispatcher<RmcSentence, ParsedRmcDataListener, &ParsedRmcDataListener::onNotifyParsedRmcData> {
 public:
  ParsedRmcDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);
};

}  // namespace nfw
