#include <gtest/gtest.h>

#include "LogRecords.h"
#include "NfwLogPlayDataDispatcher.h"
#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwSysLogPlayDataDispatcher.h"
#include "PlatformSeams.h"
#include "Replays.h"
#include "SharedThread.h"
#include "TempDir.h"

namespace {

using nfwtest::logRecord;
using nfwtest::Notes;
using nfwtest::sensorRecord;

const int SET_TIMER_MSG = static_cast<int>(0x80000C02u);
const unsigned int START = 101000;  // 1000 ms from the clock's first tick

/// A replay without a running service: its end shows as the line of a post that fails.
class TimedReplayTest : public testing::Test {
 protected:
  TimedReplayTest() : mListener(mNotes) {}
  ~TimedReplayTest() override {
    nfw::Logger::destroy();
    nfw::SensorSysLoggerManager::destroy();
  }

  bool start(nfw::TimedReplay& nReplay, const std::string& nFile, unsigned int nStart = START) {
    nfwtest::writeFile(mPath, nFile);
    return nReplay.start(nStart, mPath.c_str());
  }
  /// When it returns, everything that can be read ahead has been.
  static void readAhead(nfw::TimedReplay& nReplay) {
    nfwtest::RawMsg lMsg(SET_TIMER_MSG);
    nReplay.receiveMsg(0, lMsg);
  }
  /// Moves the clock to each tick in turn, and waits for the record that is due then.
  std::vector<std::string> playAt(const std::vector<unsigned int>& nTicks) {
    for (const unsigned int lTick : nTicks) {
      const size_t lCount = mNotes.count();
      mClock.advance(lTick - mClock.tick());
      EXPECT_TRUE(mNotes.waitFor(lCount + 1)) << lTick;
    }
    return mNotes.all();
  }
  bool waitForEnd() const { return mLog.waitFor("Logger::setLogDispatchEnd(): Can't post thread"); }
  bool waitForSensorEnd() const {
    return mLog.waitFor("SensorSysLoggerManager::setLogDispatchEnd(): Can't post thread");
  }

  nfwtest::TempDir mDir;
  const std::string mPath = mDir / "records";
  seams::CapturedLog mLog;
  seams::ManualClock mClock{100000};
  Notes mNotes;
  nfwtest::PlayListener mListener;
};

TEST_F(TimedReplayTest, PlaysEachRecordWhenItIsDue) {
  nfw::LogPlayDataDispatcher lReplay(20, &mListener, nfw::Logger::get(), 10);
  EXPECT_EQ(&mListener, lReplay.getListener());
  EXPECT_EQ(20, lReplay.getLogTypeId());
  EXPECT_FALSE(lReplay.isPlaying());
  const std::string lFile = logRecord(3, 7000, "other") + logRecord(20, 7010, "a") + logRecord(20, 7010, "b") +
                            logRecord(20, 6999, "old") + logRecord(20, 8000, "c");
  for (int lRound = 0; lRound < 2; ++lRound) {
    mNotes.clear();
    const unsigned int lStart = mClock.tick() + 1000;
    const auto lNote = [&](unsigned int nAfter, const char* npData) {
      return std::to_string(lStart + nAfter) + ":" + npData;
    };
    ASSERT_TRUE(start(lReplay, lFile, lStart));
    EXPECT_FALSE(lReplay.start(lStart, mPath.c_str()));
    EXPECT_TRUE(lReplay.isPlaying());
    readAhead(lReplay);
    playAt({lStart + 10});
    EXPECT_TRUE(mNotes.waitFor(2));
    EXPECT_EQ((std::vector<std::string>{lNote(10, "a"), lNote(10, "b"), lNote(1000, "c")}), playAt({lStart + 1000}));
    EXPECT_TRUE(waitForEnd());
    EXPECT_TRUE(lReplay.isPlaying());  // its thread stays until stop
    lReplay.stop();
    EXPECT_FALSE(lReplay.isPlaying());
  }
  EXPECT_EQ(2u, mLog.count("LogPlayDataDispatcher::onSetTimer(): Log is skipped: Invalid log time: Target=6999 msec "
                           "Base=7000 msec LogPos=154 Id=0x00000014"));
}

TEST_F(TimedReplayTest, ReadsAheadFiftyTwoRecordsAndKeepsTheirOrder) {
  std::string lFile;
  std::vector<std::string> lExpected;
  for (unsigned int i = 0; i < 200; ++i) {
    lFile += logRecord(20, i / 4, std::to_string(i));  // four at a time
    lExpected.push_back(std::to_string(i));
  }
  mListener.mHasTicks = false;
  nfw::LogPlayDataDispatcher lReplay(20, &mListener, nfw::Logger::get(), 10);
  ASSERT_TRUE(start(lReplay, lFile));
  readAhead(lReplay);
  mClock.advance(START - mClock.tick() - 1);
  EXPECT_TRUE(nfwtest::pump(mClock, [&] { return mNotes.count() >= 200; }));
  EXPECT_EQ(lExpected, mNotes.all());
  EXPECT_TRUE(waitForEnd());
}

TEST_F(TimedReplayTest, PlaysLateRecordsAMillisecondFromNow) {
  nfw::LogPlayDataDispatcher lReplay(20, &mListener, nfw::Logger::get(), 10);
  ASSERT_TRUE(
      start(lReplay, logRecord(20, 50, "late") + logRecord(20, 150, "now") + logRecord(20, 151, "then"), 100000 - 100));
  readAhead(lReplay);
  playAt({100001});
  EXPECT_TRUE(mNotes.waitFor(3));
  EXPECT_EQ((std::vector<std::string>{"100001:late", "100001:now", "100001:then"}), mNotes.all());
  EXPECT_EQ(1u, mLog.count("LogPlayDataDispatcher::onSetTimer(): Log dispatch is delay: Delay=100 msec LogPos=0 "
                           "Id=0x00000014"));
  EXPECT_EQ(1u, mLog.count("LogPlayDataDispatcher::onSetTimer(): Log dispatch is delay: Delay=0 msec LogPos=53 "
                           "Id=0x00000014"));
}

TEST_F(TimedReplayTest, EndsAtWhateverItCannotPlay) {
  const std::string lGood = logRecord(20, 50, "good");
  const struct {
    std::string mFile;
    unsigned int mPlayed;  // before the end, which drops what is pending
    const char* mpLine;
  } CASES[] = {
      {logRecord(3, 50, "x"), 0, ""},                           // nothing of this id
      {logRecord(3, 60, "x") + logRecord(20, 50, "x"), 0, ""},  // all older than the first
      {lGood + logRecord(20, 51, "eleven byte"), 0,
       "LogPlayDataDispatcher::onSetTimer(): Can't get next record: Id=0x00000014"},
      {lGood + logRecord(20, 51, "cut").substr(0, 50), 0,
       "LogPlayDataDispatcher::onSetTimer(): Can't get next record: Id=0x00000014"},
  };
  for (const auto& lCase : CASES) {
    mLog.clear();
    nfw::LogPlayDataDispatcher lReplay(20, &mListener, nfw::Logger::get(), 10);
    ASSERT_TRUE(start(lReplay, lCase.mFile));
    EXPECT_TRUE(waitForEnd());
    EXPECT_TRUE(lCase.mpLine[0] == 0 || mLog.has(lCase.mpLine)) << lCase.mpLine;
    mClock.advance(3000);
    lReplay.stop();
    EXPECT_EQ(0u, mNotes.count());
  }
  const struct {
    seams::Point mPoint;
    std::string mLine;
  } FAILURES[] = {
      {seams::TIMER, "Can't set timer: Interval=1000 msec LogPos=0 Id=0x00000014"},
      {seams::FILE_READ, "Can't get next record: Id=0x00000014"},
  };
  for (const auto& lFailure : FAILURES) {
    mLog.clear();
    mClock.advance(START - 1000 - mClock.tick());
    nfw::LogPlayDataDispatcher lReplay(20, &mListener, nfw::Logger::get(), 10);
    const seams::Failing lFailing(lFailure.mPoint, lFailure.mPoint == seams::FILE_READ ? 1 : 0);
    ASSERT_TRUE(start(lReplay, lGood, mClock.tick() + 1000));
    EXPECT_TRUE(waitForEnd());
    EXPECT_TRUE(mLog.has("LogPlayDataDispatcher::onSetTimer(): " + lFailure.mLine)) << lFailure.mLine;
  }
}

TEST_F(TimedReplayTest, StartsOnlyWithAFileAndAThread) {
  nfw::LogPlayDataDispatcher lReplay(0xAB, &mListener, nfw::Logger::get(), 10);
  EXPECT_FALSE(lReplay.start(START, (mDir / "none").c_str()));
  EXPECT_FALSE(start(lReplay, ""));
  {
    const seams::Failing lFailing(seams::THREAD_START);
    EXPECT_FALSE(start(lReplay, logRecord(0xAB, 1, "x")));
    EXPECT_TRUE(mLog.has("Thread Start[000000AB_nfw::LogPlayDataDispatcher_Thread]"));
  }
  {
    const seams::Failing lFailing(seams::POST);
    EXPECT_FALSE(start(lReplay, logRecord(0xAB, 1, "x")));
    EXPECT_TRUE(mLog.has("LogPlayDataDispatcher::start(): Can't post thread: Id=0x000000AB"));
    EXPECT_FALSE(lReplay.isPlaying());
  }
  EXPECT_TRUE(start(lReplay, logRecord(0xAB, 1, "x")));
}

TEST_F(TimedReplayTest, UnknownMessagesAndTimersAreNamed) {
  nfw::SysLogPlayDataDispatcher lReplay(4, &mListener, nfw::SensorSysLoggerManager::get());
  nfwtest::RawMsg lNone, lUnknown(1);
  lReplay.receiveMsg(0, lNone);
  lReplay.receiveMsg(0, lUnknown);
  EXPECT_EQ((std::vector<std::string>{"SysLogPlayDataDispatcher::receiveMsg(): Can't get MsgId",
                                      "SysLogPlayDataDispatcher::receiveMsg(): UnknownMsg: MsgId=1"}),
            mLog.texts());
}

TEST_F(TimedReplayTest, SensorRecordsFollowTimeStampsThatGoBack) {
  const std::string lLargest(1200, 's');
  nfw::SysLogPlayDataDispatcher lReplay(4, &mListener, nfw::SensorSysLoggerManager::get());
  ASSERT_TRUE(start(lReplay, sensorRecord(4, 1, 10000, "a") + sensorRecord(4, 1, 11000, "b") +
                                 sensorRecord(4, 2, 5000, "dropped") + sensorRecord(4, 3, 5000, "c") +
                                 sensorRecord(4, 3, 5010, lLargest)));
  readAhead(lReplay);
  EXPECT_EQ((std::vector<std::string>{"101000:v1 a", "102000:v1 b", "103000:v3 c", "103010:v3 " + lLargest}),
            playAt({101000, 102000, 103000, 103010}));
  EXPECT_TRUE(waitForSensorEnd());
  EXPECT_EQ(1u, mLog.count("SysLogPlayDataDispatcher::onSetTimer(): Log is skipped: Invalid log time: Target=5000 msec "
                           "Base=10000 msec LogPos=16 Id=0x04"));
  lReplay.stop();
  mLog.clear();
  ASSERT_TRUE(start(lReplay, sensorRecord(4, 0, 1, std::string(1201, 'x')), mClock.tick() + 1000));
  EXPECT_TRUE(waitForSensorEnd());
  EXPECT_TRUE(mLog.has("SysLogPlayDataDispatcher::onSetTimer(): Can't get next record: Id=0x04"));
}

// While a listener blocks, stop() waits; the listener's own operations do not.
TEST_F(TimedReplayTest, AMutedListenerIsNotCalledAgain) {
  nfw::LogPlayDataDispatcher lReplay(20, &mListener, nfw::Logger::get(), 10);
  EXPECT_EQ(nullptr, nfw::TimedReplay::delivering());
  mListener.mOnData = [&] {
    EXPECT_EQ(&lReplay, nfw::TimedReplay::delivering());
    nfw::TimedReplay::delivering()->mute();
  };
  ASSERT_TRUE(start(lReplay, logRecord(20, 1, "a") + logRecord(20, 1, "b")));
  readAhead(lReplay);
  playAt({START});
  EXPECT_TRUE(waitForEnd());
  EXPECT_EQ(1u, mNotes.count());
}

}  // namespace
