#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "LogRecords.h"
#include "NfwAppLog.h"
#include "NfwLogger.h"
#include "PlatformSeams.h"
#include "Replays.h"
#include "SharedThread.h"
#include "TempDir.h"

namespace {

using nfw::Logger;
using nfwtest::logRecord;
using nfwtest::Notes;
using Strings = std::vector<std::string>;

class LoggerTest : public testing::Test {
 protected:
  LoggerTest() {
    Logger::initializeMaxRecordEventListenerNum(2);
    Logger::initializeMaxPlayerNum(3);
    Logger::initializeMaxLogTypeNum(2);
    Logger::initializeMaxLogFieldSize(100);
    Logger::initializeLogBufferSize(100000);
    Logger::initializeMaxLogFileSize(1000000);
    mpLogger = Logger::get();
    EXPECT_TRUE(mpLogger->initialize());
    mListener.mHasTicks = mOther.mHasTicks = false;
  }
  ~LoggerTest() override { Logger::destroy(); }

  void attach() { ASSERT_TRUE(mpLogger->attachPlayer(&mFirst) && mpLogger->attachPlayListener(20, &mListener)); }
  bool play(const std::string& nFile) {
    nfwtest::writeFile(mPath, nFile);
    return mpLogger->startPlay(mPath.c_str());
  }
  bool pumpTo(size_t nCount) {
    return nfwtest::pump(
        mClock, [&] { return mNotes.count() >= nCount; }, 10);
  }
  Strings dataOf(const std::string& nDirectory) {
    Strings lData;
    for (const auto& lEntry : std::filesystem::directory_iterator(nDirectory)) {
      if (!lEntry.is_regular_file()) continue;
      for (auto& lRecord : nfwtest::parseLogRecords(nfwtest::readFile(lEntry.path()))) lData.push_back(lRecord.mData);
    }
    return lData;
  }

  nfwtest::TempDir mDir;
  const std::string mPath = mDir / "played.log";
  seams::CapturedLog mLog;
  seams::ManualClock mClock;
  Notes mNotes;
  nfwtest::Player mFirst{mNotes, "first"}, mSecond{mNotes, "second"};
  nfwtest::PlayListener mListener{mNotes}, mOther{mNotes};
  Logger* mpLogger = nullptr;
};

// --- recording

TEST_F(LoggerTest, RecordsDataAndLogLinesInTheirOrder) {
  nfwtest::TempDir lDir;
  EXPECT_TRUE(nfw::registerLogType(77, "<APP> ", nfw::LOG_LEVEL_DETAIL));
  Logger::write(20, "lost", 4);  // not recording yet
  ASSERT_TRUE(mpLogger->startRecord(lDir.path().c_str(), "drive", nullptr));
  EXPECT_FALSE(mpLogger->startRecord(lDir.path().c_str(), "drive", nullptr));
  EXPECT_TRUE(mpLogger->isRecording());
  Logger::write(20, "one", 3);
  APPLOG(77, nfw::LOG_LEVEL_ERROR, "line %d", 2);
  const std::string lLargest(100, 'x');
  Logger::write(20, lLargest.data(), 100);
  Logger::write(20, lLargest.data(), 101);
  Logger::write(-1, "x", 1);  // named, in the system log only
  LOGGERLOG(21, "three");
  mpLogger->flush();
  EXPECT_EQ((Strings{"one", "<APP> ERR: line 2", lLargest, "three"}), dataOf(lDir.path()));
  EXPECT_TRUE(mLog.has("Logger::writeImp(): Invalid log data size: DataSize=101 Byte Max=100 Byte Id=0x00000014"));
  char lPath[300];
  EXPECT_TRUE(mpLogger->getRecordingDir(lPath, sizeof lPath));
  EXPECT_EQ(lDir.path(), lPath);
  EXPECT_TRUE(mpLogger->stopRecord());
  EXPECT_FALSE(mpLogger->isRecording());
  EXPECT_FALSE(mpLogger->getRecordingDir(lPath, 3));
  EXPECT_TRUE(mLog.has("Logger::getRecordingDir(): Can't copy path: Dir=" + lDir.path()));
  nfw::finalizeAppLog();
}

TEST_F(LoggerTest, LinesLeaveTheRoomToDataWhileTheFileTakesNothing) {
  nfwtest::TempDir lDir;
  ASSERT_TRUE(mpLogger->startRecord(lDir.path().c_str(), "drive", nullptr));
  const auto lWrite = [](const char* npData) { Logger::write(20, npData, 1); };
  {
    const seams::Failing lFull(seams::FILE_WRITE);
    lWrite("1");
    APPLOG(77, nfw::LOG_LEVEL_ERROR, "before");
    mpLogger->flush();
    for (int i = 0; i < 3; ++i) APPLOG(77, nfw::LOG_LEVEL_ERROR, "full");
    LOGGERLOG(21, "data");
    lWrite("2");
  }
  APPLOG(77, nfw::LOG_LEVEL_ERROR, "not tried yet");
  lWrite("3");
  mClock.advance(1000);
  APPLOG(77, nfw::LOG_LEVEL_ERROR, "room again");
  mpLogger->stopRecord();
  EXPECT_EQ((Strings{"1", "ERR: before", "data", "2", "3", "ERR: room again"}), dataOf(lDir.path()));
  EXPECT_EQ(3u, mLog.count("full"));
  EXPECT_TRUE(mLog.has("not tried yet"));
}

TEST_F(LoggerTest, TellsRecordEventListeners) {
  nfwtest::TempDir lDir;
  nfwtest::RecordListener lOne(mNotes, "one"), lTwo(mNotes, "two"), lThree(mNotes, "three");
  EXPECT_TRUE(mpLogger->attachRecordEventListener(&lOne));
  EXPECT_TRUE(mpLogger->attachRecordEventListener(&lOne));
  EXPECT_TRUE(mpLogger->attachRecordEventListener(nullptr));
  EXPECT_TRUE(mpLogger->attachRecordEventListener(&lTwo));
  EXPECT_FALSE(mpLogger->attachRecordEventListener(&lThree));
  EXPECT_TRUE(mpLogger->stopRecord());  // without a start: not told
  ASSERT_TRUE(mpLogger->startRecord(lDir.path().c_str(), "drive", nullptr));
  EXPECT_TRUE(mpLogger->stopRecord());
  EXPECT_TRUE(mpLogger->stopRecord());
  ASSERT_TRUE(mNotes.waitFor(6));
  EXPECT_EQ((Strings{"two start", "one start", "two stop", "one stop", "two stop", "one stop"}), mNotes.all());
  EXPECT_TRUE(mpLogger->detachRecordEventListener(&lThree) && play(logRecord(20, 0, "a")));
  const seams::Failing lFailing(seams::POST);
  EXPECT_FALSE(mpLogger->pausePlay() || mpLogger->resumePlay() || mpLogger->stepPlay() || mpLogger->setPlayRate(10) ||
               mpLogger->seekPlay(0));
  EXPECT_FALSE(mpLogger->startRecord(lDir.path().c_str(), "drive", nullptr));
  EXPECT_TRUE(mpLogger->isRecording());
  EXPECT_FALSE(mpLogger->stopRecord());
  EXPECT_FALSE(mpLogger->attachRecordEventListener(&lTwo));
  EXPECT_FALSE(mpLogger->detachRecordEventListener(&lTwo));
  mpLogger->shutdown();
  for (const char* const lpLine :
       {"Logger::startRecord(): Can't post thread", "Logger::stopRecord(): Can't post thread",
        "Logger::attachRecordEventListener(): Can't send thread",
        "Logger::detachRecordEventListener(): Can't send thread",
        "Logger::shutdown(): LogRecordEventListener remain: Count=2", "Logger::pausePlay(): Can't send thread",
        "Logger::resumePlay(): Can't send thread", "Logger::stepPlay(): Can't send thread",
        "Logger::setPlayRate(): Can't send thread", "Logger::seekPlay(): Can't send thread"}) {
    EXPECT_TRUE(mLog.has(lpLine)) << lpLine;
  }
}

// --- playing

TEST_F(LoggerTest, PlaysAFileToItsListeners) {
  Notes lOtherNotes;
  nfwtest::PlayListener lOther(lOtherNotes);
  lOther.mHasTicks = false;
  EXPECT_TRUE(mpLogger->attachPlayer(&mFirst));
  EXPECT_TRUE(mpLogger->attachPlayer(&mSecond));
  EXPECT_TRUE(mpLogger->attachPlayListener(20, &mListener));
  EXPECT_TRUE(mpLogger->attachPlayListener(21, &lOther));
  char lPath[300];
  EXPECT_FALSE(mpLogger->getPlayingDir(lPath, sizeof lPath));
  EXPECT_TRUE(mLog.has("Logger::getPlayingDir(): Can't extract directory path: File="));
  EXPECT_TRUE(mpLogger->stopPlay());                              // nothing plays: no effect
  mFirst.mOnStart = [&] { EXPECT_TRUE(mpLogger->seekPlay(0)); };  // it begins there, without a seek
  for (int i = 0; i < 2; ++i) {
    mNotes.clear();
    lOtherNotes.clear();
    ASSERT_TRUE(play(logRecord(20, 0, "a") + logRecord(21, 20, "b") + logRecord(20, 40, "c")));
    EXPECT_FALSE(mpLogger->startPlay(mPath.c_str()));
    EXPECT_FALSE(mpLogger->attachPlayListener(22, &mListener));
    EXPECT_TRUE(mpLogger->isPlaying());
    EXPECT_TRUE(mpLogger->getPlayingDir(lPath, sizeof lPath));
    EXPECT_EQ(mDir.path(), lPath);
    ASSERT_TRUE(pumpTo(6));
    EXPECT_TRUE(mpLogger->isPlaying());
    EXPECT_TRUE(mpLogger->stopPlay());
    EXPECT_FALSE(mpLogger->isPlaying());
    EXPECT_EQ(
        (Strings{"second start", "first start", "a", "c", "second end 0", "first end 0", "second stop", "first stop"}),
        mNotes.all());
    EXPECT_EQ(Strings{"b"}, lOtherNotes.all());
    EXPECT_FALSE(mLog.has("Logger::onStartPlay(): Can't start play: Id=0x00000014"));
  }
}

TEST_F(LoggerTest, HasASecondToReadAhead) {
  mListener.mHasTicks = true;
  EXPECT_TRUE(mpLogger->attachPlayListener(20, &mListener));
  ASSERT_TRUE(play(logRecord(20, 10, "a") + logRecord(20, 11, "b") + logRecord(20, 9, "old")));
  EXPECT_TRUE(
      mLog.waitFor("LogPlayDataDispatcher::onSetTimer(): Log is skipped: Invalid log time: Target=9 msec "
                   "Base=10 msec LogPos=100 Id=0x00000014"));  // all is read
  mClock.advance(1000);
  EXPECT_TRUE(mNotes.waitFor(1));
  mClock.advance(1);
  EXPECT_TRUE(mNotes.waitFor(2));
  EXPECT_EQ((Strings{"101000:a", "101001:b"}), mNotes.all());
}

TEST_F(LoggerTest, EndsAtOnceWhereNothingCanBeStarted) {
  attach();
  ASSERT_TRUE(mpLogger->startPlay((mDir / "none").c_str()));
  ASSERT_TRUE(mNotes.waitFor(2));
  mpLogger->stopPlay();
  EXPECT_EQ((Strings{"first start", "first end 1", "first stop"}), mNotes.all());
  EXPECT_TRUE(mLog.has("Logger::onStartPlay(): Can't start play: Id=0x00000014"));
  EXPECT_FALSE(mpLogger->startPlay(nullptr));
  EXPECT_TRUE(mLog.has("Logger::startPlay(): Can't copy path"));
  const seams::Failing lFailing(seams::POST);
  EXPECT_FALSE(mpLogger->startPlay(mPath.c_str()));
  EXPECT_TRUE(mLog.has("Logger::startPlay(): Can't post thread"));
  EXPECT_FALSE(mpLogger->isPlaying());
  EXPECT_FALSE(mpLogger->stopPlay());
  EXPECT_TRUE(mLog.has("Logger::stopPlay(): Can't send thread"));
}

TEST_F(LoggerTest, ListsHaveTheirLimits) {
  nfwtest::Player lThird(mNotes, "third"), lFourth(mNotes, "fourth");
  for (nfw::LogPlayer* const lpPlayer : {&mFirst, &mSecond, &lThird, &mFirst})
    EXPECT_TRUE(mpLogger->attachPlayer(lpPlayer));
  EXPECT_FALSE(mpLogger->attachPlayer(&lFourth));
  EXPECT_TRUE(mpLogger->attachPlayer(nullptr));
  EXPECT_TRUE(mpLogger->detachPlayer(&lFourth));
  EXPECT_TRUE(mpLogger->attachPlayListener(-5, nullptr));
  EXPECT_FALSE(mpLogger->attachPlayListener(-5, &mListener));
  EXPECT_TRUE(mpLogger->attachPlayListener(20, &mListener));
  EXPECT_FALSE(mpLogger->attachPlayListener(20, &mOther));
  EXPECT_TRUE(mpLogger->attachPlayListener(21, &mListener));
  EXPECT_FALSE(mpLogger->attachPlayListener(21, &mOther));  // full: the id is not looked at
  EXPECT_EQ(Strings{"Logger::attachPlayListenerInternal(): Duplicate Id=20"}, mLog.texts());
  EXPECT_TRUE(mpLogger->detachPlayListener(&mListener));  // from both
  EXPECT_TRUE(mpLogger->attachPlayListener(20, &mOther));
  mpLogger->shutdown();
  EXPECT_TRUE(mLog.has("Logger::shutdown(): LogPlayDataDispatcher remain: Count=1"));
  EXPECT_TRUE(mLog.has("Logger::shutdown(): LogPlayer remain: Count=3"));
  for (const auto& lLine : mLog.lines())
    EXPECT_EQ(lLine.mText.find("remain") != std::string::npos ? 2 : 1, lLine.mLevel);
  EXPECT_FALSE(mpLogger->initialize());
  EXPECT_FALSE(mpLogger->attachPlayer(&mFirst));
  EXPECT_FALSE(mpLogger->startPlay(mPath.c_str()));
  EXPECT_FALSE(mpLogger->stopPlay());
  EXPECT_FALSE(mpLogger->startRecord(mDir.path().c_str(), "x", nullptr));
}

// --- from inside the calls

TEST_F(LoggerTest, PlayersMayDoEverythingFromInsideTheirCalls) {
  attach();
  mpLogger->attachPlayer(&mSecond);
  const std::string lFile = logRecord(20, 0, "a") + logRecord(21, 40, "for nobody");

  // The walk under way goes on behind the stop's, and where it was to begin is over with it.
  mSecond.mOnStart = [&] { EXPECT_TRUE(mpLogger->seekPlay(20) && mpLogger->stopPlay()); };
  ASSERT_TRUE(play(lFile));
  ASSERT_TRUE(mNotes.waitFor(4));
  EXPECT_EQ((Strings{"second start", "second stop", "first stop", "first start"}), mNotes.all());
  EXPECT_FALSE(mpLogger->isPlaying());
  mSecond.mOnStart = [] {};

  mNotes.clear();
  mSecond.mOnStop = [&] {
    mpLogger->stopPlay();
    EXPECT_FALSE(mpLogger->startPlay(mPath.c_str()));
  };
  mSecond.mOnEnd = [&] {  // ends this playback and begins another
    mpLogger->stopPlay();
    mpLogger->detachPlayer(&mSecond);
    mpLogger->startPlay(mPath.c_str());
  };
  const char* const lpPath = mPath.c_str();
  ASSERT_TRUE(mpLogger->startPlay(&lpPath, 1));
  ASSERT_TRUE(pumpTo(10));
  EXPECT_EQ((Strings{"second start", "first start", "a", "second end 0", "second stop", "first stop", "first end 0",
                     "first start", "a", "first end 0"}),
            mNotes.all());
  mpLogger->stopPlay();
  mSecond.mOnEnd = [] {};

  mNotes.clear();
  mFirst.mOnStart = [&] {
    EXPECT_TRUE(mpLogger->detachPlayListener(&mListener));
    EXPECT_TRUE(mpLogger->attachPlayer(&mSecond));  // not told of this start any more
  };
  ASSERT_TRUE(play(lFile));
  ASSERT_TRUE(mNotes.waitFor(3));
  EXPECT_EQ((Strings{"first start", "second end 1", "first end 1"}), mNotes.all());
}

TEST_F(LoggerTest, AStopOvertakesAStartThatIsStillQueued) {
  nfwtest::TempDir lDir;
  nfwtest::RecordListener lRecordListener(mNotes, "record");
  attach();
  mpLogger->attachRecordEventListener(&lRecordListener);
  lRecordListener.mOnStart = [&] {  // on the logger's thread: nothing queued is handled meanwhile
    EXPECT_TRUE(play(logRecord(20, 0, "a")));
    EXPECT_TRUE(mpLogger->detachPlayListener(nullptr));  // queues a judgement of the end
    EXPECT_TRUE(mpLogger->stopPlay());
    EXPECT_TRUE(mpLogger->startPlay(mPath.c_str()));
  };
  ASSERT_TRUE(mpLogger->startRecord(lDir.path().c_str(), "drive", nullptr));
  ASSERT_TRUE(pumpTo(5));
  EXPECT_EQ((Strings{"record start", "first stop", "first start", "a", "first end 0"}), mNotes.all());
}

TEST_F(LoggerTest, PlayListenersMayStopAndDetachFromInsideTheirCalls) {
  attach();
  mpLogger->attachPlayListener(21, &mOther);
  mListener.mOnData = [&] {
    EXPECT_FALSE(mpLogger->attachPlayListener(22, &mListener) || mpLogger->attachPlayer(&mSecond));
    EXPECT_TRUE(mpLogger->detachPlayListener(&mListener));
  };
  mOther.mOnData = [&] { EXPECT_TRUE(mNotes.waitFor(3) && mpLogger->stopPlay() && mpLogger->detachPlayer(&mSecond)); };
  ASSERT_TRUE(play(logRecord(20, 0, "a") + logRecord(20, 0, "b") + logRecord(21, 500, "c")));
  ASSERT_TRUE(pumpTo(4));
  Strings lNotes = mNotes.all();
  std::sort(lNotes.begin() + 1, lNotes.begin() + 3);  // two replays, each on a thread of its own
  EXPECT_EQ((Strings{"first start", "a", "c", "first stop"}), lNotes);
  EXPECT_TRUE(mpLogger->stopPlay());  // behind everything posted before
  EXPECT_FALSE(mpLogger->isPlaying());
}

// What was posted before waits here until the logger's thread has stopped, attached and started anew.
TEST_F(LoggerTest, WhatIsAskedForInsideAPlayListenerDoesNothingToWhatCameAfterwards) {
  nfwtest::TempDir lDir;
  nfwtest::RecordListener lRecordListener(mNotes, "record");
  attach();
  mpLogger->attachRecordEventListener(&lRecordListener);
  mListener.mOnData = [&] {
    EXPECT_TRUE(mpLogger->pausePlay() && mpLogger->stopPlay() && mpLogger->detachPlayListener(&mListener));
    EXPECT_TRUE(mpLogger->detachPlayer(&mFirst) && mpLogger->detachRecordEventListener(&lRecordListener));
    mNotes.add("asked");
  };
  lRecordListener.mOnStart = [&] {
    EXPECT_TRUE(pumpTo(4));
    EXPECT_TRUE(mpLogger->stopPlay() && mpLogger->detachPlayListener(&mListener));
    mListener.mOnData = [] {};
    EXPECT_TRUE(mpLogger->attachPlayListener(20, &mListener) && mpLogger->attachPlayer(&mFirst));
    EXPECT_TRUE(mpLogger->attachRecordEventListener(&lRecordListener) && mpLogger->startPlay(mPath.c_str()));
  };
  ASSERT_TRUE(play(logRecord(20, 0, "a")));
  ASSERT_TRUE(mpLogger->startRecord(lDir.path().c_str(), "drive", nullptr));
  ASSERT_TRUE(pumpTo(8));
  mpLogger->stopRecord();
  ASSERT_TRUE(mNotes.waitFor(9));
  EXPECT_EQ((Strings{"first start", "record start", "a", "asked", "first stop", "first start", "a", "first end 0",
                     "record stop"}),
            mNotes.all());
}

TEST_F(LoggerTest, TheEndOfEveryReplayFindsItsPlaceInTheQueue) {
  Logger::destroy();
  Logger::initializeMaxLogTypeNum(70);
  mpLogger = Logger::get();
  ASSERT_TRUE(mpLogger->initialize() && mpLogger->attachPlayer(&mFirst));
  for (int i = 0; i < 70; ++i) EXPECT_TRUE(mpLogger->attachPlayListener(100 + i, i == 0 ? &mOther : &mListener));
  std::thread lDetaching;
  mFirst.mOnStart = [&] {  // nothing of this is handled before all replays are started
    for (int i = 0; i < 60; ++i) mpLogger->setLogDispatchEnd(nullptr);
    lDetaching = std::thread([&] { EXPECT_TRUE(mpLogger->detachPlayListener(&mOther)); });  // with its end alone
  };
  ASSERT_TRUE(play(logRecord(20, 0, "for nobody")));
  EXPECT_TRUE(mNotes.waitFor(2));
  lDetaching.join();
  EXPECT_EQ((Strings{"first start", "first end 0"}), mNotes.all());
  EXPECT_TRUE(mLog.texts().empty());
}

TEST_F(LoggerTest, AShutdownSavesWhatIsBufferedWhileAPlayerStaysInItsCall) {
  nfwtest::TempDir lDir;
  Notes lGo;
  mFirst.mOnStart = [&] { EXPECT_TRUE(lGo.waitFor(1)); };
  attach();
  ASSERT_TRUE(mpLogger->startRecord(lDir.path().c_str(), "drive", nullptr));
  Logger::write(20, "kept", 4);
  ASSERT_TRUE(play(logRecord(20, 0, "a")) && mNotes.waitFor(1));
  std::thread lStop([&] { mpLogger->stopPlay(); });  // waits for the player
  std::thread lShutdown([&] { mpLogger->shutdown(); });
  EXPECT_TRUE(nfwtest::pump(mClock, [&] { return dataOf(lDir.path()) == Strings{"kept"}; }));
  lGo.add("on");
  lStop.join();
  lShutdown.join();
  EXPECT_TRUE(mLog.has("Logger::shutdown(): LogPlayDataDispatcher remain: Count=1"));
  EXPECT_TRUE(mLog.has("Logger::shutdown(): LogPlayer remain: Count=1"));
}

TEST_F(LoggerTest, DetachingTheLastReplayEndsPlayback) {
  attach();
  ASSERT_TRUE(play(logRecord(20, 0, "a")));
  ASSERT_TRUE(mNotes.waitFor(1));
  EXPECT_TRUE(mpLogger->detachPlayListener(&mListener));
  ASSERT_TRUE(mNotes.waitFor(2));
  EXPECT_EQ((Strings{"first start", "first end 0"}), mNotes.all());
  mpLogger->setLogDispatchEnd(nullptr);  // judged again: told once
  EXPECT_TRUE(mpLogger->stopPlay());
  EXPECT_EQ((Strings{"first start", "first end 0", "first stop"}), mNotes.all());
}

TEST(LoggerLifeTest, AThreadThatCannotStartIsNamed) {
  const seams::CapturedLog lLog;
  {
    const seams::Failing lFailing(seams::THREAD_START, 0, 1);
    EXPECT_FALSE(Logger::get()->initialize());
    EXPECT_TRUE(lLog.has("Thread Start[nfw::Logger_Thread]"));
  }
  Logger::destroy();
  const seams::Failing lFailing(seams::THREAD_START, 1, 1);
  EXPECT_FALSE(Logger::get()->initialize());
  EXPECT_TRUE(lLog.has("Thread Start[nfw::LogWriter_Thread]"));
  EXPECT_TRUE(lLog.has("Logger::initialize(): Can't initialize LogWriter"));
  for (const auto& lLine : lLog.lines()) EXPECT_EQ(1, lLine.mLevel) << lLine.mText;
  Logger::destroy();
  Logger::destroy();
  Logger::write(1, "nobody", 6);
}

}  // namespace
