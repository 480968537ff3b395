// Binary records of the sensor log as a source of the GNSS service.
#pragma once

#include "Converters.h"
#include "NfwSysLogPlayListener.h"
#include "PlaySource.h"
#include "SentenceReplay.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

/// Receives the records that the sensor log replays, on the replay's thread; turns them back into text and plays that
/// on the shared thread. Dispatcher and thread are not owned.
class GnssSensorSysLoggerPlayer : public utl::ThreadMsgListener, public SysLogPlayListener, public PlaySource {
 public:
  GnssSensorSysLoggerPlayer(GnssDataDispatcher* npDispatcher, utl::MsgDrivenSharedThread* npThread);

  bool initialize() override;
  void finalize() override;
  void clearSentenceData() { mReplay.clearSentenceData(); }
  NmeaBinaryLogData* getConverter(unsigned int nVersion) { return mConverters.getConverter(nVersion); }

  void receiveSysLogPlayData(int nLogTypeId, int nLogVersion, const unsigned char* npData, unsigned int nSize) override;
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 private:
  void onReceiveNmeaData(utl::ThreadRawMsg& nMsg);

  utl::MsgDrivenSharedThread* const mpThread;
  SentenceReplay mReplay;
  Converters mConverters;
};

}  // namespace nfw
