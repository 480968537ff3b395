#pragma once

#include <mutex>
#include <thread>

#include "Failure.h"
#include "Intake.h"
#include "LineReader.h"
#include "NfwComponent.h"
#include "RateLimit.h"
#include "SourceReader.h"

namespace drive {

/// Reads the source on a thread of its own. Its start is complete when the source is open, its stop when the thread has
/// left it.
class SourceComponent : public nfw::Component, private SourceReader::Listener {
 public:
  /// What it works with; everything outlives it.
  struct Parts {
    gpshost::Receiver& mReceiver;
    Windows* mpWindows;  // null when nobody gives places back
    Progress& mProgress;
    Events& mEvents;
    Failure& mFailure;
  };

  SourceComponent(const Options& nOptions, const Parts& nParts);
  ~SourceComponent() override;

 private:
  int initializeBeforeQuickBootImp() override;
  int initializeAfterQuickBootImp() override { return nfw::PHASE_DONE; }
  int startImp() override;
  int stopImp() override;
  int shutdownImp() override;

  void onSourceOpen() override;
  void onSourceTrouble(const std::string& nMessage) override;

  void run();
  void readSource();
  bool leave();
  void join();

  const Options& mOptions;
  const Parts mParts;
  tool::Stopper mStopper;
  tool::LineReader mReader;
  std::unique_ptr<SentenceSource> mpSource;
  std::thread mThread;
  std::mutex mMutex;
  bool mIsReading = false;        // guarded by mMutex
  bool mIsStopRequested = false;  // guarded by mMutex
};

}  // namespace drive
