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
};

struct SensorLog {
  using Service = nfw::SensorSysLoggerManager;
  using Player = nfwtest::SysPlayer;
  static constexpr const char* THREAD = "Sensor_SysLogger_Thread";
  static constexpr unsigned int OTHER_THREADS = 0;
  static Player makePlayer(Notes& nNotes) { return Player(nNotes); }
  static void write() { Service::write(1, 1, const_cast<char*>("data"), 4); }
};

template <class Log>
class ServiceEndTest : public testing::Test {
 protected:
  ServiceEndTest() {
    Logger::initializeMaxPlayerNum(2);
    Logger::initializeMaxLogTypeNum(1);
    Logger::initializeMaxLogFieldSize(100);
    Logger::initializeLogBufferSize(1000);
    Logger::initializeMaxLogFileSize(1000);
  }
  ~ServiceEndTest() override { Log::Service::destroy(); }

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

TYPED_TEST(ServiceEndTest, ThreadsThatWriteAllTheTimeDoNotHoldUpItsEnd) {
  using Service = typename TypeParam::Service;
  std::vector<std::unique_ptr<Worker>> lWriters;
  const auto lWrite = [](unsigned int) {
    for (int i = 0; i < 1000; ++i) TypeParam::write();
  };
  for (int i = 0; i < 16; ++i) lWriters.push_back(std::make_unique<Worker>(lWrite));
  EXPECT_TRUE(Service::get()->initialize());
  const auto lEnd = std::async(std::launch::async, [] { Service::destroy(); });
  EXPECT_EQ(std::future_status::ready, lEnd.wait_for(std::chrono::seconds(20)));
  lWriters.clear();
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
               {SensorSysLoggerManager::get(), "SensorSysLoggerManager"}};
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
}

/// Recordings of 200 records of three ids, to be played.
template <class Make>
std::string recordingOf(const std::string& nPath, Make nMake) {
  std::string lBytes;
  for (unsigned int i = 0; i < 200; ++i) lBytes += nMake(static_cast<int>(i % 3), i * 10);
  nfwtest::writeFile(nPath, lBytes);
  return nPath;
}

TEST(RecordingStressTest, EverythingAtOnceLeavesWholeRecords) {
  Logger::initializeMaxRecordEventListenerNum(4);
  Logger::initializeMaxPlayerNum(4);
  Logger::initializeMaxLogTypeNum(4);
  Logger::initializeMaxLogFieldSize(2000);
  Logger::initializeLogBufferSize(20000);
  Logger::initializeMaxLogFileSize(200000);
  const nfwtest::TempDir lDir, lRecording;
  const seams::CapturedLog lLog;
  seams::ManualClock lClock;
  EXPECT_TRUE(syslogservice::setBinaryLogFile((lDir / "binary").c_str()));
  const std::string lLogPath =
      recordingOf(lDir / "log", [](int i, uint32_t t) { return nfwtest::logRecord(i, t, "x"); });
  const std::string lSensorPath =
      recordingOf(lDir / "sensor", [](int i, uint32_t t) { return nfwtest::sensorRecord(i, 1, t, "x"); });
  Notes lNotes;
  nfwtest::Player lPlayer(lNotes, "player");
  nfwtest::SysPlayer lSysPlayer(lNotes);
  nfwtest::RecordListener lRecordListener(lNotes, "record");
  std::vector<nfwtest::PlayListener> lListeners(3, nfwtest::PlayListener(lNotes));
  std::atomic<unsigned int> lCalls{0};
  lListeners[0].mOnData = [&] {
    if (++lCalls % 40 == 0) Logger::get()->stopPlay(), SensorSysLoggerManager::get()->stopPlay();
  };
  lListeners[1].mOnData = [&] { Logger::get()->detachPlayListener(&lListeners[1]); };
  lPlayer.mOnEnd = [] { Logger::get()->stopPlay(); };

  const auto lWrite = [](unsigned int i) {
    char lData[1000] = {};
    Logger::write(static_cast<int>(i % 3), lData, i % 1000);
    SensorSysLoggerManager::write(static_cast<int>(i % 3), 1, lData, i % 1000);
    if (i % 16 == 0) APPLOG(nfw::LOG_TYPE_NFW, nfw::LOG_LEVEL_INFO, "line %u", i);
  };
  const Worker lWriter(lWrite), lSecondWriter(lWrite);  // also while there is no logger
  const Worker lTime([&](unsigned int) { lClock.advance(20), lNotes.clear(); });
  for (int lRound = 0; lRound < 3; ++lRound) {
    Logger* const lpLogger = Logger::get();
    SensorSysLoggerManager* const lpManager = SensorSysLoggerManager::get();
    ASSERT_TRUE(lpLogger->initialize() && lpManager->initialize());
    const auto lShutdown = [&] { lpLogger->shutdown(), lpManager->shutdown(); };
    {
      const Worker lRecorder([&](unsigned int i) {
        lpLogger->startRecord(lRecording.path().c_str(), "s", i % 8 == 0 ? lDir.path().c_str() : nullptr);
        lpManager->startRecord();
        char lPath[300];
        lpLogger->getRecordingDir(lPath, sizeof lPath);
        if (i % 2 == 0) lpLogger->stopRecord();
        if (i % 3 == 0) lpManager->stopRecord();
        lpLogger->flush();
      });
      const Worker lComingAndGoing([&](unsigned int i) {
        lpLogger->attachPlayListener(static_cast<int>(i % 3), &lListeners[i % 3]);
        lpManager->attachPlayListener(static_cast<int>(i % 3), &lListeners[i % 3]);
        lpLogger->attachPlayer(&lPlayer), lpManager->attachPlayer(&lSysPlayer);
        lpLogger->attachRecordEventListener(&lRecordListener);
        lpLogger->detachPlayer(&lPlayer), lpManager->detachPlayer(&lSysPlayer);
        lpLogger->detachRecordEventListener(&lRecordListener);
        if (i % 5 == 0) lpLogger->detachPlayListener(&lListeners[i % 2]);
        if (i % 7 == 0) lpManager->detachPlayListener(&lListeners[i % 2]);
      });
      for (int i = 0; i < 10; ++i) {
        lpLogger->startPlay(lLogPath.c_str()), lpManager->startPlay(lSensorPath.c_str());
        char lPath[300];
        lpLogger->getPlayingDir(lPath, sizeof lPath);
        for (int k = 0; k < 50 && lpLogger->isPlaying(); ++k) std::this_thread::yield();
        lpLogger->stopPlay(), lpManager->stopPlay();
      }
      if (lRound % 2 == 0) lShutdown();  // under the others
    }
    const auto lSecond = std::async(std::launch::async, lShutdown);
    lShutdown();
    lSecond.wait();
    Logger::destroy();
    SensorSysLoggerManager::destroy();
  }
  syslogservice::setBinaryLogFile(nullptr);
  for (const std::string& lFile : lRecording.files()) {
    size_t lRest = 1;
    nfwtest::parseLogRecords(nfwtest::readFile(lFile), &lRest);
    EXPECT_EQ(0u, lRest) << lFile;
  }
}

}  // namespace
