#include <gtest/gtest.h>

#include <optional>

#include "LogRecords.h"
#include "NfwLogger.h"
#include "NfwSensorSysLogWriter.h"
#include "NfwSensorSysLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "PlatformSeams.h"
#include "Replays.h"
#include "SharedThread.h"
#include "SysLogServiceHost.h"
#include "TempDir.h"

namespace {

using nfw::SensorSysLoggerManager;
using nfwtest::sensorRecord;
using Strings = std::vector<std::string>;

/// The service appends to a file of the test.
class SensorSysLoggerTest : public testing::Test {
 protected:
  SensorSysLoggerTest() {
    EXPECT_TRUE(syslogservice::setBinaryLogFile(mPath.c_str()));
    nfw::Logger::initializeMaxPlayerNum(2);
    nfw::Logger::initializeMaxLogTypeNum(2);
  }
  ~SensorSysLoggerTest() override {
    nfw::SensorSysLogger::destroy();
    syslogservice::setBinaryLogFile(nullptr);
  }
  std::string written() const {
    EXPECT_TRUE(syslogservice::flushBinaryLog(20000));
    return nfwtest::readFile(mPath);
  }

  nfwtest::TempDir mDir;
  const std::string mPath = mDir / "sensor";
  seams::CapturedLog mLog;
  seams::ManualClock mClock;
  nfwtest::Notes mNotes;
};

TEST_F(SensorSysLoggerTest, TheWriterPacksRecords) {
  nfw::SensorSysLogWriter lWriter;
  std::string lData(1201, 'd');
  EXPECT_FALSE(lWriter.start());
  EXPECT_TRUE(lWriter.initialize());
  EXPECT_FALSE(lWriter.initialize());
  EXPECT_EQ(2, lWriter.write(99, 0, nullptr, 1));  // not recording comes first
  EXPECT_TRUE(lWriter.start());
  EXPECT_FALSE(lWriter.start());
  EXPECT_EQ(0, lWriter.write(15, 15, lData.data(), 1200));
  EXPECT_EQ(0, lWriter.write(1, 0, lData.data(), 0));
  EXPECT_EQ(sensorRecord(15, 15, 100000, std::string(1200, 'd')) + sensorRecord(1, 0, 100000, ""), written());

  const struct {
    int mId, mVersion;
    unsigned int mSize;
    bool mHasData;
    std::string mLine;
    std::optional<seams::Point> mPoint = {};
  } CASES[] = {
      {16, 16, 1201, false, "Invalid LogTypeId: 0x10"},
      {-1, 0, 1, true, "Invalid LogTypeId: 0xffffffff"},
      {1, 16, 1201, false, "Invalid LogVersion: 0x10"},
      {1, 0, 1201, false, "Data is null: Id=0x01"},
      {1, 0, 1201, true, "nDataSize is over: 1201"},
      {1, 0, 1, true, "Can't get tick time: Id=0x01", seams::TICK},
      {1, 0, 1, true, "Can't Write LogData: Id=0x01", seams::BINARY_LOG},
  };
  for (const auto& lCase : CASES) {
    std::optional<seams::Failing> lFailing;
    if (lCase.mPoint) lFailing.emplace(*lCase.mPoint);
    mLog.clear();
    EXPECT_EQ(1, lWriter.write(lCase.mId, lCase.mVersion, lCase.mHasData ? lData.data() : nullptr, lCase.mSize));
    EXPECT_EQ(Strings{"SensorSysLogWriter::write(): " + lCase.mLine}, mLog.texts());
    EXPECT_EQ(1, mLog.lines()[0].mLevel);
  }
  const nfw::LogRecordCounts lCounts = lWriter.getRecordCounts();
  EXPECT_EQ(2u, lCounts.mRecorded);
  EXPECT_EQ(7u, lCounts.mRefused);
  EXPECT_EQ(nfw::LOG_LOSS_WRITE, lCounts.mReason);
  EXPECT_EQ(nfwtest::readFile(mPath).size(), lCounts.mBytes);
  lWriter.stop();
  EXPECT_FALSE(lWriter.isRecording());
  EXPECT_TRUE(lWriter.start());
  lWriter.shutdown();
  EXPECT_FALSE(lWriter.isRecording());
  EXPECT_FALSE(lWriter.start());
}

TEST_F(SensorSysLoggerTest, TheManagerTakesLessThanTheFile) {
  std::string lData(1122, 'd');
  SensorSysLoggerManager::write(1, 1, lData.data(), 1);  // nobody there: lost
  nfw::SensorSysLogger* const lpLogger = nfw::SensorSysLogger::get();
  EXPECT_FALSE(lpLogger->startRecord());
  EXPECT_TRUE(lpLogger->initialize());
  EXPECT_FALSE(lpLogger->initialize());
  SensorSysLoggerManager::write(1, 1, lData.data(), 1);  // not recording: lost, without a word
  EXPECT_TRUE(lpLogger->startRecord());
  EXPECT_FALSE(lpLogger->startRecord());
  EXPECT_TRUE(lpLogger->isRecording());
  SensorSysLoggerManager::write(1, 2, lData.data(), 1121);
  SensorSysLoggerManager::write(1, 2, lData.data(), 1122);
  SensorSysLoggerManager::write(16, 2, lData.data(), 1);
  EXPECT_EQ(sensorRecord(1, 2, 100000, std::string(1121, 'd')), written());
  EXPECT_EQ(
      (Strings{"SensorSysLoggerManager::writeImp(): Invalid log data size: DataSize=1122 Byte Id=0x01 Version=0x02",
               "SensorSysLogWriter::write(): Invalid LogTypeId: 0x10",
               "SensorSysLoggerManager::writeImp(): mpSensorSysLogWriter->write() is RESULT_FAILURE"}),
      mLog.texts());
  EXPECT_TRUE(lpLogger->stopRecord());
  EXPECT_FALSE(lpLogger->isRecording());
  lpLogger->shutdown();
  EXPECT_FALSE(lpLogger->startRecord());
}

TEST_F(SensorSysLoggerTest, PlaysTwoRecordingsOneAfterTheOther) {
  nfwtest::Player lPlayer(mNotes);
  nfwtest::PlayListener lListener(mNotes);
  lListener.mHasTicks = false;
  SensorSysLoggerManager* const lpManager = SensorSysLoggerManager::get();
  nfw::SensorSysLogger* const lpLogger = nfw::SensorSysLogger::get();
  EXPECT_FALSE(lpManager->attachPlayer(&lPlayer));
  ASSERT_TRUE(lpLogger->initialize());
  EXPECT_TRUE(lpManager->attachPlayer(&lPlayer) && lpManager->attachPlayListener(4, &lListener));
  EXPECT_FALSE(lpManager->attachPlayListener(4, &lListener));
  EXPECT_EQ(Strings{"SensorSysLoggerManager::attachPlayListenerInternal(): Duplicate Id=4"}, mLog.texts());
  nfwtest::writeFile(mPath, sensorRecord(4, 1, 9000, "a") + sensorRecord(3, 1, 9001, "no") +
                                sensorRecord(4, 0, 70, "b") + sensorRecord(4, 0, 80, "c"));
  ASSERT_TRUE(lpLogger->startPlay(mPath.c_str()));
  EXPECT_TRUE(lpLogger->isPlaying());
  ASSERT_TRUE(nfwtest::pump(
      mClock, [&] { return mNotes.count() >= 4; }, 10));
  EXPECT_TRUE(lpLogger->stopPlay() && lpManager->detachPlayer(&lPlayer));
  EXPECT_EQ((Strings{"start", "v1 a", "v0 c", "end 0", "stop"}), mNotes.all());  // b became the new base
  ASSERT_TRUE(lpLogger->startPlay((mDir / "none").c_str()));
  EXPECT_TRUE(mLog.waitFor("SensorSysLoggerManager::onStartPlay(): Can't start play: Id=0x04"));
  lpLogger->shutdown();
  EXPECT_TRUE(mLog.has("SensorSysLoggerManager::shutdown(): SysLogPlayDataDispatcher remain: Count=1"));
  EXPECT_FALSE(lpManager->detachPlayListener(&lListener));
  EXPECT_TRUE(mLog.has("SensorSysLoggerManager::detachPlayListener(): Can't send thread"));
}

}  // namespace
