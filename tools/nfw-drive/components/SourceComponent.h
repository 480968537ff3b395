#pragma once

#include <mutex>

#include "NfwComponent.h"
#include "SourceFeed.h"

namespace drive {

/// Reads the sources beside one another. Its start is complete when one of them is open, or none will be; its stop when
/// all threads have left them.
class SourceComponent : public nfw::Component, private SourceFeed::Listener {
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

  void onFeedOpen() override { setStartComplete(); }
  void onFeedEnd() override;

  bool startFeeds();
  void finish();
  void requestStop();
  bool leave();

  const Options& mOptions;
  const Parts mParts;
  tool::Stopper mStopper;
  Turns mTurns;
  std::vector<std::unique_ptr<SourceFeed>> mFeeds;
  std::unique_ptr<Intake> mpIntake;
  std::atomic<size_t> mUnfinished{0};  // feeds that still read
  std::mutex mMutex;
  size_t mReading = 0;            // threads of feeds; guarded by mMutex
  bool mIsStopRequested = false;  // guarded by mMutex
};

}  // namespace drive
