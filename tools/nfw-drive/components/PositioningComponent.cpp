#include "PositioningComponent.h"

#include "NfwGnss.h"

namespace drive {

int PositioningComponent::initializeAfterQuickBootImp() {
  if (nfw::Gnss::get()->initialize() && mReceiver.start()) return nfw::PHASE_DONE;
  mFailure.note(EXIT_RUNTIME, "the positioning service cannot be started");
  return nfw::PHASE_FAILED;
}

int PositioningComponent::finalizeImp() {
  mReceiver.stop();
  nfw::Gnss::get()->shutdown();
  nfw::Gnss::destroy();
  return nfw::PHASE_DONE;
}

}  // namespace drive
