// The least application: one component that prints each position of the receiver. At a desk the receiver is standard
// input (nfw-drive sim --format nmea | example_first); the unit's feeds itself.
#include <GpsHost.h>  // at a desk
#include <NaviAppFramework.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>

#include "utl/Event.h"

class Positions : public nfw::Component, private nfw::ParsedGgaDataListener {
 public:
  Positions() : nfw::Component("Positions") {}

 private:
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override {
    const bool lIsReady = nfw::Logger::get()->initialize() && nfw::SensorSysLogger::get()->initialize() &&
                          nfw::Gnss::get()->initialize() && nfw::Gnss::get()->attachParsedGgaDataListener(this);
    return lIsReady ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
  }
  int startImp() override { return nfw::PHASE_DONE; }
  int stopImp() override {
    nfw::Logger::get()->stopPlay();  // a replay goes before what it plays to
    nfw::SensorSysLogger::get()->stopPlay();
    return nfw::PHASE_DONE;
  }
  int shutdownImp() override {
    nfw::Gnss::get()->shutdown();  // what is under way is delivered first
    return nfw::PHASE_DONE;
  }
  void onNotifyParsedGgaData(const nfw::GgaSentence& nFix) override {  // on the positioning service's thread
    std::printf("%02u:%02u:%02u  %2d deg %07.4f'  %3d deg %07.4f'\n", nFix.utcTime.hour, nFix.utcTime.minute,
                nFix.utcTime.second, nFix.latitude.degree, nFix.latitude.minute, nFix.longitude.degree,
                nFix.longitude.minute);
  }
};

struct Phases : nfw::ComponentStatusListener {  // each phase begins the next, up to the start and down to the end
  void onPreQuickBootComplete() override { mManager.initializeAfterQuickBoot(); }
  void onInitializeComplete() override { mManager.start(); }
  void onStartComplete() override { mIsUp.on(); }
  void onStopComplete() override { mManager.shutdown(); }
  void onShutdownComplete() override { mManager.finalize(); }
  void onFinalizeComplete() override { mIsDown.on(); }
  nfw::ComponentManager mManager{1};
  utl::Event mIsUp{false}, mIsDown{false};
};

int main() {
  const nfw::MsgLogInfoMap NO_NAMES(1, false);
  nfw::Config lConfig;
  lConfig.pMsgLogInfoMap = &NO_NAMES;
  lConfig.maxParsedGgaDataListenerNum = 1;
  lConfig.maxPlayerNum = lConfig.maxLogTypeNum = 2;  // the service follows replays of both logs
  lConfig.maxLogFieldSize = 1023;                    // takes every line of the log
  nfw::initializeNaviAppFramework(lConfig);
  utl::MsgDrivenSharedThread lThread(nfw::ComponentManager::getMaxMsgDataSize(), 16, 0, "First_App_Thread", 0);
  if (lThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0) != 0) return 1;
  Phases lPhases;
  lPhases.mManager.setStatusListener(&lPhases);
  lPhases.mManager.addComponent(utl::SmartPointer<nfw::Component>(new Positions));
  lPhases.mManager.initializeThread(&lThread);
  lPhases.mManager.initializeBeforeQuickBoot();
  lPhases.mIsUp.waitToOn(0);

  gpshost::Receiver lReceiver;  // at a desk
  lReceiver.start();
  for (char lLine[128]; std::fgets(lLine, sizeof(lLine), stdin) != nullptr;) {
    lReceiver.receive(lLine, static_cast<unsigned int>(std::strcspn(lLine, "\r\n")));
    std::this_thread::sleep_for(std::chrono::milliseconds(1));  // no receiver is faster
  }
  lReceiver.stop();

  lPhases.mManager.stop();
  lPhases.mIsDown.waitToOn(0);
  return lThread.stop(1, 30000);
}
