// Two services whose callbacks use each other as far as they may: they write at once, and leave what waits to a thread.
#include <atomic>

#include "NfwLogPlayListener.h"
#include "NfwLogPlayer.h"
#include "NfwLogRecordEventListener.h"
#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwSysLogPlayListener.h"
#include "NfwSysLogPlayer.h"
#include "Scenarios.h"
#include "SysLogServiceHost.h"
#include "utl/Event.h"

namespace {

using nfw::Logger;
using nfw::SensorSysLoggerManager;

class Both : public nfw::LogPlayer,
             public nfw::SysLogPlayer,
             public nfw::LogPlayListener,
             public nfw::SysLogPlayListener,
             public nfw::LogRecordEventListener {
 public:
  void notifyPlayStart() override { act(); }
  void notifyPlayStop() override { act(); }
  void notifyPlayEnd(int /*nReason*/) override { act(), mTurn.on(); }
  void notifyPlayEnd() override { act(), mTurn.on(); }
  void notifyRecordStart() override { act(), mTurn.on(); }
  void notifyRecordStop() override { act(); }
  void receiveLogPlayData(int, const unsigned char*, unsigned int) override {
    act();
    if (schedule::pick(8) == 0) Logger::get()->stopPlay();
  }
  void receiveSysLogPlayData(int, int, const unsigned char*, unsigned int) override {
    act();
    if (schedule::pick(8) == 0) SensorSysLoggerManager::get()->detachPlayListener(this);
  }
  utl::Event mTurn{false};

 private:
  static void act() {
    schedule::outward("a callback of a log service");
    char lData[] = "1";
    Logger::write(1, lData, 1);
    SensorSysLoggerManager::write(1, 1, lData, 1);
  }
};

/// What a callback leaves to a thread of its own.
void work(Both& nBoth) {
  Logger& lLogger = *Logger::get();
  SensorSysLoggerManager& lSensor = *SensorSysLoggerManager::get();
  nBoth.mTurn.waitToOn(500);
  nBoth.mTurn.off();
  switch (schedule::pick(8)) {
    case 0:
      lLogger.startRecord(".", "s", nullptr), lSensor.startRecord();
      break;
    case 1:
      lLogger.stopRecord(), lSensor.stopRecord();
      break;
    case 2:
      lLogger.stopPlay();
      break;
    case 3:
      lSensor.stopPlay();
      break;
    case 4:
      lLogger.startPlay("text");
      break;
    case 5:
      lSensor.startPlay("sensor");
      break;
    case 6:
      lLogger.detachPlayListener(&nBoth), lLogger.attachPlayListener(1, &nBoth);
      break;
    default:
      lSensor.attachPlayListener(1, &nBoth), lLogger.detachPlayer(&nBoth), lLogger.attachPlayer(&nBoth);
      break;
  }
}

}  // namespace

void services() {
  Logger::initializeMaxRecordEventListenerNum(1);
  Logger::initializeMaxPlayerNum(1);
  Logger::initializeMaxLogTypeNum(1);
  Logger::initializeMaxLogFieldSize(100);
  Logger::initializeLogBufferSize(200);
  Logger::initializeMaxLogFileSize(5000);
  std::string lText, lBinary;
  for (unsigned int i = 0; i < 5; ++i) lText += record(1, i * 30, "x"), lBinary += sensorRecord(1, i * 30, "x");
  writeFile("text", lText);
  writeFile("sensor", lBinary);
  Both lBoth;
  Logger& lLogger = *Logger::get();
  SensorSysLoggerManager& lSensor = *SensorSysLoggerManager::get();
  schedule::require(syslogservice::setBinaryLogFile("binary"), "the sensor log has a file");
  schedule::require(lLogger.initialize() && lSensor.initialize(), "both start");
  schedule::require(lLogger.attachPlayer(&lBoth) && lSensor.attachPlayer(&lBoth), "players are attached");
  schedule::require(lLogger.attachRecordEventListener(&lBoth), "the event listener is attached");
  schedule::require(lLogger.attachPlayListener(1, &lBoth) && lSensor.attachPlayListener(1, &lBoth), "and listeners");
  {
    Crew lCrew;
    for (int i = 0; i < 3; ++i) {
      lCrew.add([&] {
        for (int k = 0; k < 5; ++k) work(lBoth);
      });
    }
    const schedule::Within lWithin("what callbacks leave to threads", 60000);
    lCrew.join();
    if (schedule::flip()) lCrew.add([&] { lSensor.shutdown(); }), lLogger.shutdown();
  }
  const schedule::Within lWithin("the end of both", 60000);
  Logger::destroy();
  SensorSysLoggerManager::destroy();
  schedule::require(syslogservice::setBinaryLogFile(nullptr), "the sensor log is whole");
}
