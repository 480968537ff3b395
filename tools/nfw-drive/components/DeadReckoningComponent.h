#pragma once

#include "Failure.h"
#include "NfwComponent.h"

namespace drive {

/// Runs the dead-reckoning service.
class DeadReckoningComponent : public nfw::Component {
 public:
  explicit DeadReckoningComponent(Failure& nFailure) : nfw::Component("DeadReckoning"), mFailure(nFailure) {}

 private:
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override;
  int startImp() override { return nfw::PHASE_DONE; }
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override { return nfw::PHASE_DONE; }
  int finalizeImp() override;

  Failure& mFailure;
};

}  // namespace drive
