#pragma once

#include "Events.h"
#include "GnssListener.h"
#include "NfwSharedThreadComponent.h"

namespace drive {

/// Shows what the dispatchers deliver. All its work is done on their thread, so the view needs no lock.
class DisplayComponent : public nfw::SharedThreadComponent {
 public:
  DisplayComponent(GnssRoad& nRoad, std::unique_ptr<View> npView, Progress& nProgress, tool::Output& nOutput,
                   Events& nEvents)
      : nfw::SharedThreadComponent("Display"),
        mRoad(nRoad),
        mpView(std::move(npView)),
        mListener(nRoad, *mpView, nProgress),
        mOutput(nOutput),
        mEvents(nEvents) {}

 private:
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override;
  int startImp() override;
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override;
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
  void checkOutput();

  static constexpr unsigned int TICK_MS = 250;
  GnssRoad& mRoad;
  const std::unique_ptr<View> mpView;
  GnssListener mListener;
  tool::Output& mOutput;
  Events& mEvents;
  int mTimerId = -1;
};

}  // namespace drive
