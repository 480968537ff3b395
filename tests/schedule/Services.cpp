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
  const std::function<void()> WAYS[] = {
      [&] { lLogger.startRecord(".", "s", nullptr), lSensor.startRecord(); },
      [&] { lLogger.stopRecord(), lSensor.stopRecord(); },
      [&] { lLogger.stopPlay(); },
      [&] { lSensor.stopPlay(); },
      [&] { lLogger.startPlay("text"); },
      [&] { lSensor.startPlay("sensor"); },
      [&] { lLogger.detachPlayListener(&nBoth), lLogger.attachPlayListener(1, &nBoth); },
      [&] { lSensor.attachPlayListener(1, &nBoth), lLogger.detachPlayer(&nBoth), lLogger.attachPlayer(&nBoth); },
  };
  WAYS[schedule::pick(8)]();
}

}  // namespace

void services() {
  Logger::initializeMaxRecordEventListenerNum(1);
  sizeLogs(200, 5000);
  Logger::initializeMaxLogTypeNum(1);
  std::string lText, lBinary;
  for (unsigned int i = 0; i < 5; ++i)
    lText += nfwtest::logRecord(1, i * 30, "x"), lBinary += nfwtest::sensorRecord(1, 1, i * 30, "x");
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
    const auto lWork = [&] {
      for (int k = 0; k < 5; ++k) work(lBoth);
    };
    lCrew.add(lWork, 3);
    const schedule::Within lWithin("what callbacks leave to threads", 60000);
    lCrew.join();
    if (schedule::flip()) lCrew.add([&] { lSensor.shutdown(); }), lLogger.shutdown();
  }
  const schedule::Within lWithin("the end of both", 60000);
  Logger::destroy();
  SensorSysLoggerManager::destroy();
  schedule::require(syslogservice::setBinaryLogFile(nullptr), "the sensor log is whole");
}
