#include "Playback.h"

#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"

namespace drive {

template <class Do>
bool Playback::each(Do nDo) const {
  const bool lIsLogDone = mReplay.mFiles.empty() || nDo(*nfw::Logger::get());
  const bool lIsSensorDone = mReplay.mSensorFiles.empty() || nDo(*nfw::SensorSysLoggerManager::get());
  return lIsLogDone && lIsSensorDone;
}

nfw::LogPlayPosition Playback::position() const {
  return mReplay.mFiles.empty() ? nfw::SensorSysLoggerManager::get()->getPlayPosition()
                                : nfw::Logger::get()->getPlayPosition();
}

bool Playback::hasCome(uint32_t nOffsetMs) const { return position().mPositionMs >= nOffsetMs; }

void Playback::pause() const {
  each([](auto& nLog) { return nLog.pausePlay(); });
}

void Playback::resume() const {
  each([](auto& nLog) { return nLog.resumePlay(); });
}

void Playback::step() const {
  each([](auto& nLog) { return nLog.stepPlay(); });
}

void Playback::setRate(unsigned int nPermille) const {
  each([nPermille](auto& nLog) { return nLog.setPlayRate(nPermille); });
}

bool Playback::seek(uint32_t nOffsetMs) const {
  return each([nOffsetMs](auto& nLog) { return nLog.seekPlay(nOffsetMs); });
}

}  // namespace drive
