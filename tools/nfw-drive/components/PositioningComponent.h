#pragma once

#include "Failure.h"
#include "GpsHost.h"
#include "NfwComponent.h"

namespace drive {

/// Runs the positioning service, and the receiver that it listens to.
class PositioningComponent : public nfw::Component {
 public:
  explicit PositioningComponent(Failure& nFailure) : nfw::Component("Positioning"), mFailure(nFailure) {}

  gpshost::Receiver& getReceiver() { return mReceiver; }

 private:
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override;
  int startImp() override { return nfw::PHASE_DONE; }
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override { return nfw::PHASE_DONE; }
  int finalizeImp() override;

  Failure& mFailure;
  gpshost::Receiver mReceiver;
};

}  // namespace drive
