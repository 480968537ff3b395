#include "DisplayComponent.h"

namespace drive {

namespace {

const int MSG_BEGIN = 0x100;
const int MSG_END = 0x101;

}  // namespace

int DisplayComponent::initializeAfterQuickBootImp() {
  return initializeThread(&mRoad.getThread()) && mListener.attach() ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
}

int DisplayComponent::startImp() {
  mTimerId = setTimer(TICK_MS, 0, 0, 0);
  return postMsg(MSG_BEGIN) && mTimerId > 0 ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
}

// The source has stopped: what it sent lies in the queue before this message.
int DisplayComponent::shutdownImp() {
  if (getThread() == nullptr) return nfw::PHASE_DONE;
  killTimer(mTimerId, 1);
  const bool lIsShown = sendMsgSync(MSG_END);
  mListener.detach();
  return lIsShown ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
}

void DisplayComponent::receiveMsg(int, utl::ThreadRawMsg& nMsg) {
  int lId = 0;
  if (!nMsg.getMsgId(&lId)) return;
  if (lId == MSG_BEGIN) mpView->begin();
  if (lId == MSG_END) mpView->end();
  if (lId == utl::TimerMsg::MSG_ID) mpView->tick();
  checkOutput();
}

void DisplayComponent::checkOutput() {
  if (mOutput.getState() != tool::Output::OPEN) mEvents.notify(Events::OUTPUT_LOST);
}

}  // namespace drive
