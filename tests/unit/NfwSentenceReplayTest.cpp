#include "NfwDeadReckoningLoggerPlayer.h"
#include "NfwDeadReckoningSensorSysLoggerPlayer.h"
#include "NfwGnssLoggerPlayer.h"
#include "NfwGnssSensorSysLoggerPlayer.h"
#include "NfwThreadMsgProfilerManager.h"
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
  SharedThread mThread{nfw::ThreadMsgProfilerManager::profiledSize(nfw::THREAD_MSG_DEAD_RECKONING), 256};
  nfw::GnssDataDispatcher mDispatcher{mThread.get(), 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  nfw::SentenceReplay mReplay{mDispatcher};
};

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

// --- the players around it, and those of the sets

class PlayersTest : public SentenceReplayTest {
 protected:
  PlayersTest() { EXPECT_TRUE(mSets.attachDeadReckoningNmeaDataListener(&mSetListener)); }
  /// What comes of the player's message, and of those that it makes of it, each by its kind alone.
  std::string played(nfw::LogPlayListener& nPlayer, int nId, const std::string& nText) {
    mNotes.clear();
    nPlayer.receiveLogPlayData(nId, reinterpret_cast<const unsigned char*>(nText.data()),
                               static_cast<unsigned int>(nText.size()));
    return settledKinds();
  }
  std::string played(nfw::SysLogPlayListener& nPlayer, int nKind, int nVersion, const std::string& nRecord) {
    mNotes.clear();
    nPlayer.receiveSysLogPlayData(nKind, nVersion, reinterpret_cast<const unsigned char*>(nRecord.data()),
                                  static_cast<unsigned int>(nRecord.size()));
    return settledKinds();
  }
  std::string settledKinds() {
    mThread.settle();
    mThread.settle();
    return kindsOf(mNotes);
  }
  /// The call makes this line of level error, and nothing is played.
  void expectLine(const std::string& nLine, const std::function<std::string()>& nPlay) {
    mLog.clear();
    EXPECT_EQ("", nPlay());
    EXPECT_EQ(nLine, errors(mLog).empty() ? "" : errors(mLog).back());
  }
  void expectNoPost(const std::string& nOperation, const std::function<std::string()>& nPlay) {
    mThread.settle();
    const seams::Failing lFailing(seams::POST, 0, 1);
    expectLine(nOperation + "(): Can't post thread: MsgId=-2147480574 ", nPlay);
  }

  DeadReckoningListener mSetListener{mNotes};
  nfw::DeadReckoningDataDispatcher mSets{mThread.get(), 1};
};

TEST_F(PlayersTest, TextsOfTheirIdArePlayedWhileTheyAreOn) {
  nfw::GnssLoggerPlayer lGnss(&mDispatcher, mThread.get(), 20);
  nfw::DeadReckoningLoggerPlayer lSets(&mSets, mThread.get(), 20);
  EXPECT_EQ("", played(lGnss, 20, GGA_TEXT));
  EXPECT_EQ("", played(lSets, 20, RMC_TEXT) + played(lSets, 20, PUBX_TEXT));
  lGnss.on(), lSets.on();
  EXPECT_EQ("", played(lGnss, 21, GGA_TEXT) + played(lSets, 21, RMC_TEXT) + played(lSets, 20, PUBX_TEXT));
  EXPECT_EQ("$GGA ", played(lGnss, 20, GGA_TEXT));
  EXPECT_EQ("", played(lSets, 20, RMC_TEXT));
  EXPECT_EQ("$  $", played(lSets, 20, PUBX_TEXT));
  EXPECT_EQ("$", played(lGnss, 20, "$" + std::string(129, 'x')));
  EXPECT_EQ("", played(lGnss, 20, std::string(131, 'x')));
  EXPECT_EQ(" ", played(lGnss, 20, ""));  // an empty text, too
  EXPECT_EQ(Strings{}, errors(mLog));
  expectNoPost("nfw::GnssLoggerPlayer::receiveLogPlayData", [&] { return played(lGnss, 20, GGA_TEXT); });
  expectNoPost("nfw::DeadReckoningLoggerPlayer::receiveLogPlayData", [&] { return played(lSets, 20, RMC_TEXT); });
  expectRefusals(mLog, lGnss, "nfw::GnssLoggerPlayer");
  expectRefusals(mLog, lSets, "nfw::DeadReckoningLoggerPlayer");
  lGnss.off();
  EXPECT_EQ("", played(lGnss, 20, GGA_TEXT));
  nfw::GnssLoggerPlayer lNone(&mDispatcher, mThread.get(), nfw::NO_LOGGER_ID);
  EXPECT_TRUE(lNone.initialize());
  lNone.finalize();
}

TEST_F(PlayersTest, RecordsOfTheirKindAndOfKnownVersionsArePlayedWhileTheyAreOn) {
  nfw::GnssSensorSysLoggerPlayer lGnss(&mDispatcher, mThread.get());
  nfw::DeadReckoningSensorSysLoggerPlayer lSets(&mSets, mThread.get());
  EXPECT_EQ(0U, lGnss.getConverter(0)->getBinaryLogVersion());
  EXPECT_EQ(1U, lGnss.getConverter(1)->getBinaryLogVersion());
  EXPECT_EQ(nullptr, lGnss.getConverter(2));
  const struct {
    nfw::PlaySource& mSource;
    nfw::SysLogPlayListener& mPlayer;
    int mKind;
    std::string mRecord, mPlayed;
    size_t mTooLong;
    std::string mClass, mOperation, mConversion;
  } ROWS[] = {
      {lGnss, lGnss, 0, sensorData(GSA_TEXT), "$GSA ", 61, "nfw::GnssSensorSysLoggerPlayer", "onReceiveNmeaData",
       "convertToNmeaSentence"},
      {lSets, lSets, 1, sensorData(makeReport(4, 32)), std::string(40, '$'), 1401,
       "nfw::DeadReckoningSensorSysLoggerPlayer", "onReceiveDeadReckoningData", "convertToDeadReckoningNmeaSentence"}};
  for (const auto& lRow : ROWS) {
    const auto lPlay = [&](int nKind, int nVersion, const std::string& nRecord) {
      return played(lRow.mPlayer, nKind, nVersion, nRecord);
    };
    const std::string lLine = lRow.mClass + "::" + lRow.mOperation + "(): ";
    mLog.clear();
    EXPECT_EQ("", lPlay(lRow.mKind, 1, lRow.mRecord)) << "off";
    lRow.mSource.on();
    EXPECT_EQ(lRow.mPlayed, lPlay(lRow.mKind, 1, lRow.mRecord));
    EXPECT_EQ("", lPlay(1 - lRow.mKind, 1, lRow.mRecord) + lPlay(lRow.mKind, 1, std::string(lRow.mTooLong, 'x')));
    EXPECT_EQ(Strings{}, errors(mLog));
    expectLine(lLine + "getConverter() failed LogVersion=0x02", [&] { return lPlay(lRow.mKind, 2, lRow.mRecord); });
    expectLine(lLine + "getConverter() failed LogVersion=0xff", [&] { return lPlay(lRow.mKind, 255, lRow.mRecord); });
    expectLine(lLine + "nfw::" + lRow.mConversion + "() failed LogVersion=0x00",
               [&] { return lPlay(lRow.mKind, 0, std::string(60, '\x7f')); });
    expectNoPost(lRow.mClass + "::receiveSysLogPlayData", [&] { return lPlay(lRow.mKind, 1, lRow.mRecord); });
  }
  EXPECT_EQ("$GGA ", played(lGnss, 0, 0, sensorData(GGA_TEXT)));
  expectRefusals(mLog, lGnss, ROWS[0].mClass);
  expectRefusals(mLog, lSets, ROWS[1].mClass);
}

// Switched to while it is on it goes on; five kinds of an epoch, then the sixth.
TEST_F(PlayersTest, GathersAnewWhenItIsSwitchedOn) {
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
  const auto lSwitchOn = [&] { lPlayer.on(), lSensorPlayer.on(); };
  lSwitchOn();
  EXPECT_EQ("$RMC $VTG $GGA $GSA $", lPlay({RMC_TEXT, VTG_TEXT, GGA_TEXT, GSA_TEXT, GSV_TEXT_1}));
  lPlayer.off(), lSensorPlayer.off();
  lSwitchOn();
  EXPECT_EQ("$GLL $GSV $GSA $GGA $VTG ", lPlay({GLL_TEXT, gsv(1, 1, 1), GSA_TEXT, GGA_TEXT, VTG_TEXT}));
  lSwitchOn();
  EXPECT_EQ("$RMC NMEA ", lPlay({RMC_TEXT}));
}

}  // namespace
