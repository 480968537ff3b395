// Hands a GSV sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedGsvDataListener.h"
#include "RecordDispatcher.h"

namespace nfw {

class ParsedGsvDataDispatcher
    : public RecordDispatcher<GsvSentence, ParsedGsvDataListener, &ParsedGsvDataListener::onNotifyParsedGsvData> {
 public:
  ParsedGsvDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(ParsedGsvDataListener* npListener);
  bool detachListener(ParsedGsvDataListener* npListener);
  void dispatch(const GsvSentence& nRecord);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
