#pragma once

#include <atomic>

#include "Failure.h"
#include "Lateness.h"
#include "NfwComponent.h"
#include "NfwLogPlaySwitch.h"
#include "NfwSysLogPlaySwitch.h"

namespace drive {

/// Plays recordings back: the services switch to them by themselves. A recording of the data logger goes before one of
/// the sensor log, which is heard when the other has ended.
class ReplayComponent : public nfw::Component, private nfw::LogPlaySwitch, private nfw::SysLogPlaySwitch {
 public:
  ReplayComponent(const ReplayOptions& nReplay, Lateness& nLateness, Events& nEvents, Failure& nFailure)
      : nfw::Component("Replay"), mReplay(nReplay), mLateness(nLateness), mEvents(nEvents), mFailure(nFailure) {}

 private:
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override;
  int startImp() override;
  int stopImp() override;
  int shutdownImp() override;

  void startLogPlay() override {}
  void stopLogPlay() override {}
  void receiveLogPlayEnd(int nReason) override;
  void startSysLogPlay() override {}
  void stopSysLogPlay() override {}
  void receiveSysLogPlayEnd() override;
  void noteEnd();

  const ReplayOptions& mReplay;
  Lateness& mLateness;
  Events& mEvents;
  Failure& mFailure;
  std::atomic<int> mPlaying{0};
};

}  // namespace drive
