// Hands a VTG sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedVtgDataListener.h"
#include "NfwRecordDispatcher.h"

namespace nfw {

class ParsedVtgDataDispatcher
    : public RecordDispatcher<VtgSentence, ParsedVtgDataListener, &ParsedVtgDataListener::onNotifyParsedVtgData> {
 public:
  ParsedVtgDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);
};

}  // namespace nfw
