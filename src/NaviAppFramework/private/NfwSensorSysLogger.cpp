#include "NfwSensorSysLogger.h"

#include "NfwSensorSysLoggerManager.h"
#include "OneInstance.h"

namespace nfw {
namespace {

OneInstance<SensorSysLogger>& instance() {
  static OneInstance<SensorSysLogger>* const lpInstance =
      new OneInstance<SensorSysLogger>("SensorSysLogger_Instantiation");
  return *lpInstance;
}

}  // namespace

SensorSysLogger* SensorSysLogger::get() {
  return instance().get([] { return new SensorSysLogger; });
}

void SensorSysLogger::destroy() {
  instance().destroy();
  SensorSysLoggerManager::destroy();
}

bool SensorSysLogger::initialize() { return SensorSysLoggerManager::get()->initialize(); }
void SensorSysLogger::shutdown() { SensorSysLoggerManager::get()->shutdown(); }
bool SensorSysLogger::startRecord() { return SensorSysLoggerManager::get()->startRecord(); }
bool SensorSysLogger::stopRecord() { return SensorSysLoggerManager::get()->stopRecord(); }
bool SensorSysLogger::isRecording() const { return SensorSysLoggerManager::get()->isRecording(); }
bool SensorSysLogger::startPlay(const char* npPath) { return SensorSysLoggerManager::get()->startPlay(npPath); }
bool SensorSysLogger::stopPlay() { return SensorSysLoggerManager::get()->stopPlay(); }
bool SensorSysLogger::isPlaying() const { return SensorSysLoggerManager::get()->isPlaying(); }

}  // namespace nfw
