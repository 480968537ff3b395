// Binary records of the sensor log as a source of the dead-reckoning service.
#pragma once

#include "Converters.h"
#include "NfwDeadReckoningDataDispatcher.h"
#include "NfwSysLogPlayListener.h"
#include "PlaySource.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

/// Receives the records that the sensor log replays, on the replay's thread; turns each into its set of sentences and
/// hands that on, on the shared thread. Dispatcher and thread are not owned.
class DeadReckoningSensorSysLoggerPlayer : public utl::ThreadMsgListener, public SysLogPlayListener, public PlaySource {
 public:
  DeadReckoningSensorSysLoggerPlayer(DeadReckoningDataDispatcher* npDispatcher, utl::MsgDrivenSharedThread* npThread);

  bool initialize() override;
  void finalize() override;
  NmeaBinaryLogData* getConverter(unsigned int nVersion) { return mConverters.getConverter(nVersion); }

  void receiveSysLogPlayData(int nLogTypeId, int nLogVersion, const unsigned char* npData, unsigned int nSize) override;
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 private:
  void onReceiveDeadReckoningData(utl::ThreadRawMsg& nMsg);

  utl::MsgDrivenSharedThread* const mpThread;
  DeadReckoningDataDispatcher* const mpDispatcher;
  Converters mConverters;
};

}  // namespace nfw
