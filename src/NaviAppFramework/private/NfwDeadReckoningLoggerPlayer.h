// Recorded sentence text as a source of the dead-reckoning service.
#pragma once

#include "NfwDeadReckoningDataDispatcher.h"
#include "NfwLogPlayListener.h"
#include "PlaySource.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

/// Receives the texts that the data logger replays, on the replay's thread, and gathers them into sets again on the
/// shared thread: RMC opens a set, PUBX closes it and hands it on, as the live source has written them. Without a
/// configured logger id it never receives any. Dispatcher and thread are not owned.
class DeadReckoningLoggerPlayer : public utl::ThreadMsgListener, public LogPlayListener, public PlaySource {
 public:
  DeadReckoningLoggerPlayer(DeadReckoningDataDispatcher* npDispatcher, utl::MsgDrivenSharedThread* npThread,
                            int nLoggerId);

  bool initialize() override;
  void finalize() override;
  void clearSentenceData();  ///< forgets the set being gathered

  void receiveLogPlayData(int nLogTypeId, const unsigned char* npData, unsigned int nSize) override;
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 private:
  void onReceiveDeadReckoningNmeaData(utl::ThreadRawMsg& nMsg);
  NmeaSentenceData* slotFor(int nSentenceType);

  utl::MsgDrivenSharedThread* const mpThread;
  DeadReckoningDataDispatcher* const mpDispatcher;
  const int mLoggerId;
  DeadReckoningNmeaSentence mSet;  // being gathered; on the shared thread only
  bool mIsOpen = false;            // its RMC has come in
};

}  // namespace nfw
