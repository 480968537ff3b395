#pragma once

#include <mutex>
#include <thread>

#include "Events.h"
#include "NfwComponent.h"
#include "Options.h"
#include "PositioningComponent.h"
#include "SourceReader.h"

namespace drive {

/// Reads the source on a thread of its own. Its start is complete when the source is open, its stop when the thread has
/// left it.
class SourceComponent : public nfw::Component, private SourceReader::Listener {
 public:
  SourceComponent(const Options& nOptions, PositioningComponent& nPositioning, GnssRoad& nRoad, Progress& nProgress,
                  Events& nEvents, std::string* npFailure);
  ~SourceComponent() override;

 private:
  int initializeBeforeQuickBootImp() override;
  int initializeAfterQuickBootImp() override { return nfw::PHASE_DONE; }
  int startImp() override;
  int stopImp() override;
  int shutdownImp() override;

  void onSourceOpen() override;
  void onSourceTrouble(const std::string& nMessage) override;

  void readSource();
  bool leave();
  void join();

  const Options& mOptions;
  PositioningComponent& mPositioning;
  GnssRoad& mRoad;
  Events& mEvents;
  std::string* const mpFailure;  // written before SOURCE_ENDED is notified
  tool::Stopper mStopper;
  tool::LineReader mReader;
  std::unique_ptr<SentenceSource> mpSource;
  std::thread mThread;
  std::mutex mMutex;
  bool mIsReading = false;        // guarded by mMutex
  bool mIsStopRequested = false;  // guarded by mMutex
};

}  // namespace drive
