// Recorded sentence text as a source of the GNSS service.
#pragma once

#include "NfwLogPlayListener.h"
#include "PlaySource.h"
#include "SentenceReplay.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

/// Receives the texts that the data logger replays, on the replay's thread, and plays them on the shared thread.
/// Without a configured logger id it never receives any. Dispatcher and thread are not owned.
class GnssLoggerPlayer : public utl::ThreadMsgListener, public LogPlayListener, public PlaySource {
 public:
  GnssLoggerPlayer(GnssDataDispatcher* npDispatcher, utl::MsgDrivenSharedThread* npThread, int nLoggerId);

  bool initialize() override;
  void finalize() override;
  void clearSentenceData() { mReplay.clearSentenceData(); }

  void receiveLogPlayData(int nLogTypeId, const unsigned char* npData, unsigned int nSize) override;
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 private:
  void onReceiveNmeaData(utl::ThreadRawMsg& nMsg);

  utl::MsgDrivenSharedThread* const mpThread;
  SentenceReplay mReplay;
  const int mLoggerId;
};

}  // namespace nfw
