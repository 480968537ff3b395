#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "GpsSdkRecords.h"
#include "LogRecords.h"
#include "NfwGpsSdkPlayer.h"
#include "Positioning.h"
#include "SharedThread.h"

namespace {

using namespace nfwtest;

const char POST_FAILS[] = "nfw::GpsSdkPlayer::notifyReceiveNmeaSentence(): Can't post thread: MsgId=-2147480574 ";
const char RECORD_FAILS[] = "nfw::GpsSdkPlayer::onReceiveNmeaData(): nfw::convertFromNmeaSentence() failed";

class GpsSdkPlayerTest : public testing::Test {
 protected:
  GpsSdkPlayerTest() { EXPECT_TRUE(mListener.attachTo(mDispatcher)); }
  Strings received(const std::string& nText) {
    mNotes.clear();
    mPlayer.notifyReceiveNmeaSentence(nText.data(), static_cast<unsigned int>(nText.size()));
    mThread.settle();
    return mNotes.all();
  }
  /// The texts of the data log, then the records of the sensor log as sentences.
  Strings recorded() {
    mLogs.stopRecord();
    Strings lTexts;
    for (const auto& lRecord : parseLogRecords(readFile(mLogs.textFile()))) {
      if (lRecord.mId == GNSS_LOGGER_ID) lTexts.push_back(lRecord.mData);
    }
    lTexts.push_back(readFile(mLogs.sensorFile()));
    return lTexts;
  }

  seams::CapturedLog mLog;
  const seams::ManualClock mClock;
  LogServices mLogs;
  TempDir mDir;
  Notes mNotes;
  GnssListener mListener{mNotes};
  SharedThread mThread{nfw::GnssDataDispatcher::getMaxMsgDataSize(), 256};
  nfw::GnssDataDispatcher mDispatcher{mThread.get(), 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  nfw::GpsSdkPlayer mPlayer{&mDispatcher, mThread.get(), GNSS_LOGGER_ID, 0};
};

TEST_F(GpsSdkPlayerTest, PassesOnUpTo130BytesAsTheyAreWhileItIsOn) {
  EXPECT_EQ(Strings{}, received(GGA_TEXT));  // off at first
  mPlayer.on();
  EXPECT_EQ(Strings{GGA_TEXT}, received(GGA_TEXT));
  EXPECT_EQ(Strings{std::string(130, 'x')}, received(std::string(130, 'x')));
  EXPECT_EQ(Strings{std::string("a\0b", 3)}, received(std::string("a\0b", 3)));
  EXPECT_EQ(Strings{""}, received(""));
  mLog.clear();
  EXPECT_EQ(Strings{}, received(std::string(131, 'x')));
  mPlayer.notifyReceiveNmeaSentence(nullptr, 5);
  mPlayer.off();
  EXPECT_EQ(Strings{}, received(GGA_TEXT));
  mPlayer.on();
  mThread.stop();
  mPlayer.notifyReceiveNmeaSentence(GGA_TEXT, 10);
  mThread.start();
  mThread.settle();
  EXPECT_EQ(Strings{}, mNotes.all());
  EXPECT_EQ(Strings{}, errors(mLog));
}

TEST_F(GpsSdkPlayerTest, RecordsOnOrOff) {
  mLogs.startRecord();
  const std::string lJunk(130, 'x');
  received(GGA_TEXT);
  mPlayer.on();
  for (const std::string& lText : Strings{VTG_TEXT, ZDA_TEXT, lJunk, std::string(131, 'x'), ""}) received(lText);
  EXPECT_EQ(
      (Strings{GGA_TEXT, VTG_TEXT, ZDA_TEXT, lJunk, "",
               sensorRecord(0, 1, 100000, sensorData(GGA_TEXT)) + sensorRecord(0, 1, 100000, sensorData(VTG_TEXT))}),
      recorded());
  EXPECT_EQ(2U, mLog.count(RECORD_FAILS));
  EXPECT_TRUE(mLog.has("nfw::NmeaBinaryLogDataVersion0::convertFromNmeaSentence(): Argument Error"));
}

TEST_F(GpsSdkPlayerTest, PositionsGoOnWhileTheSensorLogIsStuck) {
  const std::string lPipe = mDir / "pipe";
  ASSERT_EQ(0, mkfifo(lPipe.c_str(), 0600));
  const int lReadEnd = ::open(lPipe.c_str(), O_RDONLY | O_NONBLOCK);  // and nobody empties it
  ASSERT_TRUE(syslogservice::setBinaryLogFile(lPipe.c_str()));
  mLogs.startRecord();
  mPlayer.on();
  for (int i = 0; i < 5000; ++i) EXPECT_EQ(Strings{GGA_TEXT}, received(GGA_TEXT));  // more than a pipe holds
  EXPECT_EQ(Strings{}, errors(mLog));
  const syslogservice::BinaryLogCounts lCounts = syslogservice::binaryLogCounts();
  EXPECT_EQ(5000U, lCounts.mRecorded + lCounts.mWaiting);
  EXPECT_FALSE(syslogservice::flushBinaryLog(1));
  ::close(lReadEnd);
}

TEST_F(GpsSdkPlayerTest, SaysWhatItCannotHandle) {
  expectRefusals(mLog, mPlayer, "nfw::GpsSdkPlayer");
  mPlayer.on();
  {
    const seams::Failing lFailing(seams::POST);
    mPlayer.notifyReceiveNmeaSentence(GGA_TEXT, 10);
  }
  EXPECT_EQ((Strings{"nfw::NmeaDataDispatcher::dispatch(): Can't send thread", POST_FAILS}), errors(mLog));
}

TEST_F(GpsSdkPlayerTest, HandsOnEachRecordWhileItIsOn) {
  const auto lFeed = [this] {
    mNotes.clear();
    feedEpoch();
    mThread.settle();
    Strings lRecords;
    for (const std::string& lNote : mNotes.all()) {
      if (lNote[0] != '$') lRecords.push_back(lNote);
    }
    return lRecords;
  };
  ASSERT_TRUE(mPlayer.initialize());
  EXPECT_EQ(Strings{}, lFeed());
  mPlayer.on();
  using nfw::convertRecord;
  const PARSE_NMEA ALL = {GGA_RECORD, GLL_RECORD, GSA_RECORD, GSV_RECORD, RMC_RECORD, VTG_RECORD};
  const Strings lAll = {
      text(convertRecord(RMC_RECORD)), text(convertRecord(VTG_RECORD)), text(convertRecord(GGA_RECORD)),
      text(convertRecord(GSA_RECORD)), text(convertRecord(GSV_RECORD)), text(convertRecord(GLL_RECORD)),
      text(convertRecord(ALL)),        text(convertRecord(ZDA_RECORD)), text(convertRecord(PUBX_RECORD))};
  EXPECT_EQ(lAll, lFeed());
  mPlayer.notifyParseGgaSentence(nullptr);
  mPlayer.notifyParseNmeaSentence(nullptr);
  mPlayer.finalize();
  EXPECT_EQ(Strings{}, lFeed());
}

TEST(GpsSdkRecords, ValuesThatTheEnumerationDoesNotKnowBecomeZero) {
  const auto lMapped = [](auto nSet, auto nGet) {
    std::string lResult;
    for (int lValue = -1; lValue < 9; ++lValue) lResult += joined("", static_cast<int>(nGet(nSet(lValue))));
    return lResult;
  };
  const auto lGga = [](auto npField) {
    return [npField](int nValue) {
      GPGGA lRecord = GGA_RECORD;
      npField(lRecord) = nValue;
      return nfw::convertRecord(lRecord);
    };
  };
  EXPECT_EQ(" 0 0 1 2 3 4 0 0 0 0", lMapped(lGga([](GPGGA& n) -> int& { return n.satelliteType; }),
                                            [](const nfw::GgaSentence& n) { return n.satelliteType; }));
  EXPECT_EQ(" 0 0 1 2 3 4 0 0 0 0", lMapped(lGga([](GPGGA& n) -> int& { return n.quality; }),
                                            [](const nfw::GgaSentence& n) { return n.quality; }));
  EXPECT_EQ(" 0 0 1 2 3 4 0 0 0 0", lMapped(lGga([](GPGGA& n) -> int& { return n.latitude.direction; }),
                                            [](const nfw::GgaSentence& n) { return n.latitude.direction; }));
  const auto lVtg = [](int nValue) { return nfw::convertRecord(GPVTG{1, 0, 0, 0, 0, nValue}); };
  EXPECT_EQ(" 0 0 1 2 3 0 0 0 0 0", lMapped(lVtg, [](const nfw::VtgSentence& n) { return n.mode; }));
  const auto lGsa = [](int nValue) { return nfw::convertRecord(GPGSA{1, nValue, nValue, {}, 0, 0, 0}); };
  EXPECT_EQ(" 0 0 1 2 0 0 0 0 0 0", lMapped(lGsa, [](const nfw::GsaSentence& n) { return n.positioningType; }));
  EXPECT_EQ(" 0 0 1 2 0 0 0 0 0 0", lMapped(lGsa, [](const nfw::GsaSentence& n) { return n.mode; }));
  const auto lPubx = [](int nValue) {
    PUBX lRecord = PUBX_RECORD;
    lRecord.status = lRecord.drMode = nValue;
    return nfw::convertRecord(lRecord);
  };
  EXPECT_EQ(" 0 0 1 2 3 4 5 6 7 0", lMapped(lPubx, [](const nfw::PubxSentence& n) { return n.status; }));
  EXPECT_EQ(" 0 0 1 0 0 0 0 0 0 0", lMapped(lPubx, [](const nfw::PubxSentence& n) { return n.drMode; }));
  const auto lGll = [](int nValue) { return nfw::convertRecord(GPGLL{1, {}, {}, {}, nValue, nValue}); };
  EXPECT_EQ(" 0 0 1 0 0 0 0 0 0 0", lMapped(lGll, [](const nfw::GllSentence& n) { return n.status; }));
  const auto lRmc = [](int nValue) { return nfw::convertRecord(GPRMC{1, {}, nValue, {}, {}, 0, 0, {}, 0, nValue}); };
  EXPECT_EQ(" 0 0 1 0 0 0 0 0 0 0", lMapped(lRmc, [](const nfw::RmcSentence& n) { return n.status; }));
}

TEST(GpsSdkRecords, NarrowSatelliteNumbersAreThereBelow256Only) {
  const GPGSA lGsa = {1, 1, 2, {255, 256, 300}, 0, 0, 0};
  const nfw::GsaSentence lRecord = nfw::convertRecord(lGsa);
  EXPECT_EQ("255 255 0 256 0 300",
            joined("255", lRecord.satelliteId[0], unsigned{lRecord.satelliteNumber[1]}, lRecord.satelliteId[1],
                   unsigned{lRecord.satelliteNumber[2]}, lRecord.satelliteId[2]));
  EXPECT_EQ(255, lRecord.satelliteNumber[0]);
}

TEST(GpsSdkRecords, AtMost128SatellitesFit) {
  for (const unsigned int lCount : {0U, 128U, 129U, 200U}) {
    seams::CapturedLog lLog;
    GPGSV lGsv = {1, 3, 3, 10, lCount, {}};
    for (unsigned int i = 0; i < 256; ++i) lGsv.satellite[i] = {i + 200, static_cast<int>(i % 3), 1, 2, 3};
    const nfw::GsvSentence lRecord = nfw::convertRecord(lGsv);
    EXPECT_EQ(lCount > 0 ? 200U : 0U, lRecord.satellite[0].satelliteId);
    EXPECT_EQ(lCount > 0 ? 327U : 0U, lRecord.satellite[127].satelliteId);
    EXPECT_EQ(0, lRecord.satellite[127].satelliteNumber);
    EXPECT_EQ(lCount > 0, lRecord.satellite[127].valid);
    EXPECT_FALSE(lRecord.satellite[2].valid);  // 2 is not true
    const Strings lLines(lCount > 128 ? 1 : 0, "nfw::GpsSdkPlayer:convertGsvSentence() BufferSize not enough");
    EXPECT_EQ(lLines, errors(lLog)) << lCount;
  }
}

}  // namespace
