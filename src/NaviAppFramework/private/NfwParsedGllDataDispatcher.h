// Hands a GLL sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedGllDataListener.h"
#include "RecordDispatcher.h"

namespace nfw {

class ParsedGllDataDispatcher
    : public RecordDispatcher<GllSentence, ParsedGllDataListener, &ParsedGllDataListener::onNotifyParsedGllData> {
 public:
  ParsedGllDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(ParsedGllDataListener* npListener);
  bool detachListener(ParsedGllDataListener* npListener);
  void dispatch(const GllSentence& nRecord);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
