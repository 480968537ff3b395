// A drive as it was received, as it was recorded, and as both logs play it back.
#include "LogRecords.h"
#include "Positioning.h"

namespace {

using namespace nfwtest;

/// What listeners note of live data, or a part of it, and what they note of a replay in its place: "" nothing, "|"
/// between two notes. docs/replay.md tells the same in words.
struct Difference {
  std::string mLive, mReplay;
};
using Differences = std::vector<Difference>;

const Differences OF_TEXT_LOG = {
    {" 26 26 1 82 47 187 28 28 1 43 46 56", ""},  // the satellites of the last message of a group
    {" 0 1 1 1 3 3 1 40 46 83", " 5 1 1 1"},      // a kind of satellite without a number
};

const char* const QUASI_ZENITH_GSV = "$GQGSV,1,1,01,03,40,083,46*47\r\n";
const char* const OTHER_KIND = "$GNGNS,092321.000,,,,,NN,00,,,,,*46\r\n";
const char* const NO_FIX_YET = "$GPGGA,,,,,,0,00,99.99,,,,,,*48\r\n";
const char* const NO_POSITION = "$GPRMC,083559.000,V,,,,,,,091202,,,N*47\r\n";
const char* const MANY_DECIMALS = "$GPGLL,4717.1136412,N,00833.91565,E,092321.5,A,A*56\r\n";
const char* const MANY_SATELLITES = "$GNGGA,092725.000,4717.11399,N,00833.91590,E,2,18,1.01,499.65,M,48.0,M,,*42\r\n";
const char* const LAST = "$GPVTG,1.00,T,2.00,M,3.000,N,4.000,K,A*27\r\n";
const char* const LAST_NOTE = "VTG 1 1 2 3 4 1";

const Differences OF_SENSOR_LOG = {
    OF_TEXT_LOG[0],
    OF_TEXT_LOG[1],
    {ZDA_TEXT, ""},
    {"ZDA 1 8 27 10 0 2002 9 16", ""},
    {OTHER_KIND, ""},
    {NO_FIX_YET,
     "$GPGGA,000000.000,0000.00000,N,00000.00000,E,0,00,99.99,0.0,M,0.0,M,,*6d\r\n|"
     "GGA 1 0 0 0 0 0 0 0 1 0 0 0 3 0 0 99.99"},
    {NO_POSITION, "$GPRMC,083559.000,V,0000.00000,N,00000.00000,E,0.000,0.00,091202,0.0,E,N*27\r\n"},
    {"RMC 1 8 35 59 0 0 0 0 0 0 0 0 0 0 0 0", "RMC 1 8 35 59 0 0 0 0 0 1 0 0 0 3 0 0"},
    {MANY_DECIMALS, "$GPGLL,4717.11364,N,00833.91565,E,092321.500,A,A*55\r\n"},
    {" 9 23 21 5 4717.1136412", " 9 23 21 500 4717.11364"},
    {MANY_SATELLITES, "$GNGGA,092725.000,4717.11399,N,00833.91590,E,3,02,1.01,499.7,M,48.0,M,,*7c\r\n"},
    {"GGA 4 9 27 25 0 4717.11399 47 17.1139 1 833.9159 8 33.9159 3 2 18 1.01 499.65 48", ""},
};

Strings withDifferences(const Strings& nLive, const Differences& nDifferences) {
  Strings lReplay;
  for (std::string lNote : nLive) {
    for (const Difference& lDifference : nDifferences) {
      const size_t lAt = lNote.find(lDifference.mLive);
      if (lAt != std::string::npos) lNote.replace(lAt, lDifference.mLive.size(), lDifference.mReplay);
    }
    const size_t lBar = lNote.find('|');
    if (!lNote.empty()) lReplay.push_back(lNote.substr(0, lBar));
    if (lBar != std::string::npos) lReplay.push_back(lNote.substr(lBar + 1));
  }
  return lReplay;
}

/// A text of which a failure shows the lines that differ.
std::string onePerLine(const Strings& nNotes) {
  std::string lText;
  for (const std::string& lNote : nNotes) lText += lNote + '\n';
  return lText;
}

class ReplayTest : public testing::Test {
 protected:
  void attach() {
    ASSERT_TRUE(nfw::Gnss::get()->initialize());
    ASSERT_TRUE(nfw::DeadReckoning::get()->initialize());
    ASSERT_TRUE(mGnss.attachTo(*nfw::Gnss::get()));
    ASSERT_TRUE(nfw::DeadReckoning::get()->attachDeadReckoningNmeaDataListener(&mDeadReckoning));
  }
  /// The receiver's sentences and what its SDK makes of them.
  void receive(std::initializer_list<const char*> nSentences) {
    for (const char* const lpSentence : nSentences) {
      EXPECT_TRUE(mReceiver.receive(lpSentence, static_cast<unsigned int>(strlen(lpSentence))));
      mReceiver.drain();
      mClock.advance(10);
    }
  }
  template <class Service>
  void expectReplay(const Strings& nExpected, Service& nService, const std::string& nPath, const Notes& nNotes) {
    mGnssNotes.clear();
    mDeadReckoningNotes.clear();
    EXPECT_TRUE(nService.startPlay(nPath.c_str()));
    pump(mClock, [&] { return nNotes.count() >= nExpected.size() && nNotes.all().back() == nExpected.back(); });
    EXPECT_TRUE(nService.stopPlay());
    EXPECT_EQ(onePerLine(nExpected), onePerLine(nNotes.all()));
  }

  seams::CapturedLog mLog;
  seams::ManualClock mClock;
  gpshost::Receiver mReceiver;
  Notes mGnssNotes, mDeadReckoningNotes;
  GnssListener mGnss{mGnssNotes};
  DeadReckoningListener mDeadReckoning{mDeadReckoningNotes};
  LogServices mLogs;  // goes first, for it calls the others
};

TEST_F(ReplayTest, SatelliteReplaysGiveLiveDataButForTheStatedDifferences) {
  attach();
  ASSERT_TRUE(mReceiver.start());
  mLogs.startRecord();
  for (int i = 0; i < 2; ++i) {
    receive(
        {RMC_TEXT, VTG_TEXT, GGA_TEXT, GSA_TEXT, GSV_TEXT_1, GSV_TEXT_2, GSV_TEXT_3, GLL_TEXT, ZDA_TEXT, PUBX_TEXT});
    receive({QUASI_ZENITH_GSV, OTHER_KIND, NO_FIX_YET, NO_POSITION, MANY_DECIMALS, MANY_SATELLITES});
  }
  receive({LAST});
  ASSERT_TRUE(pump(mClock, [&] { return mGnssNotes.count() > 0 && mGnssNotes.all().back() == LAST_NOTE; }));
  const Strings lLive = mGnssNotes.all();
  nfw::Gnss::get()->shutdown();  // the queue is recorded to its end
  mLogs.stopRecord();
  nfw::Gnss::destroy();
  ASSERT_TRUE(nfw::Gnss::get()->initialize());
  ASSERT_TRUE(mGnss.attachTo(*nfw::Gnss::get()));

  expectReplay(withDifferences(lLive, OF_TEXT_LOG), *nfw::Logger::get(), mLogs.textFile(), mGnssNotes);
  expectReplay(withDifferences(lLive, OF_SENSOR_LOG), *nfw::SensorSysLoggerManager::get(), mLogs.sensorFile(),
               mGnssNotes);
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

  expectReplay(lLive, *nfw::Logger::get(), mLogs.textFile(), mDeadReckoningNotes);
  expectReplay(lLive, *nfw::SensorSysLoggerManager::get(), mLogs.sensorFile(), mDeadReckoningNotes);
  EXPECT_EQ(Strings{}, errors(mLog));
}

// Five of the six kinds of an epoch come before the jump and the sixth behind it: that is no epoch.
TEST_F(ReplayTest, WhatIsGatheredBeginsAnewBehindASeek) {
  attach();
  const size_t lCount = 10;
  const std::string lPath = mLogs.sensorFile() + ".played";
  const auto lJump = [&](auto& nService, const std::string& nRecords, const std::string& nLast) {
    mGnssNotes.clear();
    writeFile(lPath, nRecords + nLast);
    ASSERT_TRUE(nService.startPlay(lPath.c_str()));
    ASSERT_TRUE(pump(mClock, [&] { return mGnssNotes.count() == lCount; }));
    EXPECT_TRUE(nService.seekPlay(3599500));
    ASSERT_TRUE(pump(mClock, [&] { return mGnssNotes.all().back() == LAST_NOTE; }));
    EXPECT_TRUE(nService.stopPlay());
    nfw::Gnss::get()->shutdown();  // what is queued comes first
    EXPECT_EQ(lCount + 2, mGnssNotes.count());
    ASSERT_TRUE(nfw::Gnss::get()->initialize());
  };
  std::string lTexts, lRecords;
  for (const char* const lpText : {RMC_TEXT, GGA_TEXT, GSA_TEXT, QUASI_ZENITH_GSV, GLL_TEXT}) {
    lTexts += logRecord(GNSS_LOGGER_ID, 0, lpText);
    lRecords += sensorRecord(0, 1, 0, sensorData(lpText));
  }
  lJump(*nfw::Logger::get(), lTexts, logRecord(GNSS_LOGGER_ID, 3600000, LAST));
  lJump(*nfw::SensorSysLoggerManager::get(), lRecords, sensorRecord(0, 1, 3600000, sensorData(LAST)));
}

}  // namespace
