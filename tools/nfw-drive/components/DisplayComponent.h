#pragma once

#include "DeadReckoningListener.h"
#include "Failure.h"
#include "GnssListener.h"
#include "Intake.h"
#include "NfwSharedThreadComponent.h"

namespace drive {

/// Shows what the services deliver. Its own messages come on the thread of the phases.
class DisplayComponent : public nfw::SharedThreadComponent {
 public:
  /// What it works with; everything outlives it.
  struct Parts {
    utl::MsgDrivenSharedThread& mThread;
    Progress& mProgress;
    OutputQueue& mOutput;
    Events& mEvents;
    Failure& mFailure;
    Windows* mpWindows;  // null when nobody waits for places
    Lateness& mLateness;
  };

  DisplayComponent(const Parts& nParts, std::vector<std::unique_ptr<View>> nViews)
      : nfw::SharedThreadComponent("Display"),
        mParts(nParts),
        mView(std::move(nViews)),
        mGnss(mView, nParts.mpWindows, nParts.mProgress, nParts.mLateness),
        mDeadReckoning(mView, nParts.mpWindows ? &nParts.mpWindows->mReports : nullptr, nParts.mProgress) {}

 private:
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override;
  int startImp() override;
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override;
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
  void checkOutput();

  static constexpr unsigned int TICK_MS = 100;
  const Parts mParts;
  SharedView mView;
  GnssListener mGnss;
  DeadReckoningListener mDeadReckoning;
  int mTimerId = -1;
};

}  // namespace drive
