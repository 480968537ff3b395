// What the programs of docs/guide.md share: a configuration, and the way of components through their phases.
#pragma once

#include <NaviAppFramework.h>

#include "utl/Event.h"
#include "utl/MsgDrivenSharedThread.h"

const int LOG_ID_POSITIONS = 20;
const int LOG_ID_END = 30;  // the application's own records

inline nfw::Config guideConfig() {
  static const nfw::MsgLogInfoMap NO_NAMES(1, false);
  nfw::Config lConfig;
  lConfig.pMsgLogInfoMap = &NO_NAMES;
  lConfig.maxMountListenerNum = 4;
  lConfig.maxRecordEventListenerNum = 4;
  lConfig.maxPlayerNum = 4;            // two of them are taken by Gnss and DeadReckoning
  lConfig.maxLogTypeNum = 8;           // likewise
  lConfig.maxLogFieldSize = 4096;      // takes every line of the log, which has 1023 characters at most
  lConfig.logBufferSize = 256 * 1024;  // what waits for the disk
  lConfig.maxLogFileSize = 16 << 20;   // then the next file
  lConfig.gnssLoggerId = 20;           // any two ids but 255, which are the lines of the log
  lConfig.deadReckoningLoggerId = 21;
  return lConfig;
}

/// Owns the components and takes them up to the start and down to the end.
class Application : private nfw::ComponentStatusListener {
 public:
  Application() {
    nfw::initializeNaviAppFramework(guideConfig());
    nfw::setAllFilterLevel(nfw::LOG_LEVEL_INFO);  // lines of the log go to standard error
    mThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0);
    mManager.setStatusListener(this);
  }
  ~Application() override { mThread.stop(1, 30000); }

  utl::MsgDrivenSharedThread& thread() { return mThread; }
  void add(nfw::Component* npComponent) { mManager.addComponent(utl::SmartPointer<nfw::Component>(npComponent)); }

  void goUp() {  // returns when every component has started
    mManager.initializeThread(&mThread);
    mManager.initializeBeforeQuickBoot();
    mIsUp.waitToOn(0);
  }
  void goDown() {  // returns when every component has been finalised
    mManager.stop();
    mIsDown.waitToOn(0);
  }

 private:
  void onPreQuickBootComplete() override { mManager.initializeAfterQuickBoot(); }
  void onInitializeComplete() override { mManager.start(); }
  void onStartComplete() override { mIsUp.on(); }
  void onStopComplete() override { mManager.shutdown(); }
  void onShutdownComplete() override { mManager.finalize(); }
  void onFinalizeComplete() override { mIsDown.on(); }

  // Messages of up to 64 bytes; 32 of them wait: more than there are components, which all may complete a phase at
  // once.
  utl::MsgDrivenSharedThread mThread{64, 32, 0, "Guide_SharedThread", 0};
  nfw::ComponentManager mManager{8};
  utl::Event mIsUp{false}, mIsDown{false};
};
