#include <fstream>

#include "NfwAppLog.h"
#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "Scenarios.h"
#include "SysLogServiceHost.h"

namespace {

/// The lines of the system log, among the steps.
class LogInTrace : public syslogservice::Sink {
 public:
  void writeLine(int /*nType*/, int nLevel, const char* npText) override {
    schedule::note(std::string(nLevel == nfw::LOG_LEVEL_ERROR ? "logs the error: " : "logs: ") + npText);
  }
};

const schedule::Scenario SCENARIOS[] = {
    {"components", &components, {19186}},
    {"gate", &gate, {}},
    {"listeners", &listeners, {}},
    {"facades", &facades, {}},
    {"logger", &logger, {}},
    {"playback", &playback, {}},
    {"controls", &controls, {}},
    {"mounts", &mounts, {}},
    {"settings", &settings, {}},
    {"services", &services, {}},
};

}  // namespace

void sizeLogs(unsigned int nBuffer, unsigned int nFile, unsigned int nField) {
  nfw::Logger::initializeMaxPlayerNum(2);
  nfw::Logger::initializeMaxLogTypeNum(3);
  nfw::Logger::initializeMaxLogFieldSize(nField);
  nfw::Logger::initializeLogBufferSize(nBuffer);
  nfw::Logger::initializeMaxLogFileSize(nFile);
}

void startLogs() {
  sizeLogs(20000, 100000, 300);
  schedule::require(nfw::Logger::get()->initialize() && nfw::SensorSysLoggerManager::get()->initialize(),
                    "the logs start");
}

void endLogs() {
  nfw::SensorSysLoggerManager::destroy();
  nfw::Logger::destroy();
}

void writeFile(const std::string& nPath, const std::string& nBytes) {
  std::ofstream(nPath, std::ios::binary).write(nBytes.data(), static_cast<std::streamsize>(nBytes.size()));
}

int main(int nArgCount, char** npArgs) {
  LogInTrace lLog;
  syslogservice::setSink(&lLog);
  return schedule::run(nArgCount, npArgs, SCENARIOS, sizeof SCENARIOS / sizeof SCENARIOS[0]);
}
