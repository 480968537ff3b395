// Hands an RMC sentence, parsed, to its listeners.
#pragma once

#include "NfwParsedRmcDataListener.h"
#include "RecordDispatcher.h"

namespace nfw {

class ParsedRmcDataDispatcher
    : public RecordDispatcher<RmcSentence, ParsedRmcDataListener, &ParsedRmcDataListener::onNotifyParsedRmcData> {
 public:
  ParsedRmcDataDispatcher(unsigned int nListenerCapacity, utl::MsgDrivenSharedThread* npThread);

  bool attachListener(ParsedRmcDataListener* npListener);
  bool detachListener(ParsedRmcDataListener* npListener);
  void dispatch(const RmcSentence& nRecord);
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
};

}  // namespace nfw
