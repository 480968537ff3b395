#pragma once

#include <array>
#include <atomic>
#include <optional>

#include "Events.h"
#include "NfwComponentManager.h"

namespace drive {

enum Phase { BEFORE_QUICK_BOOT, AFTER_QUICK_BOOT, START, STOP, SHUTDOWN, FINALIZE, PHASE_NUM };

const char* phaseName(Phase nPhase);

/// Begins phases, notes when they complete, and keeps how long each took. The main thread drives; completion is told on
/// the manager's thread.
class PhaseDriver : public nfw::ComponentStatusListener {
 public:
  PhaseDriver(nfw::ComponentManager& nManager, Events& nEvents) : mManager(nManager), mEvents(nEvents) {}

  bool begin(Phase nPhase);
  bool isComplete(Phase nPhase) const { return mTimes[nPhase] >= 0.0; }
  /// Milliseconds from the beginning to the completion, negative when it was not completed.
  double getTime(Phase nPhase) const { return mTimes[nPhase]; }

 private:
  void onPreQuickBootComplete() override { complete(BEFORE_QUICK_BOOT); }
  void onInitializeComplete() override { complete(AFTER_QUICK_BOOT); }
  void onStartComplete() override { complete(START); }
  void onStopComplete() override { complete(STOP); }
  void onShutdownComplete() override { complete(SHUTDOWN); }
  void onFinalizeComplete() override { complete(FINALIZE); }
  void complete(Phase nPhase);

  nfw::ComponentManager& mManager;
  Events& mEvents;
  std::array<std::atomic<double>, PHASE_NUM> mTimes{-1.0, -1.0, -1.0, -1.0, -1.0, -1.0};
  std::array<Events::Clock::time_point, PHASE_NUM> mBegun;  // written before the phase begins
};

}  // namespace drive
