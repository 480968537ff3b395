// Everything at once: SDKs that keep calling, replays switched on and off, listeners that come and go, services that
// are shut down and destroyed in any order.
#include <algorithm>
#include <atomic>

#include "LogRecords.h"
#include "Positioning.h"

namespace {

using namespace nfwtest;

/// The SDKs' threads, calling until they are destroyed.
class Feeders {
 public:
  Feeders() {
    for (int i = 0; i < 2; ++i) mThreads.emplace_back([this] { run([] { feedEpoch(); }); });
    mThreads.emplace_back([this] { run([] { deadreckoninghost::feed(makeReport(2, 2)); }); });
  }
  ~Feeders() {
    mIsOver = true;
    for (std::thread& lThread : mThreads) lThread.join();
  }

 private:
  template <class Feed>
  void run(Feed nFeed) {
    while (!mIsOver) {
      nFeed();
      std::this_thread::yield();
    }
  }
  std::atomic<bool> mIsOver{false};
  std::vector<std::thread> mThreads;
};

void discard(Notes& nNotes) {
  if (nNotes.count() > 1000) nNotes.clear();
}

class PositioningStress : public testing::Test {
 protected:
  PositioningStress() {
    const std::string lSentence = sensorData(VTG_TEXT), lReport = sensorData(makeReport(1, 1));
    std::string lLog, lSensor;
    for (unsigned int i = 0; i < 2000; ++i) {
      lLog += logRecord(GNSS_LOGGER_ID, i, GGA_TEXT) + logRecord(DEAD_RECKONING_LOGGER_ID, i, RMC_TEXT) +
              logRecord(DEAD_RECKONING_LOGGER_ID, i, PUBX_TEXT);
      lSensor += sensorRecord(0, 1, i, lSentence) + sensorRecord(1, 1, i, lReport);
    }
    writeFile(mDir / "log", lLog);
    writeFile(mDir / "sensor", lSensor);
  }

  seams::CapturedLog mLog;
  seams::ManualClock mClock;
  TempDir mDir;
  Notes mNotes;
  std::atomic<unsigned int> mCalls{0};
  GnssListener mGnss{mNotes}, mLeaver{mNotes};
  DeadReckoningListener mDeadReckoning{mNotes}, mSecond{mNotes};
  LogServices mLogs;
};

TEST_F(PositioningStress, SourcesSwitchAndListenersComeAndGoWhileTheSdksCall) {
  nfw::Gnss& lGnss = *nfw::Gnss::get();
  nfw::DeadReckoning& lDeadReckoning = *nfw::DeadReckoning::get();
  ASSERT_TRUE(lGnss.initialize());
  ASSERT_TRUE(lDeadReckoning.initialize());
  mLogs.startRecord();
  mGnss.mOnCall = [this] { ++mCalls, discard(mNotes); };
  mLeaver.mOnCall = [this] {  // itself, the other, and back again
    nfw::Gnss* const lpGnss = nfw::Gnss::get();
    lpGnss->detachNmeaDataListener(&mLeaver);
    lpGnss->detachParsedGgaDataListener(&mGnss);
    lpGnss->attachParsedGgaDataListener(&mGnss);
  };
  mSecond.mOnCall = [this] {
    nfw::DeadReckoning::get()->detachDeadReckoningNmeaDataListener(&mSecond);
    nfw::DeadReckoning::get()->detachDeadReckoningNmeaDataListener(&mDeadReckoning);
  };
  const Feeders lFeeders;
  std::atomic<bool> lIsOver{false};
  std::thread lSwitcher([&] {
    for (unsigned int i = 0; !lIsOver; ++i) {
      nfw::Logger::get()->startPlay((mDir / "log").c_str());
      if (i % 2 == 0) nfw::SensorSysLoggerManager::get()->startPlay((mDir / "sensor").c_str());
      for (int lStep = 0; lStep < 30; ++lStep) mClock.advance(50);
      if (i % 3 == 0) nfw::Logger::get()->stopPlay();
      nfw::SensorSysLoggerManager::get()->stopPlay();
      nfw::Logger::get()->stopPlay();
    }
  });
  for (int i = 0; i < 40; ++i) {
    EXPECT_TRUE(mGnss.attachTo(lGnss));
    EXPECT_TRUE(lGnss.attachNmeaDataListener(&mLeaver));
    EXPECT_TRUE(lDeadReckoning.attachDeadReckoningNmeaDataListener(&mDeadReckoning));
    EXPECT_TRUE(lDeadReckoning.attachDeadReckoningNmeaDataListener(&mSecond));
    lGnss.detachNmeaDataListener(&mGnss);
    lDeadReckoning.detachDeadReckoningNmeaDataListener(&mSecond);
    mLog.clear();
  }
  EXPECT_TRUE(mGnss.attachTo(lGnss));
  const unsigned int lBefore = mCalls;
  EXPECT_TRUE(pump(mClock, [&] { return mCalls >= lBefore + 10; }));
  lIsOver = true;
  lSwitcher.join();
  EXPECT_TRUE(nfw::Logger::get()->isRecording());
  lGnss.shutdown();  // here, for the listeners call get(), which destroy() would hold up
  lDeadReckoning.finalize();
}

// Whoever goes first, with or without a shutdown, in the midst of a replay.
TEST_F(PositioningStress, ServicesGoInAnyOrderWhileTheSdksCall) {
  struct Service {
    void (*mpShutdown)();
    void (*mpDestroy)();
    bool (*mpInitialize)();
  };
  const Service SERVICES[] = {
      {[] { nfw::Gnss::get()->shutdown(); }, &nfw::Gnss::destroy, [] { return nfw::Gnss::get()->initialize(); }},
      {[] { nfw::DeadReckoning::get()->finalize(); }, &nfw::DeadReckoning::destroy,
       [] { return nfw::DeadReckoning::get()->initialize(); }},
      {[] { nfw::SensorSysLoggerManager::get()->shutdown(); }, &nfw::SensorSysLoggerManager::destroy, nullptr},
      {[] { nfw::Logger::get()->shutdown(); }, &nfw::Logger::destroy, nullptr},
  };
  const Feeders lFeeders;
  int lOrder[] = {0, 1, 2, 3};
  unsigned int lRound = 0;
  do {
    for (const Service& lService : SERVICES) lService.mpDestroy();
    ASSERT_TRUE(nfw::Logger::get()->initialize());
    ASSERT_TRUE(nfw::SensorSysLoggerManager::get()->initialize());
    for (const Service& lService : SERVICES) ASSERT_TRUE(lService.mpInitialize == nullptr || lService.mpInitialize());
    ASSERT_TRUE(mGnss.attachTo(*nfw::Gnss::get()));
    ASSERT_TRUE(nfw::DeadReckoning::get()->attachDeadReckoningNmeaDataListener(&mDeadReckoning));
    if (lRound % 2 == 0) nfw::Logger::get()->startPlay((mDir / "log").c_str());
    if (lRound % 3 == 0) nfw::SensorSysLoggerManager::get()->startPlay((mDir / "sensor").c_str());
    mClock.advance(1010);
    for (const int lIndex : lOrder) {
      if ((lRound & 1U << lIndex) != 0) SERVICES[lIndex].mpShutdown();
      SERVICES[lIndex].mpDestroy();
    }
    ++lRound;
    mNotes.clear();
    mLog.clear();
  } while (std::next_permutation(std::begin(lOrder), std::end(lOrder)));
  EXPECT_EQ(24U, lRound);
}

}  // namespace
