#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>

#include "CivilTime.h"
#include "JsonRecord.h"
#include "LineReader.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "NfwNmeaDataParser.h"
#include "SentenceList.h"
#include "SentenceTime.h"
#include "Simulator.h"

namespace {

using namespace drive;
using nfw::NmeaDataParser;

std::vector<std::string> nextEpoch(Simulator& nSimulator) {
  std::string lText;
  nSimulator.writeEpoch(&lText);
  tool::LineCounts lCounts;
  tool::LineReader lReader(lCounts);
  SentenceList lList;
  lReader.feed(lText.data(), lText.size(), lList);
  EXPECT_EQ(lCounts.get(tool::LINE_CHECKED), lCounts.total());
  return lList.mSentences;
}

std::string addressOf(const std::string& nSentence) { return nSentence.substr(0, nSentence.find(',')); }

// The records of one epoch, parsed.
struct Records {
  nfw::RmcSentence mRmc;
  nfw::VtgSentence mVtg;
  nfw::GgaSentence mGga;
  nfw::GllSentence mGll;
  nfw::ZdaSentence mZda;
  nfw::PubxSentence mPubx;
  std::vector<nfw::GsaSentence> mGsa;
  std::map<std::string, int> mKinds;
};

template <class Record>
void parse(bool (*npParse)(char const*, unsigned int, Record*), const std::string& nSentence, Record* npRecord) {
  EXPECT_TRUE(npParse(nSentence.c_str(), static_cast<unsigned int>(nSentence.size()), npRecord)) << nSentence;
}

Records parsed(const std::vector<std::string>& nEpoch) {
  Records lRecords;
  for (const std::string& lSentence : nEpoch) {
    const int lType =
        NmeaDataParser::analyzeNmeaSentenceType(lSentence.c_str(), static_cast<unsigned>(lSentence.size()));
    ++lRecords.mKinds[addressOf(lSentence)];
    nfw::GsvSentence lGsv;
    if (lType == nfw::NMEA_RMC) parse(&NmeaDataParser::parseRmcSentence, lSentence, &lRecords.mRmc);
    if (lType == nfw::NMEA_VTG) parse(&NmeaDataParser::parseVtgSentence, lSentence, &lRecords.mVtg);
    if (lType == nfw::NMEA_GGA) parse(&NmeaDataParser::parseGgaSentence, lSentence, &lRecords.mGga);
    if (lType == nfw::NMEA_GLL) parse(&NmeaDataParser::parseGllSentence, lSentence, &lRecords.mGll);
    if (lType == nfw::NMEA_ZDA) parse(&NmeaDataParser::parseZdaSentence, lSentence, &lRecords.mZda);
    if (lType == nfw::NMEA_PUBX) parse(&NmeaDataParser::parsePubxSentence, lSentence, &lRecords.mPubx);
    if (lType == nfw::NMEA_GSV) parse(&NmeaDataParser::parseGsvSentence, lSentence, &lGsv);
    if (lType != nfw::NMEA_GSA) continue;
    parse(&NmeaDataParser::parseGsaSentence, lSentence, &lRecords.mGsa.emplace_back());
  }
  return lRecords;
}

std::string epoch(const SimulatorOptions& nOptions, int nNumber) {
  Simulator lSimulator(nOptions);
  std::string lText;
  for (int i = 0; i <= nNumber; ++i) lSimulator.writeEpoch(&lText);
  for (size_t i = 0; (i = lText.find('\r')) != std::string::npos;) lText.erase(i, 1);
  return lText;
}

// One epoch to its last digit, under way: its sentences agree with each other.
TEST(Simulator, sendsEverySentenceOfAReceiver) {
  SimulatorOptions lOptions;
  lOptions.mSystems = 1u << SYSTEM_GPS | 1u << SYSTEM_GLONASS;
  EXPECT_EQ(epoch(lOptions, 94), R"($GNRMC,080134.000,A,3538.90259,N,13944.88994,E,10.691,212.05,310126,7.5,W,A*0C
$GNVTG,212.05,T,219.55,M,10.691,N,19.800,K,A*3C
$GNGGA,080134.000,3538.90259,N,13944.88994,E,1,17,0.63,46.4,M,36.7,M,,*4E
$GNGSA,A,3,01,05,12,16,17,21,25,29,30,,,,1.39,0.63,1.25*1E
$GNGSA,A,3,67,68,69,78,79,84,85,86,,,,,1.39,0.63,1.25*1A
$GPGSV,3,1,10,01,37,066,37,05,26,173,34,11,03,324,,12,24,244,33*79
$GPGSV,3,2,10,16,69,292,48,17,18,147,30,21,23,088,34,25,55,322,44*7B
$GPGSV,3,3,10,29,63,252,45,30,24,048,33*7B
$GLGSV,2,1,08,67,23,170,33,68,54,108,43,69,28,039,35,78,24,301,33*6B
$GLGSV,2,2,08,79,24,243,35,84,25,308,33,85,54,011,42,86,27,078,35*6E
$GNGLL,3538.90259,N,13944.88994,E,080134.000,A,A*4C
$GNZDA,080134.000,31,01,2026,00,00*43
$PUBX,00,080134.000,3538.90259,N,13944.88994,E,83.108,G3,1.6,3.1,19.800,212.05,0.076,,0.63,1.25,0.73,17,0,0*68
)");
  const std::string lSeeded = epoch(lOptions, 94);
  lOptions.mSeed = 2;
  EXPECT_NE(epoch(lOptions, 94), lSeeded);
  lOptions = {};
  lOptions.mRateHz = 10;
  lOptions.mSystems = 1u << SYSTEM_GLONASS;
  EXPECT_EQ(epoch(lOptions, 21), R"($GLRMC,080002.100,A,3539.47976,N,13944.70282,E,8.164,116.73,310126,7.5,W,A*3F
$GLVTG,116.73,T,124.23,M,8.164,N,15.120,K,A*07
$GLGGA,080002.100,3539.47976,N,13944.70282,E,1,08,0.91,42.0,M,36.7,M,,*4C
$GLGSA,A,3,67,68,69,78,79,84,85,86,,,,,2.55,0.91,2.38*13
$GLGLL,3539.47976,N,13944.70282,E,080002.100,A,A*4D
$PUBX,00,080002.100,3539.47976,N,13944.70282,E,78.710,G3,2.3,6.0,15.120,116.73,-0.009,,0.91,2.38,1.28,8,0,0*75
)") << "its own talker, and no satellites in view nor date between whole seconds";
}

TEST(Simulator, thePositionIsTheIntegralOfSpeedAndCourse) {
  for (const unsigned int lRate : {1u, 4u, 10u}) {
    SimulatorOptions lOptions;
    lOptions.mRateHz = lRate;
    Simulator lSimulator(lOptions);
    double lDriven = 0.0;
    Records lBefore = parsed(nextEpoch(lSimulator));
    for (unsigned int i = 0; i < 300 * lRate; ++i) {
      const Records lNow = parsed(nextEpoch(lSimulator));
      const double lNorth =
          toRadians(tool::decimalDegrees(lNow.mGga.latitude) - tool::decimalDegrees(lBefore.mGga.latitude));
      const double lEast =
          toRadians(tool::decimalDegrees(lNow.mGga.longitude) - tool::decimalDegrees(lBefore.mGga.longitude)) *
          std::cos(toRadians(tool::decimalDegrees(lNow.mGga.latitude)));
      const double lStep = std::hypot(lNorth, lEast) * EARTH_RADIUS;
      const double lMeanSpeed = (lBefore.mRmc.speed + lNow.mRmc.speed) / 2.0 / 3600.0 * 1852.0;
      ASSERT_NEAR(lStep, lMeanSpeed / lRate, 0.04) << i;  // two roundings of 1.9 cm
      if (lStep > 5.0) {
        const double lTurn = std::remainder(lNow.mRmc.direction - lBefore.mRmc.direction, 360.0);
        const double lHeading = toDegrees(std::atan2(lEast, lNorth)) - lBefore.mRmc.direction - lTurn / 2.0;
        ASSERT_NEAR(std::remainder(lHeading, 360.0), 0.0, 0.6) << i;
      }
      lDriven += lStep;
      lBefore = lNow;
    }
    EXPECT_GT(lDriven, 1000.0) << "a drive, not a parking place";
  }
}

TEST(Simulator, theSkyIsOfOnePiece) {
  Simulator lSimulator({});
  for (int i = 0; i < 600; ++i) {
    const std::vector<std::string> lEpoch = nextEpoch(lSimulator);
    std::set<std::string> lInView;
    std::map<std::string, int> lLast;
    size_t lAnnounced = 0;
    for (const std::string& lSentence : lEpoch) {
      if (addressOf(lSentence).substr(3) != "GSV") continue;
      const auto lField = [&lSentence](int n) { return std::string(tool::sentenceField(lSentence, n)); };
      ASSERT_EQ(std::stoi(lField(2)), ++lLast[addressOf(lSentence)]) << lSentence;
      if (lField(1) == lField(2)) {
        lAnnounced += std::stoul(lField(3));
        lLast.erase(addressOf(lSentence));
      }
      for (int f = 4; !lField(f).empty(); f += 4) ASSERT_TRUE(lInView.insert(lField(f)).second) << lSentence;
    }
    ASSERT_TRUE(lLast.empty()) << "every group is complete";
    ASSERT_EQ(lInView.size(), lAnnounced);
    const Records lRecords = parsed(lEpoch);
    uint32_t lUsed = 0;
    for (const nfw::GsaSentence& lGsa : lRecords.mGsa) {
      for (const uint32_t lId : lGsa.satelliteId) {
        if (lId == 0) continue;
        ++lUsed;
        ASSERT_EQ(lInView.count((lId < 10 ? "0" : "") + std::to_string(lId)), 1u) << lId;
      }
      ASSERT_NEAR(lGsa.pdop, std::hypot(lGsa.hdop, lGsa.vdop), 0.011);
      ASSERT_EQ(lGsa.hdop, lRecords.mGga.hdop);
      ASSERT_TRUE(lGsa.pdop > 0.5 && lGsa.pdop < 6.0) << lGsa.pdop;
    }
    ASSERT_EQ(lUsed, lRecords.mGga.satelliteCount);
    ASSERT_GE(lUsed, 4u);
  }
}

bool isStorable(const std::string& nSentence) {
  unsigned char lRecord[60];
  return nfw::NmeaBinaryLogDataVersion1().convertFromNmeaSentence(
             reinterpret_cast<const unsigned char*>(nSentence.data()), static_cast<unsigned int>(nSentence.size()),
             lRecord, sizeof(lRecord)) >= 0;
}

void expectNoFix(const std::vector<std::string>& nEpoch, const Records& nOpen) {
  const Records lAll = parsed(nEpoch);
  EXPECT_EQ(lAll.mKinds, nOpen.mKinds);
  for (const auto* lpAxis : {&lAll.mRmc.latitude, &lAll.mGga.longitude, &lAll.mGll.latitude, &lAll.mPubx.longitude}) {
    EXPECT_TRUE(lpAxis->value == 0.0 && lpAxis->direction == nfw::DIRECTION_NONE);
  }
  EXPECT_FALSE(lAll.mRmc.status || lAll.mGll.status || lAll.mPubx.drMode);
  EXPECT_EQ(lAll.mRmc.mode | lAll.mVtg.mode | lAll.mGll.mode, nfw::MODE_NOT_VALID);
  EXPECT_EQ(lAll.mGga.quality, nfw::QUALITY_INVALID);
  EXPECT_EQ(lAll.mPubx.status, nfw::PUBX_NO_FIX);
  EXPECT_EQ(lAll.mRmc.speed + lAll.mVtg.speedKmh + lAll.mPubx.speed, 0.0);
  EXPECT_EQ(lAll.mGga.satelliteCount + lAll.mPubx.satelliteCount, 0u);
  for (const nfw::GsaSentence& lGsa : lAll.mGsa) {
    EXPECT_EQ(lGsa.mode, nfw::GSA_NO_FIX);
    EXPECT_EQ(lGsa.satelliteId[0], 0u);
    EXPECT_EQ(lGsa.pdop, 99.99);
  }
  EXPECT_EQ(lAll.mRmc.utcTime.millisecond, nOpen.mRmc.utcTime.millisecond);
  EXPECT_EQ(lAll.mGll.utcTime.second, nOpen.mGll.utcTime.second);
  EXPECT_EQ(lAll.mRmc.date.day, nOpen.mRmc.date.day);
  for (const std::string& lSentence : nEpoch) {
    EXPECT_TRUE(isStorable(lSentence)) << lSentence;
    if (addressOf(lSentence).substr(3) != "GSV") continue;
    for (int f = 4; !tool::sentenceField(lSentence, f).empty(); f += 4) {
      EXPECT_EQ(tool::sentenceField(lSentence, f + 3), "") << lSentence;
    }
  }
}

TEST(Simulator, aTunnelHidesTheSkyAndChangesNothingElse) {
  SimulatorOptions lOptions;
  lOptions.mRateHz = 5;
  Simulator lOpen(lOptions);
  lOptions.mTunnels = {{10000, 40200}, {60000, 60000}, {90000, 90001}};
  Simulator lRoofed(lOptions);
  int lHidden = 0;
  for (int64_t lMs = 0; lMs < 100000; lMs += 200) {
    SCOPED_TRACE(lMs);
    const auto lOpenEpoch = nextEpoch(lOpen);
    const auto lEpoch = nextEpoch(lRoofed);
    ASSERT_EQ(lOpen.getVehicle().mLatitude, lRoofed.getVehicle().mLatitude);
    if ((lMs >= 10000 && lMs < 40200) || lMs == 90000) {
      ++lHidden;
      expectNoFix(lEpoch, parsed(lOpenEpoch));
    } else {
      ASSERT_EQ(lOpenEpoch, lEpoch);
      const nfw::GnssSentenceCoordinate lLatitude = parsed(lEpoch).mGga.latitude;
      ASSERT_NEAR(tool::decimalDegrees(lLatitude), lRoofed.getVehicle().mLatitude, 1e-6) << "of this epoch";
    }
  }
  EXPECT_EQ(lHidden, 152);
}

TEST(Simulator, datesRollOver) {
  struct Roll {
    int64_t mStartMs;
    int mDay, mMonth;
    unsigned int mYear;
  };
  const Roll ROLLS[] = {{1798761599000, 1, 1, 2027}, {1835395199000, 29, 2, 2028}, {1835481599000, 1, 3, 2028}};
  for (const Roll& lRoll : ROLLS) {
    SimulatorOptions lOptions;
    lOptions.mStartMs = lRoll.mStartMs;
    Simulator lSimulator(lOptions);
    EXPECT_EQ(parsed(nextEpoch(lSimulator)).mRmc.utcTime.hour, 23);
    const Records lNext = parsed(nextEpoch(lSimulator));
    EXPECT_EQ(lNext.mRmc.utcTime.hour, 0);
    for (const nfw::GnssSentenceDate& lDate : {lNext.mRmc.date, lNext.mZda.date}) {
      EXPECT_EQ(lDate.day, lRoll.mDay);
      EXPECT_EQ(lDate.month, lRoll.mMonth);
      EXPECT_EQ(lDate.year, lRoll.mYear);
    }
  }
}

TEST(CivilTime, everyDayFollowsTheOneBefore) {
  tool::CivilTime lBefore = tool::civilTime(0);
  EXPECT_EQ(lBefore.mYear, 1970);
  for (int64_t i = 1; i < 365 * 200; ++i) {
    const tool::CivilTime lDay = tool::civilTime(i * tool::MS_PER_DAY);
    const bool lIsNextDay = lDay.mDay == lBefore.mDay + 1 && lDay.mMonth == lBefore.mMonth;
    const bool lIsNextMonth = lDay.mDay == 1 && lBefore.mDay >= 28 && lDay.mMonth == lBefore.mMonth % 12 + 1;
    ASSERT_TRUE(lIsNextDay || lIsNextMonth) << i;
    lBefore = lDay;
  }
  EXPECT_EQ(lBefore.mYear, 2169);
}

}  // namespace
