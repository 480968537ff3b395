// Every operation of both recording services at once; the thread sanitizer is the judge.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "LogRecords.h"
#include "NfwAppLog.h"
#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "PlatformSeams.h"
#include "Replays.h"
#include "SysLogServiceHost.h"
#include "TempDir.h"

namespace {

using nfw::Logger;
using nfw::SensorSysLoggerManager;

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

class RecordingStressTest : public testing::Test {
 protected:
  RecordingStressTest() {
    Logger::initializeMaxRecordEventListenerNum(4);
    Logger::initializeMaxPlayerNum(4);
    Logger::initializeMaxLogTypeNum(4);
    Logger::initializeMaxLogFieldSize(2000);
    Logger::initializeLogBufferSize(20000);
    Logger::initializeMaxLogFileSize(200000);
    std::string lLog, lSensor;
    for (unsigned int i = 0; i < 200; ++i) {
      lLog += nfwtest::logRecord(static_cast<int>(i % 3), i * 10, "data");
      lSensor += nfwtest::sensorRecord(static_cast<int>(i % 3), 1, i * 10, "data");
    }
    nfwtest::writeFile(mLogPath, lLog);
    nfwtest::writeFile(mSensorPath, lSensor);
    EXPECT_TRUE(syslogservice::setBinaryLogFile((mDir / "binary").c_str()));
  }
  ~RecordingStressTest() override { syslogservice::setBinaryLogFile(nullptr); }

  nfwtest::TempDir mDir, mRecording;
  const std::string mLogPath = mDir / "played.log", mSensorPath = mDir / "played.bin";
  seams::CapturedLog mLog;
  seams::ManualClock mClock;
};

TEST_F(RecordingStressTest, EverythingAtOnce) {
  nfwtest::Notes lNotes;
  nfwtest::Player lPlayer(lNotes, "player");
  nfwtest::SysPlayer lSysPlayer(lNotes);
  nfwtest::RecordListener lRecordListener(lNotes, "record");
  nfwtest::PlayListener lListeners[3] = {nfwtest::PlayListener(lNotes), nfwtest::PlayListener(lNotes),
                                         nfwtest::PlayListener(lNotes)};
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
  Worker lWriter(lWrite), lSecondWriter(lWrite);  // also while there is no logger
  Worker lClock([&](unsigned int) {
    mClock.advance(20);
    mLog.clear();
    lNotes.clear();
    std::this_thread::yield();
  });
  for (int lRound = 0; lRound < 3; ++lRound) {
    Logger* const lpLogger = Logger::get();
    SensorSysLoggerManager* const lpManager = SensorSysLoggerManager::get();
    ASSERT_TRUE(lpLogger->initialize());
    ASSERT_TRUE(lpManager->initialize());
    {
      Worker lRecorder([&](unsigned int i) {
        lpLogger->startRecord(mRecording.path().c_str(), "s", i % 8 == 0 ? mDir.path().c_str() : nullptr);
        lpManager->startRecord();
        std::this_thread::yield();
        if (i % 2 == 0) lpLogger->stopRecord();
        if (i % 3 == 0) lpManager->stopRecord();
        lpLogger->flush();
        char lPath[300];
        lpLogger->getRecordingDir(lPath, sizeof lPath);
      });
      Worker lListenersAtWork([&](unsigned int i) {
        lpLogger->attachPlayListener(static_cast<int>(i % 3), &lListeners[i % 3]);
        lpManager->attachPlayListener(static_cast<int>(i % 3), &lListeners[i % 3]);
        if (i % 5 == 0) lpLogger->detachPlayListener(&lListeners[i % 2]);
        if (i % 7 == 0) lpManager->detachPlayListener(&lListeners[i % 2]);
      });
      Worker lPlayersAtWork([&](unsigned int) {
        lpLogger->attachPlayer(&lPlayer);
        lpManager->attachPlayer(&lSysPlayer);
        lpLogger->attachRecordEventListener(&lRecordListener);
        lpLogger->detachPlayer(&lPlayer);
        lpManager->detachPlayer(&lSysPlayer);
        lpLogger->detachRecordEventListener(&lRecordListener);
      });
      for (int i = 0; i < 10; ++i) {
        lpLogger->startPlay(mLogPath.c_str());
        lpManager->startPlay(mSensorPath.c_str());
        char lPath[300];
        lpLogger->getPlayingDir(lPath, sizeof lPath);
        const unsigned int lBefore = lCalls;
        for (int lWait = 0; lWait < 50 && lCalls == lBefore && lpLogger->isPlaying(); ++lWait)
          std::this_thread::yield();
        lpLogger->stopPlay();
        lpManager->stopPlay();
      }
      if (lRound % 2 == 0) lpLogger->shutdown(), lpManager->shutdown();  // under the others
    }
    std::thread lSecondShutdown([&] { lpLogger->shutdown(), lpManager->shutdown(); });
    lpLogger->shutdown();
    lpManager->shutdown();
    lSecondShutdown.join();
    Logger::destroy();
    SensorSysLoggerManager::destroy();
  }
  for (const std::string& lFile : mRecording.files()) {
    size_t lRest = 1;
    nfwtest::parseLogRecords(nfwtest::readFile(lFile), &lRest);
    EXPECT_EQ(0u, lRest) << lFile;
  }
}

}  // namespace
