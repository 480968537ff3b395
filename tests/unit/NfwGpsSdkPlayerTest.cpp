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

TEST_F(GpsSdkPlayerTest, SaysWhatItCannotHandle) {
  expectRefusals(mLog, mPlayer, "nfw::GpsSdkPlayer");
  for (const std::string lKind : {"", "Parse"}) {
    const seams::Failing lFailing(seams::REGISTRATION, lKind.empty() ? 0 : 1, 1);
    EXPECT_FALSE(mPlayer.initialize());
    EXPECT_TRUE(mLog.has("nfw::GpsSdkPlayer:initialize() Gps::registerGps" + lKind + "NmeaListener(WGS_84_GPS) false"));
  }
  mPlayer.finalize();
  mLog.clear();
  mPlayer.on();
  {
    const seams::Failing lFailing(seams::POST);
    mPlayer.notifyReceiveNmeaSentence(GGA_TEXT, 10);
  }
  EXPECT_EQ((Strings{"nfw::NmeaDataDispatcher::dispatch(): Can't send thread", POST_FAILS}), errors(mLog));
}

TEST_F(GpsSdkPlayerTest, HandsOnEachRecordWhileItIsOn) {
  const Strings RECORDS = {
      "RMC 1 8 35 59 0 1 4717.11437 47 17.1143 1 833.91522 8 33.9152 3 0.004 77.52 2002 12 9 -3.1 1",
      "VTG 1 77.52 76.5 0.004 0.008 1",
      "GGA 1 9 27 25 0 4717.11399 47 17.1139 1 833.9159 8 33.9159 3 1 8 1.01 499.6 48",
      "GSA 1 0 1 2 23 29 7 8 9 18 26 28 .. 23 29 7 8 9 18 26 28 .. 1.94 1.18 1.54",
      "GSV 1 3 3 10 23 23 1 38 44 230 ",
      "GLL 1 9 23 21 0 4717.11364 47 17.1136 1 833.91565 8 33.9156 3 1 1",
      "NMEA 1 9 27 25 0 4717.11399 47 ",
      "ZDA 1 8 27 10 0 2002 9 16",
      "PUBX 0 8 13 50 0 4717.11321 47 17.1132 1 833.91519 8 33.9151 3 546.589 3 2.1 2 0.007 77.52 "
      "0.007 0 0.92 1.19 0.77 9"};
  const auto lFeed = [this] {
    mNotes.clear();
    feedEpoch();
    mThread.settle();
    Strings lRecords;
    for (const std::string& lNote : mNotes.all()) {
      if (lNote[0] != '$')
        lRecords.push_back(lNote.substr(0, lNote.size() > 120 ? 31 : 120));  // the long ones begin so
    }
    return lRecords;
  };
  ASSERT_TRUE(mPlayer.initialize());
  EXPECT_EQ(Strings{}, lFeed());
  mPlayer.on();
  EXPECT_EQ(RECORDS, lFeed());
  mPlayer.notifyParseGgaSentence(nullptr);
  mPlayer.notifyParseNmeaSentence(nullptr);
  mPlayer.finalize();
  EXPECT_EQ(Strings{}, lFeed());
}

TEST(GpsSdkRecords, ValuesThatTheEnumerationDoesNotKnowBecomeZero) {
  // Talker, quality, direction and mode; selection and dimension of GSA; status and flag of PUBX; status of GLL and
  // RMC.
  const char* const EXPECTED[] = {" 0 0 0 0 0 0 0 0 0 0", " 0 0 0 0 0 0 0 0 0 0", " 1 1 1 1 1 1 1 1 1 1",
                                  " 2 2 2 2 2 2 2 0 0 0", " 3 3 3 3 0 0 3 0 0 0", " 4 4 4 0 0 0 4 0 0 0",
                                  " 0 0 0 0 0 0 5 0 0 0", " 0 0 0 0 0 0 6 0 0 0", " 0 0 0 0 0 0 7 0 0 0",
                                  " 0 0 0 0 0 0 0 0 0 0"};
  for (int i = -1; i < 9; ++i) {
    GPGGA lSdkGga = {};
    lSdkGga.satelliteType = lSdkGga.quality = lSdkGga.latitude.direction = i;
    PUBX lSdkPubx = {};
    lSdkPubx.status = lSdkPubx.drMode = i;
    const nfw::GgaSentence lGga = nfw::convertRecord(lSdkGga);
    const nfw::PubxSentence lPubx = nfw::convertRecord(lSdkPubx);
    const nfw::GsaSentence lGsa = nfw::convertRecord(GPGSA{1, i, i, {}, 0, 0, 0});
    const nfw::GllSentence lGll = nfw::convertRecord(GPGLL{1, {}, {}, {}, i, i});
    const nfw::RmcSentence lRmc = nfw::convertRecord(GPRMC{1, {}, i, {}, {}, 0, 0, {}, 0, i});
    EXPECT_EQ(EXPECTED[i + 1],
              joined("", lGga.satelliteType, lGga.quality, lGga.latitude.direction, lGll.mode, lGsa.positioningType,
                     lGsa.mode, lPubx.status, lPubx.drMode, lGll.status, lRmc.status));
  }
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
