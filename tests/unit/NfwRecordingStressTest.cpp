// Both recording services under threads that do not let go of them; the thread sanitizer is the judge as well.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

#include "LogRecords.h"
#include "NfwAppLog.h"
#include "NfwLogPlayDataDispatcher.h"
#include "NfwLogWriter.h"
#include "NfwLogger.h"
#include "NfwMountManager.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwSysLogPlayDataDispatcher.h"
#include "PlatformSeams.h"
#include "Replays.h"
#include "SharedThread.h"
#include "StuckCall.h"
#include "SysLogServiceHost.h"
#include "TempDir.h"

namespace {

using nfw::Logger;
using nfw::SensorSysLoggerManager;
using nfwtest::Notes;

/// Runs its work again and again until stopped.
class Worker {
 public:
  explicit Worker(std::function<void(unsigned int)> nWork)
      : mThread([this, nWork] {
          for (unsigned int i = 0; !mIsOver; ++i, std::this_thread::yield()) nWork(i);
        }) {}
  ~Worker() {
    mIsOver = true;
    mThread.join();
  }

 private:
  std::atomic<bool> mIsOver{false};
  std::thread mThread;
};

struct DataLog {
  using Service = Logger;
  using Player = nfwtest::Player;
  static constexpr const char* THREAD = "nfw::Logger_Thread";
  static constexpr unsigned int OTHER_THREADS = 1;  // stopped before it
  static Player makePlayer(Notes& nNotes) { return Player(nNotes, "player"); }
  static void write() { Logger::write(1, "data", 4); }
  static std::string record(int nId, uint32_t nTime) { return nfwtest::logRecord(nId, nTime, "x"); }
  static void startRecord(Logger& nLogger, const std::string& nPath) {
    char lPath[300];
    nLogger.startRecord(nPath.c_str(), "s", nullptr);
    APPLOG(nfw::LOG_TYPE_NFW, nfw::LOG_LEVEL_INFO, "line");
    nLogger.flush();
    nLogger.getRecordingDir(lPath, sizeof lPath);
    nLogger.getPlayingDir(lPath, sizeof lPath);
  }
};

struct SensorLog {
  using Service = nfw::SensorSysLoggerManager;
  using Player = nfwtest::SysPlayer;
  static constexpr const char* THREAD = "Sensor_SysLogger_Thread";
  static constexpr unsigned int OTHER_THREADS = 0;
  static Player makePlayer(Notes& nNotes) { return Player(nNotes); }
  static void write() { Service::write(1, 1, const_cast<char*>("data"), 4); }
  static std::string record(int nId, uint32_t nTime) { return nfwtest::sensorRecord(nId, 1, nTime, "x"); }
  static void startRecord(Service& nService, const std::string& /*nPath*/) { nService.startRecord(); }
};

template <class Log>
class ServiceEndTest : public testing::Test {
 protected:
  ServiceEndTest() {
    Logger::initializeMaxPlayerNum(2);
    Logger::initializeMaxLogTypeNum(3);
    Logger::initializeMaxLogFieldSize(100);
    Logger::initializeLogBufferSize(1000);
    Logger::initializeMaxLogFileSize(20000);
    EXPECT_TRUE(syslogservice::setBinaryLogFile((mDir / "binary").c_str()));
  }
  ~ServiceEndTest() override {
    Log::Service::destroy();
    syslogservice::setBinaryLogFile(nullptr);
  }

  nfwtest::TempDir mDir, mRecording;
  seams::CapturedLog mLog;
};

using Logs = testing::Types<DataLog, SensorLog>;
TYPED_TEST_SUITE(ServiceEndTest, Logs);

TYPED_TEST(ServiceEndTest, AServiceThatIsStuckInAPlayerIsLeftBehindWhole) {
  using Service = typename TypeParam::Service;
  const std::string lLine = std::string("Thread Stop Timeout [") + TypeParam::THREAD + "]";
  for (const bool lIsShutDown : {true, false}) {
    nfwtest::StuckCall lStuck;
    Notes lNotes;
    auto lOther = TypeParam::makePlayer(lNotes), lFirst = TypeParam::makePlayer(lNotes);
    lFirst.mOnStart = [&lStuck] { lStuck.enter(); };
    Service* const lpService = Service::get();
    ASSERT_TRUE(lpService->initialize() && lpService->attachPlayer(&lOther) && lpService->attachPlayer(&lFirst));
    ASSERT_TRUE(lpService->startPlay("/nowhere"));
    lStuck.awaitEntry();
    this->mLog.clear();
    {
      const seams::Failing lNoTime(seams::THREAD_STOP, TypeParam::OTHER_THREADS);
      if (lIsShutDown) lpService->shutdown();
      Service::destroy();
      EXPECT_EQ(1U, lNoTime.hits()) << "waited for once";
    }
    EXPECT_EQ((std::vector<std::string>{lLine}), this->mLog.texts());
    EXPECT_NE(lpService, Service::get());
    EXPECT_TRUE(Service::get()->initialize());
    EXPECT_TRUE(lStuck.leave());
    EXPECT_EQ(1U, lNotes.count()) << "nobody is called any more";
    Service::destroy();
  }
}

TYPED_TEST(ServiceEndTest, EverythingAtOnceLeavesWholeRecords) {
  using Service = typename TypeParam::Service;
  seams::ManualClock lClock;
  Notes lNotes;
  auto lPlayer = TypeParam::makePlayer(lNotes);
  std::vector<nfwtest::PlayListener> lListeners(3, nfwtest::PlayListener(lNotes));
  std::atomic<unsigned int> lCalls{0};
  lListeners[0].mOnData = [&] {
    if (++lCalls % 40 == 0) Service::get()->stopPlay();
  };
  lListeners[1].mOnData = [&] { Service::get()->detachPlayListener(&lListeners[1]); };
  std::string lFile;
  for (unsigned int i = 0; i < 200; ++i) lFile += TypeParam::record(static_cast<int>(i % 3), i * 10);
  nfwtest::writeFile(this->mDir / "played", lFile);
  const auto lWrite = [](unsigned int) { TypeParam::write(); };
  const Worker lWriter(lWrite), lSecondWriter(lWrite), lThirdWriter(lWrite);  // also while there is no service
  const Worker lTime([&](unsigned int) { lClock.advance(20), lNotes.clear(); });
  for (int lRound = 0; lRound < 3; ++lRound) {
    Service* const lpService = Service::get();
    ASSERT_TRUE(lpService->initialize());
    {
      const Worker lRecorder([&](unsigned int i) {
        TypeParam::startRecord(*lpService, this->mRecording.path());
        if (i % 2 == 0) lpService->stopRecord();
      });
      const Worker lComingAndGoing([&](unsigned int i) {
        lpService->attachPlayListener(static_cast<int>(i % 3), &lListeners[i % 3]);
        lpService->attachPlayer(&lPlayer), lpService->detachPlayer(&lPlayer);
        if (i % 5 == 0) lpService->detachPlayListener(&lListeners[i % 2]);
      });
      for (int i = 0; i < 10; ++i) {
        lpService->startPlay((this->mDir / "played").c_str());
        for (int k = 0; k < 50 && lpService->isPlaying(); ++k) std::this_thread::yield();
        lpService->stopPlay();
      }
      if (lRound % 2 == 0) lpService->shutdown();  // under the others
    }
    const auto lSecond = std::async(std::launch::async, [&] { lpService->shutdown(); });
    lpService->shutdown();
    lSecond.wait();
    Service::destroy();
  }
  for (const std::string& lPath : this->mRecording.files()) {
    size_t lRest = 1;
    nfwtest::parseLogRecords(nfwtest::readFile(lPath), &lRest);
    EXPECT_EQ(0u, lRest) << lPath;
  }
}

TEST(UnknownMessageTest, IsNamedByWhoeverGetsIt) {
  const seams::CapturedLog lLog;
  nfw::LogWriter lWriter(1000, 1000);
  nfw::LogPlayDataDispatcher lReplay(20, nullptr, Logger::get(), 10);
  nfw::SysLogPlayDataDispatcher lSysReplay(4, nullptr, SensorSysLoggerManager::get());
  const struct {
    utl::ThreadMsgListener* mpReceiver;
    std::string mName;
  } CASES[] = {{&lWriter, "LogWriter"},
               {&lReplay, "LogPlayDataDispatcher"},
               {&lSysReplay, "SysLogPlayDataDispatcher"},
               {Logger::get(), "Logger"},
               {SensorSysLoggerManager::get(), "SensorSysLoggerManager"},
               {nfw::MountManager::get(), "MountManager"}};
  std::vector<std::string> lExpected;
  for (const auto& lCase : CASES) {
    nfwtest::RawMsg lNone, lUnknown(static_cast<int>(0x80000C0Eu));
    lCase.mpReceiver->receiveMsg(0, lNone);
    lCase.mpReceiver->receiveMsg(0, lUnknown);
    lExpected.push_back(lCase.mName + "::receiveMsg(): Can't get MsgId");
    lExpected.push_back(lCase.mName + "::receiveMsg(): UnknownMsg: MsgId=-2147480562");
  }
  EXPECT_EQ(lExpected, lLog.texts());
  Logger::destroy();
  SensorSysLoggerManager::destroy();
  nfw::MountManager::destroy();
}

}  // namespace
