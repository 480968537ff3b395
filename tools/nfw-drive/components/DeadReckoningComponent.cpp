#include "DeadReckoningComponent.h"

#include "NfwDeadReckoning.h"

namespace drive {

int DeadReckoningComponent::initializeAfterQuickBootImp() {
  if (nfw::DeadReckoning::get()->initialize()) return nfw::PHASE_DONE;
  mFailure.note(EXIT_RUNTIME, "the dead-reckoning service cannot be started");
  return nfw::PHASE_FAILED;
}

int DeadReckoningComponent::finalizeImp() {
  nfw::DeadReckoning::get()->finalize();
  nfw::DeadReckoning::destroy();
  return nfw::PHASE_DONE;
}

}  // namespace drive
