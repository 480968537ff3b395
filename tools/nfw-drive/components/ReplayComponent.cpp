#include "ReplayComponent.h"

#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"

namespace drive {

int ReplayComponent::initializeAfterQuickBootImp() {
  const bool lIsAttached =
      nfw::Logger::get()->attachPlayer(this) && nfw::SensorSysLoggerManager::get()->attachPlayer(this);
  return lIsAttached ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
}

int ReplayComponent::startImp() {
  mPlaying = (mReplay.mFile.empty() ? 0 : 1) + (mReplay.mSensorFile.empty() ? 0 : 1);
  mLateness.start();
  if (!mReplay.mFile.empty() && !nfw::Logger::get()->startPlay(mReplay.mFile.c_str())) {
    mFailure.note(EXIT_RUNTIME, mReplay.mFile + ": cannot be played");
  }
  if (!mReplay.mSensorFile.empty() && !nfw::SensorSysLoggerManager::get()->startPlay(mReplay.mSensorFile.c_str())) {
    mFailure.note(EXIT_RUNTIME, mReplay.mSensorFile + ": cannot be played");
  }
  return mFailure.isNoted() ? nfw::PHASE_FAILED : nfw::PHASE_DONE;
}

int ReplayComponent::stopImp() {
  nfw::Logger::get()->stopPlay();
  nfw::SensorSysLoggerManager::get()->stopPlay();
  return nfw::PHASE_DONE;
}

int ReplayComponent::shutdownImp() {
  nfw::Logger::get()->detachPlayer(this);
  nfw::SensorSysLoggerManager::get()->detachPlayer(this);
  return nfw::PHASE_DONE;
}

// On the logger's thread, which may stop the replay itself. The services then hear the next source.
void ReplayComponent::receiveLogPlayEnd(int nReason) {
  if (nReason == nfw::LogPlayer::END_NOT_STARTED)
    mFailure.note(EXIT_RUNTIME, mReplay.mFile + ": nothing can be played");
  if (mPlaying > 1) nfw::Logger::get()->stopPlay();
  noteEnd();
}

void ReplayComponent::receiveSysLogPlayEnd() { noteEnd(); }

void ReplayComponent::noteEnd() {
  if (--mPlaying == 0) mEvents.notify(Events::REPLAY_ENDED);
}

}  // namespace drive
