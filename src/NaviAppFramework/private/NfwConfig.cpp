#include "NfwConfig.h"

#include "NfwAppLog.h"
#include "NfwDeadReckoning.h"
#include "NfwGnss.h"
#include "NfwLogger.h"
#include "NfwMountManager.h"
#include "NfwProcessMsg.h"

namespace nfw {
namespace {

bool gIsInitialized = false;

bool configureProcessMsg(const Config& nConfig) {
  ProcessMsg::initializeMaxListenerNum(nConfig.maxProcessMsgListenerNum);
  ProcessMsg::initializeMaxHookListenerNum(nConfig.maxProcessMsgHookListenerNum);
  if (nConfig.pMsgLogInfoMap == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "initializeNaviAppFramework(): MsgLogInfoMap is null");
    return false;
  }
  ProcessMsg::initializeMsgLogInfo(*nConfig.pMsgLogInfoMap);
  return true;
}

void configureLogger(const Config& nConfig) {
  Logger::initializeMaxRecordEventListenerNum(nConfig.maxRecordEventListenerNum);
  Logger::initializeMaxPlayerNum(nConfig.maxPlayerNum);
  Logger::initializeMaxLogTypeNum(nConfig.maxLogTypeNum);
  Logger::initializeMaxLogFieldSize(nConfig.maxLogFieldSize);
  Logger::initializeLogBufferSize(nConfig.logBufferSize);
  Logger::initializeMaxLogFileSize(nConfig.maxLogFileSize);
}

void configureGnss(const Config& nConfig) {
  Gnss::initializeMaxParsedGgaDataListenerNum(nConfig.maxParsedGgaDataListenerNum);
  Gnss::initializeMaxParsedGllDataListenerNum(nConfig.maxParsedGllDataListenerNum);
  Gnss::initializeMaxParsedGsaDataListenerNum(nConfig.maxParsedGsaDataListenerNum);
  Gnss::initializeMaxParsedGsvDataListenerNum(nConfig.maxParsedGsvDataListenerNum);
  Gnss::initializeMaxParsedVtgDataListenerNum(nConfig.maxParsedVtgDataListenerNum);
  Gnss::initializeMaxParsedZdaDataListenerNum(nConfig.maxParsedZdaDataListenerNum);
  Gnss::initializeMaxParsedRmcDataListenerNum(nConfig.maxParsedRmcDataListenerNum);
  Gnss::initializeMaxParsedPubxDataListenerNum(nConfig.maxParsedPubxDataListenerNum);
  Gnss::initializeMaxParsedNmeaDataListenerNum(nConfig.maxParsedNmeaDataListenerNum);
  Gnss::initializeMaxNmeaDataListenerNum(nConfig.maxNmeaDataListenerNum);
  Gnss::initializeLoggerId(nConfig.gnssLoggerId);
  Gnss::initializeGpsSdkGeodeticSystemType(nConfig.gpsSdkGeodeticSystemType);
}

void configureDeadReckoning(const Config& nConfig) {
  DeadReckoning::initializeMaxDeadReckoningNmeaDataListenerNum(nConfig.maxDeadReckoningNmeaDataListenerNum);
  DeadReckoning::initializeLoggerId(nConfig.deadReckoningLoggerId);
}

}  // namespace

bool initializeNaviAppFramework(const Config& nConfig) {
  if (gIsInitialized) return false;
  registerLogType(LOG_TYPE_NFW, "<NAVI>NFW    ", LOG_LEVEL_DETAIL);
  const bool lResult = configureProcessMsg(nConfig);
  MountManager::initializeMaxListenerNum(nConfig.maxMountListenerNum);
  configureLogger(nConfig);
  configureGnss(nConfig);
  configureDeadReckoning(nConfig);
  gIsInitialized = true;
  return lResult;
}

void finalizeNaviAppFramework() {}

}  // namespace nfw
