#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <tuple>

#include "LogRecords.h"
#include "NfwLogPlayDataDispatcher.h"
#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwSysLogPlayDataDispatcher.h"
#include "PlatformSeams.h"
#include "ReplayTiming.h"
#include "Replays.h"
#include "SharedThread.h"
#include "TempDir.h"

namespace {

using nfw::ReplayTiming;
using nfwtest::logRecord;
using nfwtest::Notes;
using nfwtest::sensorRecord;
using Replay = nfw::LogPlayDataDispatcher;
using SysReplay = nfw::SysLogPlayDataDispatcher;
using Strings = std::vector<std::string>;

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
  Strings playAt(const std::vector<unsigned int>& nTicks) {
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
  Replay lReplay(20, &mListener, nfw::Logger::get(), 10);
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
    EXPECT_EQ((Strings{lNote(10, "a"), lNote(10, "b"), lNote(1000, "c")}), playAt({lStart + 1000}));
    EXPECT_TRUE(waitForEnd());
    EXPECT_TRUE(lReplay.isPlaying());  // its thread stays until stop
    lReplay.stop();
    EXPECT_FALSE(lReplay.isPlaying());
  }
  EXPECT_EQ(2u, mLog.count("LogPlayDataDispatcher::onSetTimer(): Log is skipped: Invalid log time: Target=6999 msec "
                           "Base=7000 msec LogPos=154 Id=0x00000014"));
}

// Half of what is read ahead is not played, and gives its room back.
TEST_F(TimedReplayTest, ReadsAheadFiftyTwoRecordsAndKeepsTheirOrder) {
  std::string lFile;
  Strings lExpected;
  for (unsigned int i = 0; i < 200; ++i) {
    lFile += logRecord(20, 10 + i / 4, std::to_string(i)) + logRecord(20, 9, "old");  // four at a time
    lExpected.push_back(std::to_string(i));
  }
  mListener.mHasTicks = false;
  Replay lReplay(20, &mListener, nfw::Logger::get(), 10);
  ASSERT_TRUE(start(lReplay, lFile));
  readAhead(lReplay);
  mClock.advance(START - mClock.tick() - 1);
  EXPECT_TRUE(nfwtest::pump(mClock, [&] { return mNotes.count() >= 200; }));
  EXPECT_EQ(lExpected, mNotes.all());
  EXPECT_TRUE(waitForEnd());
}

TEST_F(TimedReplayTest, AStopCancelsTheReadAhead) {
  nfwtest::writeFile(mPath, logRecord(20, 2, "first") + logRecord(20, 1, "old"));
  std::filesystem::resize_file(mPath, 8ull << 30);  // zeros are records of another id
  Replay lReplay(20, &mListener, nfw::Logger::get(), 10);
  ASSERT_TRUE(lReplay.start(START, mPath.c_str()));
  EXPECT_TRUE(
      mLog.waitFor("LogPlayDataDispatcher::onSetTimer(): Log is skipped: Invalid log time: Target=1 msec "
                   "Base=2 msec LogPos=54 Id=0x00000014"));
  lReplay.stop();
  const auto lLines = mLog.lines();
  ASSERT_EQ(2u, lLines.size());
  EXPECT_EQ("LogPlayDataDispatcher::onSetTimer(): Reader is canceled: Id=0x00000014", lLines[1].mText);
  EXPECT_EQ(4, lLines[1].mLevel);
}

TEST_F(TimedReplayTest, PlaysLateRecordsAMillisecondFromNow) {
  Replay lReplay(20, &mListener, nfw::Logger::get(), 10);
  ASSERT_TRUE(
      start(lReplay, logRecord(20, 50, "late") + logRecord(20, 150, "now") + logRecord(20, 151, "then"), 100000 - 100));
  readAhead(lReplay);
  playAt({100001});
  EXPECT_TRUE(mNotes.waitFor(3));
  EXPECT_EQ((Strings{"100001:late", "100001:now", "100001:then"}), mNotes.all());
  EXPECT_EQ(1u, mLog.count("LogPlayDataDispatcher::onSetTimer(): Log dispatch is delay: Delay=100 msec LogPos=0 "
                           "Id=0x00000014"));
  EXPECT_EQ(1u, mLog.count("LogPlayDataDispatcher::onSetTimer(): Log dispatch is delay: Delay=0 msec LogPos=53 "
                           "Id=0x00000014"));
}

TEST_F(TimedReplayTest, EndsAtWhateverItCannotPlay) {
  const std::string lGood = logRecord(20, 50, "good"), lNoRecord = "Can't get next record: Id=0x00000014";
  const struct {
    std::string mFile, mLine;  // the end drops what is pending
    seams::Point mPoint = seams::POINT_NUM;
    unsigned int mAfter = 0;
  } CASES[] = {
      {logRecord(3, 50, "x"), ""},                           // nothing of this id
      {logRecord(3, 60, "x") + logRecord(20, 50, "x"), ""},  // all older than the first
      {lGood + logRecord(20, 51, "eleven byte"), lNoRecord},
      {lGood + logRecord(20, 51, "cut").substr(0, 50), lNoRecord},
      {lGood, "Can't set timer: Interval=1000 msec LogPos=0 Id=0x00000014", seams::TIMER},
      {lGood, lNoRecord, seams::FILE_READ, 1},
  };
  for (const auto& lCase : CASES) {
    mLog.clear();
    Replay lReplay(20, &mListener, nfw::Logger::get(), 10);
    {
      std::optional<seams::Failing> lFailing;
      if (lCase.mPoint != seams::POINT_NUM) lFailing.emplace(lCase.mPoint, lCase.mAfter);
      ASSERT_TRUE(start(lReplay, lCase.mFile, mClock.tick() + 1000));
      EXPECT_TRUE(waitForEnd());
    }
    EXPECT_TRUE(lCase.mLine.empty() || mLog.has("LogPlayDataDispatcher::onSetTimer(): " + lCase.mLine)) << lCase.mLine;
    mClock.advance(3000);
    lReplay.stop();
    EXPECT_EQ(0u, mNotes.count());
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
  for (const auto& lLine : mLog.lines()) EXPECT_EQ(1, lLine.mLevel) << lLine.mText;
}

TEST_F(TimedReplayTest, SensorRecordsFollowTimeStampsThatGoBack) {
  const std::string lLargest(1200, 's');
  SysReplay lReplay(4, &mListener, nfw::SensorSysLoggerManager::get());
  ASSERT_TRUE(start(lReplay, sensorRecord(4, 1, 10000, "a") + sensorRecord(4, 1, 11000, "b") +
                                 sensorRecord(4, 2, 5000, "dropped") + sensorRecord(4, 3, 5000, "c") +
                                 sensorRecord(4, 3, 5010, lLargest)));
  readAhead(lReplay);
  EXPECT_EQ((Strings{"101000:v1 a", "102000:v1 b", "103000:v3 c", "103010:v3 " + lLargest}),
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

/// A timer's message whose id, 0x7F7F7F7F, no pending record has.
class StrayTimer : public nfwtest::RawMsg {
 public:
  StrayTimer() : RawMsg(utl::TimerMsg::MSG_ID) {}
  bool beginInput() override { return true; }

 protected:
  bool take(ItemKind /*nKind*/, void* npItem, unsigned int nSize) override {
    return memset(npItem, 0x7F, nSize) != nullptr;
  }
};

TEST_F(TimedReplayTest, NamesATimerWithoutARecord) {
  Replay lReplay(20, &mListener, nfw::Logger::get(), 10);
  SysReplay lSysReplay(4, &mListener, nfw::SensorSysLoggerManager::get());
  StrayTimer lTimer;
  lReplay.receiveMsg(0, lTimer);  // it does not play
  const std::string lLine = "LogPlayDataDispatcher::onTimer(): Can't find log info: TimerId=2139062143 msec Id=";
  nfw::TimedReplay* const REPLAYS[] = {&lReplay, &lSysReplay};
  for (nfw::TimedReplay* const lpReplay : REPLAYS) {
    ASSERT_TRUE(start(*lpReplay, lpReplay == &lReplay ? logRecord(20, 1, "a") : sensorRecord(4, 0, 1, "a")));
    readAhead(*lpReplay);
    mLog.clear();
    lpReplay->receiveMsg(0, lTimer);
    ASSERT_EQ(Strings{lLine + lpReplay->getIdText()}, mLog.texts());
    EXPECT_EQ(1, mLog.lines()[0].mLevel);
  }
}

// --- when a record is due

const int64_t DROPPED = -1;

/// The due ticks of records of these times, each scheduled when it is not dropped.
std::vector<int64_t> dues(ReplayTiming::Rule nRule, uint32_t nStart, const std::vector<uint32_t>& nTimes) {
  ReplayTiming lTiming(nRule);
  std::vector<int64_t> lDues;
  for (int lRound = 0; lRound < 2; ++lRound) {  // a second replay remembers nothing of the first
    lTiming.start(nStart, nTimes[0]);
    lDues.clear();
    for (const uint32_t lTime : nTimes) {
      uint32_t lDue = 0;
      const bool lIsPlayed = lTiming.due(lTime, &lDue);
      if (lIsPlayed) lTiming.scheduled(lTime);
      lDues.push_back(lIsPlayed ? static_cast<int64_t>(lDue) : DROPPED);
    }
  }
  return lDues;
}

TEST(ReplayTimingTest, ARecordIsDueAtItsDistanceFromTheFirst) {
  const std::tuple<ReplayTiming::Rule, uint32_t, std::vector<uint32_t>, std::vector<int64_t>> CASES[] = {
      {ReplayTiming::FIXED, 1000, {500, 500, 600, 550, 499, 700}, {1000, 1000, 1100, 1050, DROPPED, 1200}},
      {ReplayTiming::FIXED, 0xFFFFFFF0u, {10, 40}, {0xFFFFFFF0u, 14}},  // the tick wraps
      {ReplayTiming::FIXED, 1000, {0xFFFFFFF0u, 5}, {1000, DROPPED}},   // the recorded time wrapped
      {ReplayTiming::REBASED, 1000, {500, 600, 600}, {1000, 1100, 1100}},
      // a second recording: one second after the last record of the first, whether it starts above the base or below
      {ReplayTiming::REBASED, 0, {10000, 20000, 15000, 15100}, {0, 10000, 11000, 11100}},
      {ReplayTiming::REBASED, 0, {10000, 20000, 5000, 5000, 5100}, {0, 10000, DROPPED, 11000, 11100}},
      {ReplayTiming::REBASED, 0, {10000, 5000, 4000, 4500}, {0, DROPPED, DROPPED, 1000}},
  };
  for (const auto& [lRule, lStart, lTimes, lDues] : CASES) EXPECT_EQ(lDues, dues(lRule, lStart, lTimes));
}

TEST(ReplayTimingTest, TheIntervalIsZeroForWhatIsNotAfterNow) {
  const std::tuple<uint32_t, uint32_t, uint32_t> CASES[] = {{1000, 999, 1},      {1000, 1000, 0},
                                                            {1000, 1001, 0},     {5, 0xFFFFFFFEu, 7},
                                                            {0xFFFFFFFEu, 5, 0}, {0x80000000u, 1, 0x7FFFFFFFu},
                                                            {0x80000001u, 1, 0}};
  for (const auto& [lDue, lNow, lInterval] : CASES) EXPECT_EQ(lInterval, ReplayTiming::interval(lDue, lNow));
}

}  // namespace
