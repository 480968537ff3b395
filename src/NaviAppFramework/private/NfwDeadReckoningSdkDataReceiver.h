// The live source of the dead-reckoning service.
#pragma once

#include "NfwDeadReckoningDataDispatcher.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "PlaySource.h"
#include "ZTSDeadReckoning.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

/// Listens to the dead-reckoning SDK. A report becomes a binary record and that a set of sentences, on the SDK's
/// thread; while on, the set goes to the dispatcher. On or off, it is recorded in both logs, on the shared thread.
/// Dispatcher and thread are not owned.
class DeadReckoningSdkDataReceiver : public ZTSDeadReckoningListener, public utl::ThreadMsgListener, public PlaySource {
 public:
  DeadReckoningSdkDataReceiver(DeadReckoningDataDispatcher* npDispatcher, utl::MsgDrivenSharedThread* npThread,
                               int nLoggerId);

  bool initialize() override;
  void finalize() override;

  void onNotifyLocationInfoForTervin(ZTSDeadReckoningDef::DRG_LOCATION_INFO const* npInfo) override;
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 private:
  void onReceiveDeadReckoningNmeaData(utl::ThreadRawMsg& nMsg);

  utl::MsgDrivenSharedThread* const mpThread;
  DeadReckoningDataDispatcher* const mpDispatcher;
  NmeaBinaryLogDataVersion1 mConverter;  // live data is always recorded in this version
  const int mLoggerId;
};

}  // namespace nfw
