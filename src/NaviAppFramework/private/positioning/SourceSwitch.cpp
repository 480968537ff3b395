#include "SourceSwitch.h"

#include "NfwAppLog.h"
#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"

namespace nfw {

SourceSwitch::SourceSwitch(const char* npFacade, const char* npLockName, utl::MsgDrivenSharedThread& nThread,
                           Source nLive, Source nSysLog, Source nLog, const Here& nHere)
    : mpFacade(npFacade),
      mHere(nHere),
      mThread(nThread),
      mLive(nLive),
      mSysLog(nSysLog),
      mLog(nLog),
      mSync(npLockName, 1) {}

bool SourceSwitch::initialize(LogPlayer* npLogPlayer, SysLogPlayer* npSysLogPlayer) {
  mIsInitialized = true;
  if (!startThread(mThread, mHere.in())) return false;
  forgetPlaying();
  if (!initializeSource(mLive) || !initializeSource(mSysLog) || !initializeSource(mLog)) return false;
  if (!attachTo(Logger::get()->attachPlayer(npLogPlayer), "Logger")) return false;
  if (!attachTo(SensorSysLoggerManager::get()->attachPlayer(npSysLogPlayer), "SensorSysLoggerManager")) return false;
  const WatchedLock lLock(mSync, mHere.in());
  select();
  return true;
}

// The lock is not held while the facade is detached: the services' threads may be in one of its switches.
void SourceSwitch::shutdown(LogPlayer* npLogPlayer, SysLogPlayer* npSysLogPlayer) {
  mIsInitialized = false;
  for (const Source* lpSource : mAll) lpSource->mSource.off();
  for (const Source* lpSource : mAll) lpSource->mSource.finalize();
  SensorSysLoggerManager::get()->detachPlayer(npSysLogPlayer);
  Logger::get()->detachPlayer(npLogPlayer);
  mThreadEnd.stop(mThread, mHere.in(), "TIMEOUT");
}

bool SourceSwitch::end(LogPlayer* npLogPlayer, SysLogPlayer* npSysLogPlayer) {
  if (mIsInitialized) shutdown(npLogPlayer, npSysLogPlayer);
  return mThreadEnd.isOver(mThread, mHere.in(), "TIMEOUT");
}

/// What an earlier life was told: nothing plays now, or the sources could not attach.
void SourceSwitch::forgetPlaying() {
  const WatchedLock lLock(mSync, mHere.in());
  isLogPlaying = isSysLogPlaying = false;
}

void SourceSwitch::setPlaying(bool SourceSwitch::*npFlag, bool nIsPlaying) {
  const WatchedLock lLock(mSync, mHere.in());
  this->*npFlag = nIsPlaying;
  select();
}

/// A log replay wins over a sensor log replay, which wins over live data.
void SourceSwitch::select() {
  const Source& lWanted = isLogPlaying ? mLog : isSysLogPlaying ? mSysLog : mLive;
  for (const Source* lpSource : mAll) {
    if (&lpSource->mSource != &lWanted.mSource) lpSource->mSource.off();
  }
  lWanted.mSource.on();
}

bool SourceSwitch::initializeSource(const Source& nSource) {
  if (nSource.mSource.initialize()) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::initialize(): Can't %s::initialize", mpFacade, nSource.mpName);
  return false;
}

bool SourceSwitch::attachTo(bool nIsAttached, const char* npService) {
  if (nIsAttached) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::initialize(): Can't %s::attachPlayer", mpFacade, npService);
  return false;
}

}  // namespace nfw
