// Hands a VTG sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedVtgDataListener.h"
#include "RecordDispatcher.h"

namespace nfw {

class ParsedVtgDataDispatcher
    : public RecordDispatcher<VtgSentence, ParsedVtgDataListener, &ParsedVtgDataListener::onNotifyParsedVtgData> {
 public:
  ParsedVtgDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(ParsedVtgDataListener* npListener);
  bool detachListener(ParsedVtgDataListener* npListener);
  void dispatch(const VtgSentence& nRecord);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
