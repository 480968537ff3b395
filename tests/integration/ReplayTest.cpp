// A drive as it was received, as it was recorded, and as both logs play it back.
#include "LogRecords.h"
#include "Positioning.h"

namespace {

using namespace nfwtest;

class ReplayTest : public testing::Test {
 protected:
  void attach() {
    ASSERT_TRUE(nfw::Gnss::get()->initialize());
    ASSERT_TRUE(nfw::DeadReckoning::get()->initialize());
    ASSERT_TRUE(mGnss.attachTo(*nfw::Gnss::get()));
    ASSERT_TRUE(nfw::DeadReckoning::get()->attachDeadReckoningNmeaDataListener(&mDeadReckoning));
  }
  template <class Service>
  Strings play(Service& nService, const std::string& nPath, const Notes& nNotes, size_t nCount) {
    mGnssNotes.clear();
    mDeadReckoningNotes.clear();
    EXPECT_TRUE(nService.startPlay(nPath.c_str()));
    EXPECT_TRUE(pump(mClock, [&] { return nNotes.count() >= nCount; }));
    EXPECT_TRUE(nService.stopPlay());
    return nNotes.all();
  }

  seams::CapturedLog mLog;
  seams::ManualClock mClock;
  Notes mGnssNotes, mDeadReckoningNotes;
  GnssListener mGnss{mGnssNotes};
  DeadReckoningListener mDeadReckoning{mDeadReckoningNotes};
  LogServices mLogs;  // goes first, for it calls the others
};

TEST_F(ReplayTest, ListenersCannotTellSatelliteReplayFromLiveData) {
  attach();
  mLogs.startRecord();
  for (int i = 0; i < 3; ++i) feedEpoch(), mClock.advance(100);
  ASSERT_TRUE(mGnssNotes.waitFor(3 * EPOCH_NOTE_NUM));
  const Strings lLive = mGnssNotes.all();
  nfw::Gnss::get()->shutdown();  // the queue is recorded to its end
  mLogs.stopRecord();
  nfw::Gnss::destroy();
  ASSERT_TRUE(nfw::Gnss::get()->initialize());
  ASSERT_TRUE(mGnss.attachTo(*nfw::Gnss::get()));

  EXPECT_EQ(lLive, play(*nfw::Logger::get(), mLogs.textFile(), mGnssNotes, lLive.size()));
  Strings lWithoutZda;
  for (const std::string& lNote : lLive) {
    if (lNote != ZDA_TEXT && lNote.compare(0, 3, "ZDA") != 0) lWithoutZda.push_back(lNote);
  }
  EXPECT_EQ(3 * (EPOCH_NOTE_NUM - 2), lWithoutZda.size());
  EXPECT_EQ(lWithoutZda, play(*nfw::SensorSysLoggerManager::get(), mLogs.sensorFile(), mGnssNotes, lWithoutZda.size()));
  EXPECT_EQ(Strings{}, errors(mLog));
}

TEST_F(ReplayTest, ListenersCannotTellDeadReckoningReplayFromLiveData) {
  attach();
  mLogs.startRecord();
  size_t lCount = 0;
  for (const unsigned int lNum : {4U, 0U, 2U}) {
    deadreckoninghost::feed(makeReport(lNum, 4 * lNum));
    lCount += 4 + 5 * lNum;
    mClock.advance(100);
  }
  ASSERT_TRUE(mDeadReckoningNotes.waitFor(lCount));
  const Strings lLive = mDeadReckoningNotes.all();
  nfw::DeadReckoning::get()->finalize();
  mLogs.stopRecord();
  nfw::DeadReckoning::destroy();
  ASSERT_TRUE(nfw::DeadReckoning::get()->initialize());
  ASSERT_TRUE(nfw::DeadReckoning::get()->attachDeadReckoningNmeaDataListener(&mDeadReckoning));

  EXPECT_EQ(lLive, play(*nfw::Logger::get(), mLogs.textFile(), mDeadReckoningNotes, lCount));
  EXPECT_EQ(lLive, play(*nfw::SensorSysLoggerManager::get(), mLogs.sensorFile(), mDeadReckoningNotes, lCount));
  EXPECT_EQ(Strings{}, errors(mLog));
}

}  // namespace
