#include "ReplayComponent.h"

#include <unistd.h>

#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"

namespace drive {

namespace {

// Who watches a replay wants to know how long it is, which files that are measured tell.
template <class Service>
bool play(Service& nLog, const std::vector<std::string>& nFiles) {
  if (nFiles.empty()) return true;
  if (nFiles.size() == 1 && ::isatty(STDOUT_FILENO) != 1) return nLog.startPlay(nFiles.front().c_str());
  std::vector<const char*> lPaths;
  lPaths.reserve(nFiles.size());
  for (const std::string& lFile : nFiles) lPaths.push_back(lFile.c_str());
  return nLog.startPlay(lPaths.data(), static_cast<unsigned int>(lPaths.size()));
}

}  // namespace

int ReplayComponent::initializeAfterQuickBootImp() {
  const bool lIsAttached =
      nfw::Logger::get()->attachPlayer(this) && nfw::SensorSysLoggerManager::get()->attachPlayer(this);
  return lIsAttached ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
}

int ReplayComponent::startImp() {
  mPlaying = (mReplay.mFiles.empty() ? 0u : DATA_LOG) | (mReplay.mSensorFiles.empty() ? 0u : SENSOR_LOG);
  mLateness.start();
  const bool lIsPlayed =
      play(*nfw::Logger::get(), mReplay.mFiles) && play(*nfw::SensorSysLoggerManager::get(), mReplay.mSensorFiles);
  if (!lIsPlayed) mFailure.note(EXIT_RUNTIME, mReplay.mName + ": cannot be played");
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

// On the logs' threads, before the first record: it is played as it is asked for from the beginning.
void ReplayComponent::startLogPlay() { prepare(*nfw::Logger::get()); }

void ReplayComponent::startSysLogPlay() { prepare(*nfw::SensorSysLoggerManager::get()); }

template <class Service>
void ReplayComponent::prepare(Service& nLog) {
  bool lIsReady = true;
  if (mReplay.mFromMs > 0) lIsReady = nLog.seekPlay(mReplay.mFromMs);
  if (mReplay.mRate != ReplayOptions::NORMAL_RATE) lIsReady = nLog.setPlayRate(mReplay.mRate) && lIsReady;
  if (mReplay.mIsPaused) lIsReady = nLog.pausePlay() && lIsReady;
  if (!lIsReady) mFailure.note(EXIT_RUNTIME, mReplay.mName + ": cannot be played from there");
}

// On the logger's thread, which may stop the replay itself. The services then hear the next source.
void ReplayComponent::receiveLogPlayEnd(int nReason) {
  if (nReason == nfw::LogPlayer::END_NOT_STARTED)
    mFailure.note(EXIT_RUNTIME, mReplay.mName + ": nothing can be played");
  if ((mPlaying & SENSOR_LOG) != 0) nfw::Logger::get()->stopPlay();
  noteEnd(DATA_LOG);
}

void ReplayComponent::receiveSysLogPlayEnd() { noteEnd(SENSOR_LOG); }

void ReplayComponent::noteEnd(Log nLog) {
  const unsigned int lBefore = mPlaying.fetch_and(~nLog);
  if (lBefore == nLog) mEvents.notify(Events::REPLAY_ENDED);
}

}  // namespace drive
