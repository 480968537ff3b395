#include <gtest/gtest.h>

#include <ctime>

#include "CivilTime.h"
#include "SentenceTime.h"
#include "Simulator.h"

namespace {

using namespace drive;

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
  lOptions.mTunnels = {{10000, 40200}, {94000, 94001}};
  EXPECT_EQ(epoch(lOptions, 94), R"($GNRMC,080134.000,V,,,,,,,310126,,,N*5A
$GNVTG,,,,,,,,,N*2E
$GNGGA,080134.000,,,,,0,00,99.99,,,,,,*46
$GNGSA,A,1,,,,,,,,,,,,,99.99,99.99,99.99*2E
$GNGSA,A,1,,,,,,,,,,,,,99.99,99.99,99.99*2E
$GPGSV,3,1,10,01,37,066,,05,26,173,,11,03,324,,12,24,244,*7A
$GPGSV,3,2,10,16,69,292,,17,18,147,,21,23,088,,25,55,322,*73
$GPGSV,3,3,10,29,63,252,,30,24,048,*7A
$GLGSV,2,1,08,67,23,170,,68,54,108,,69,28,039,,78,24,301,*6A
$GLGSV,2,2,08,79,24,243,,84,25,308,,85,54,011,,86,27,078,*68
$GNGLL,,,,,080134.000,V,N*6A
$GNZDA,080134.000,31,01,2026,00,00*43
$PUBX,00,080134.000,,,,,,NF,,,,,,,99.99,99.99,99.99,0,0,0*19
)") << "in a tunnel";
  lOptions.mTunnels = {{10000, 40200}, {60000, 60000}};
  const std::string lSeeded = epoch(lOptions, 94);
  EXPECT_NE(lSeeded.find("$GNRMC,080134.000,A,3538.90259,N,13944.88994,E,"), std::string::npos) << "behind one";
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

TEST(Simulator, datesRollOver) {
  const struct {
    int64_t mStartMs;
    const char *mpRmc, *mpZda;
  } ROLLS[] = {{1798761599000, ",010127,", "$GNZDA,000000.000,01,01,2027,"},
               {1835395199000, ",290228,", "$GNZDA,000000.000,29,02,2028,"},
               {1835481599000, ",010328,", "$GNZDA,000000.000,01,03,2028,"}};
  for (const auto& lRoll : ROLLS) {
    SimulatorOptions lOptions;
    lOptions.mStartMs = lRoll.mStartMs;
    const std::string lText = epoch(lOptions, 1);
    EXPECT_EQ(lText.find("$GNRMC,000000.000,"), 0u) << lText;
    EXPECT_NE(lText.find(lRoll.mpRmc), std::string::npos) << lText;
    EXPECT_NE(lText.find(lRoll.mpZda), std::string::npos) << lText;
  }
}

TEST(CivilTime, everyDayIsAsTheSystemHasIt) {
  for (time_t lDay = 0; lDay < 365 * 200; ++lDay) {
    const time_t lSeconds = lDay * 86400 + 59;
    tm lExpected = {};
    ::gmtime_r(&lSeconds, &lExpected);
    const tool::CivilTime lTime = tool::civilTime(lSeconds * 1000);
    ASSERT_EQ(lTime.mYear, lExpected.tm_year + 1900) << lDay;
    ASSERT_EQ(lTime.mMonth * 100 + lTime.mDay, lExpected.tm_mon * 100 + 100 + lExpected.tm_mday) << lDay;
  }
}

}  // namespace
