#include "NfwGnssLoggerPlayer.h"
#include "NfwGnssSensorSysLoggerPlayer.h"
#include "Positioning.h"
#include "SentenceReplay.h"
#include "SharedThread.h"
#include "Split.h"

namespace {

using namespace nfwtest;

class SentenceReplayTest : public testing::Test {
 protected:
  SentenceReplayTest() { EXPECT_TRUE(mListener.attachTo(mDispatcher)); }
  /// What reaches the listeners, each record by its kind alone.
  std::string play(const Strings& nTexts) {
    mNotes.clear();
    for (const std::string& lText : nTexts) {
      mReplay.play(reinterpret_cast<const unsigned char*>(lText.c_str()), static_cast<unsigned int>(lText.size()));
    }
    mThread.settle();
    return kindsOf(mNotes);
  }
  static std::string gsv(int nCount, int nNumber, int nFirst) {
    std::string lText = "$GPGSV," + std::to_string(nCount) + "," + std::to_string(nNumber) + ",99";
    for (int i = 0; i < 4; ++i) lText += "," + std::to_string(nFirst + i) + ",1,2,3";
    return lText + "*00\r\n";
  }
  /// The satellites of each GSV record that came.
  Strings satellites() const {
    Strings lAll;
    for (const std::string& lNote : mNotes.all()) {
      if (lNote.compare(0, 3, "GSV") != 0) continue;
      std::string lNumbers;
      const Strings lFields = split(lNote, ' ');
      for (size_t i = 6; i < lFields.size(); i += 6) lNumbers += lFields[i] + " ";
      lAll.push_back(lNumbers);
    }
    return lAll;
  }

  seams::CapturedLog mLog;
  Notes mNotes;
  GnssListener mListener{mNotes};
  SharedThread mThread{nfw::GnssDataDispatcher::getMaxMsgDataSize(), 256};
  nfw::GnssDataDispatcher mDispatcher{mThread.get(), 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  nfw::SentenceReplay mReplay{mDispatcher};
};

TEST_F(SentenceReplayTest, EachTextIsFollowedByItsRecord) {
  const struct {
    std::string mText;
    const char* mpKinds;
  } CASES[] = {
      {GGA_TEXT, "$GGA "},       {GLL_TEXT, "$GLL "},  {GSA_TEXT, "$GSA "}, {GSV_TEXT_1, "$"},
      {RMC_TEXT, "$RMC "},       {VTG_TEXT, "$VTG "},  {ZDA_TEXT, "$ZDA "}, {PUBX_TEXT, "$PUBX "},
      {"$GPTXT,01*00\r\n", "$"}, {"$GPVTG,x*00", "$"}, {"$", "$"},
  };
  for (const auto& lCase : CASES) EXPECT_EQ(lCase.mpKinds, play({lCase.mText})) << lCase.mText;
}

TEST_F(SentenceReplayTest, AnEpochIsSixKindsInAnyOrder) {
  EXPECT_EQ("$RMC $VTG $GGA $GSA $$$GSV $GLL NMEA ",
            play({RMC_TEXT, VTG_TEXT, GGA_TEXT, GSA_TEXT, GSV_TEXT_1, GSV_TEXT_2, GSV_TEXT_3, GLL_TEXT}));
  EXPECT_EQ("$GLL $GGA $GSA $GSA $$ZDA $PUBX $VTG $RMC $$GSV NMEA ",
            play({GLL_TEXT, GGA_TEXT, GSA_TEXT, GSA_TEXT, GSV_TEXT_1, ZDA_TEXT, PUBX_TEXT, VTG_TEXT, RMC_TEXT,
                  GSV_TEXT_2, GSV_TEXT_3}));
  EXPECT_EQ("$GLL $GGA $GSA $VTG $RMC $ZDA ", play({GLL_TEXT, GGA_TEXT, GSA_TEXT, VTG_TEXT, RMC_TEXT, ZDA_TEXT}));
  mReplay.clearSentenceData();
  EXPECT_EQ("$$$GSV ", play({GSV_TEXT_1, GSV_TEXT_2, GSV_TEXT_3}));
}

TEST_F(SentenceReplayTest, AnEpochHoldsTheLastRecordOfEachKind) {
  const std::string lGga = "$GLGGA,000001.000,0000.0,S,00000.0,W,2,05,1.0,5.0,M,6.0,M,,*00";
  play({GGA_TEXT, lGga, GLL_TEXT, GSA_TEXT, GSV_TEXT_1, GSV_TEXT_2, GSV_TEXT_3, RMC_TEXT, VTG_TEXT});
  const Strings lNotes = mNotes.all();
  nfw::GgaSentence lRecord;
  ASSERT_TRUE(nfw::NmeaDataParser::parseGgaSentence(lGga.c_str(), 1, &lRecord));
  const std::string lFields = "NMEA" + text(lRecord).substr(3);
  EXPECT_EQ(lFields, lNotes.back().substr(0, lFields.size()));
}

// The last message of a group brings no satellites of its own.
TEST_F(SentenceReplayTest, AGroupOfGsvIsOneRecord) {
  const struct {
    const char* mpName;
    Strings mTexts, mSatellites;
  } CASES[] = {
      {"one message", {gsv(1, 1, 1)}, {""}},
      {"three", {gsv(3, 1, 1), gsv(3, 2, 5), gsv(3, 3, 9)}, {"1 2 3 4 5 6 7 8 "}},
      {"a group cut short", {gsv(3, 1, 1), gsv(3, 1, 21), gsv(3, 2, 25), gsv(3, 3, 29)}, {"21 22 23 24 25 26 27 28 "}},
      {"two groups", {gsv(2, 1, 1), gsv(2, 2, 5), gsv(2, 1, 11), gsv(2, 2, 15)}, {"1 2 3 4 ", "11 12 13 14 "}},
      {"a first message lost",
       {gsv(2, 1, 1), gsv(2, 2, 5), gsv(3, 2, 11), gsv(3, 3, 15)},
       {"1 2 3 4 ", "11 12 13 14 "}},
      {"a number beyond the count", {gsv(1, 3, 7)}, {"7 "}},
      {"neither count nor number", {"$GPGSV,,,*00"}, {""}},
  };
  for (const auto& lCase : CASES) {
    play(lCase.mTexts);
    EXPECT_EQ(lCase.mSatellites, satellites()) << lCase.mpName;
  }
  Strings lEndless;
  for (int i = 1; i <= 40; ++i) lEndless.push_back(gsv(40, i, 1000 + 4 * i));
  play(lEndless);
  ASSERT_EQ(1U, satellites().size());
  EXPECT_EQ(5U * 128, satellites()[0].size());  // the first 128 of 156
}

// --- the two players around it

class GnssLoggerPlayerTest : public SentenceReplayTest {
 protected:
  /// The message of the player, then those that it makes of it.
  std::string settledKinds() {
    mThread.settle();
    mThread.settle();
    return kindsOf(mNotes);
  }
  std::string played(nfw::GnssLoggerPlayer& nPlayer, int nId, const std::string& nText) {
    mNotes.clear();
    nPlayer.receiveLogPlayData(nId, reinterpret_cast<const unsigned char*>(nText.data()),
                               static_cast<unsigned int>(nText.size()));
    return settledKinds();
  }
  std::string played(nfw::GnssSensorSysLoggerPlayer& nPlayer, int nKind, int nVersion, const std::string& nRecord) {
    mNotes.clear();
    nPlayer.receiveSysLogPlayData(nKind, nVersion, reinterpret_cast<const unsigned char*>(nRecord.data()),
                                  static_cast<unsigned int>(nRecord.size()));
    return settledKinds();
  }
};

TEST_F(GnssLoggerPlayerTest, PlaysTextsOfItsIdWhileItIsOn) {
  nfw::GnssLoggerPlayer lPlayer(&mDispatcher, mThread.get(), 20);
  EXPECT_EQ("", played(lPlayer, 20, GGA_TEXT));
  lPlayer.on();
  EXPECT_EQ("$GGA ", played(lPlayer, 20, GGA_TEXT));
  EXPECT_EQ("", played(lPlayer, 21, GGA_TEXT));
  EXPECT_EQ("$", played(lPlayer, 20, "$" + std::string(129, 'x')));
  EXPECT_EQ("", played(lPlayer, 20, std::string(131, 'x')));
  EXPECT_EQ(" ", played(lPlayer, 20, ""));  // an empty text, too
  EXPECT_EQ(Strings{}, errors(mLog));
  expectRefusals(mLog, lPlayer, "nfw::GnssLoggerPlayer");
  {
    const seams::Failing lFailing(seams::POST);
    lPlayer.receiveLogPlayData(20, nullptr, 0);
  }
  EXPECT_EQ(Strings{"nfw::GnssLoggerPlayer::receiveLogPlayData(): Can't post thread: MsgId=-2147480574 "},
            errors(mLog));
  lPlayer.off();
  EXPECT_EQ("", played(lPlayer, 20, GGA_TEXT));
  nfw::GnssLoggerPlayer lNone(&mDispatcher, mThread.get(), nfw::NO_LOGGER_ID);
  EXPECT_TRUE(lNone.initialize());
  lNone.finalize();
}

// Switched to while it is on it goes on; five kinds of an epoch, then the sixth.
TEST_F(GnssLoggerPlayerTest, GathersAnewWhenItIsSwitchedOn) {
  nfw::GnssLoggerPlayer lPlayer(&mDispatcher, mThread.get(), 20);
  nfw::GnssSensorSysLoggerPlayer lSensorPlayer(&mDispatcher, mThread.get());
  const auto lPlay = [&](const Strings& nTexts) {
    std::string lKinds, lSensorKinds;
    for (const std::string& lText : nTexts) {
      lKinds += played(lPlayer, 20, lText);
      lSensorKinds += played(lSensorPlayer, 0, 1, sensorData(lText));
    }
    EXPECT_EQ(lKinds, lSensorKinds);
    return lKinds;
  };
  const std::string lOneGsv = gsv(1, 1, 1);
  const auto lSwitch = [&](bool nIsOn) {
    nIsOn ? (lPlayer.on(), lSensorPlayer.on()) : (lPlayer.off(), lSensorPlayer.off());
  };
  lSwitch(true);
  EXPECT_EQ("$RMC $VTG $GGA $GSA $", lPlay({RMC_TEXT, VTG_TEXT, GGA_TEXT, GSA_TEXT, GSV_TEXT_1}));
  lSwitch(false);
  lSwitch(true);
  EXPECT_EQ("$GLL $GSV $GSA $GGA $VTG ", lPlay({GLL_TEXT, lOneGsv, GSA_TEXT, GGA_TEXT, VTG_TEXT}));
  lSwitch(true);
  EXPECT_EQ("$RMC NMEA ", lPlay({RMC_TEXT}));
}

TEST_F(GnssLoggerPlayerTest, PlaysBinaryRecordsOfKnownVersionsWhileItIsOn) {
  const std::string lClass = "nfw::GnssSensorSysLoggerPlayer";
  nfw::GnssSensorSysLoggerPlayer lPlayer(&mDispatcher, mThread.get());
  const std::string lGga = sensorData(GGA_TEXT), lGsa = sensorData(GSA_TEXT);
  EXPECT_EQ("", played(lPlayer, 0, 1, lGga));
  lPlayer.on();
  EXPECT_EQ("$GGA ", played(lPlayer, 0, 1, lGga));
  EXPECT_EQ("$GSA ", played(lPlayer, 0, 1, lGsa));
  EXPECT_EQ("$GGA ", played(lPlayer, 0, 0, lGga));
  EXPECT_EQ("", played(lPlayer, 1, 1, lGga));
  EXPECT_EQ("", played(lPlayer, 0, 1, std::string(61, 'x')));
  EXPECT_EQ(Strings{}, errors(mLog));
  EXPECT_EQ("", played(lPlayer, 0, 2, lGga));
  EXPECT_EQ("", played(lPlayer, 0, 255, lGga));
  EXPECT_EQ((Strings{lClass + "::onReceiveNmeaData(): getConverter() failed LogVersion=0x02",
                     lClass + "::onReceiveNmeaData(): getConverter() failed LogVersion=0xff"}),
            errors(mLog));
  EXPECT_EQ("", played(lPlayer, 0, 1, std::string(60, '\x7f')));
  EXPECT_TRUE(mLog.has(lClass + "::onReceiveNmeaData(): nfw::convertToNmeaSentence() failed LogVersion=0x01"));
  expectRefusals(mLog, lPlayer, lClass);
  {
    const seams::Failing lFailing(seams::POST);
    lPlayer.receiveSysLogPlayData(0, 1, nullptr, 0);
  }
  EXPECT_EQ(Strings{lClass + "::receiveSysLogPlayData(): Can't post thread: MsgId=-2147480574 "}, errors(mLog));
  EXPECT_EQ(0U, lPlayer.getConverter(0)->getBinaryLogVersion());
  EXPECT_EQ(1U, lPlayer.getConverter(1)->getBinaryLogVersion());
  EXPECT_EQ(nullptr, lPlayer.getConverter(2));
}

}  // namespace
