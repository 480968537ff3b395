#include "DisplayComponent.h"

namespace drive {

int DisplayComponent::initializeAfterQuickBootImp() {
  if (initializeThread(&mParts.mThread) && mGnss.attach() && mDeadReckoning.attach()) return nfw::PHASE_DONE;
  mParts.mFailure.note(EXIT_RUNTIME, "the services take no listeners");
  return nfw::PHASE_FAILED;
}

int DisplayComponent::startImp() {
  mTimerId = setTimer(TICK_MS, 0, 0, 0);
  mView.use([](View& nView) { nView.begin(); });
  return mTimerId > 0 ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
}

// The sources have stopped. Detaching waits for the services' threads, so everything that was under way has been shown.
int DisplayComponent::shutdownImp() {
  if (mTimerId > 0) killTimer(mTimerId, 1);
  mGnss.detach();
  mDeadReckoning.detach();
  mView.use([](View& nView) { nView.end(); });
  checkOutput();
  return nfw::PHASE_DONE;
}

void DisplayComponent::receiveMsg(int, utl::ThreadRawMsg&) {
  mView.use([](View& nView) { nView.tick(); });
  checkOutput();
}

void DisplayComponent::checkOutput() {
  if (mParts.mOutput.getState() != tool::Output::OPEN) mParts.mEvents.notify(Events::OUTPUT_LOST);
}

}  // namespace drive
