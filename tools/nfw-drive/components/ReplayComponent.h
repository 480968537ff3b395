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
  enum Log : unsigned int { DATA_LOG = 1, SENSOR_LOG = 2 };

  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override;
  int startImp() override;
  int stopImp() override;
  int shutdownImp() override;

  void startLogPlay() override;
  void stopLogPlay() override {}
  void seekLogPlay() override { mPlaying |= DATA_LOG; }
  void receiveLogPlayEnd(int nReason) override;
  void startSysLogPlay() override;
  void stopSysLogPlay() override {}
  void seekSysLogPlay() override { mPlaying |= SENSOR_LOG; }
  void receiveSysLogPlayEnd() override;
  template <class Service>
  void prepare(Service& nLog);
  void noteEnd(Log nLog);

  const ReplayOptions& mReplay;
  Lateness& mLateness;
  Events& mEvents;
  Failure& mFailure;
  std::atomic<unsigned int> mPlaying{0};  // a bit for each log of which something is left to play
};

}  // namespace drive
