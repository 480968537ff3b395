#include <gtest/gtest.h>

#include <ctime>

#include "CivilTime.h"
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
  lOptions.mStartMs = 1769903906000;  // 2026-01-31 23:58:26
  lOptions.mTunnels = {{10000, 40200}, {94000, 94001}};
  EXPECT_EQ(epoch(lOptions, 94), R"($GNRMC,000000.000,V,,,,,,,010226,,,N*54
$GNVTG,,,,,,,,,N*2E
$GNGGA,000000.000,,,,,0,00,99.99,,,,,,*48
$GNGSA,A,1,,,,,,,,,,,,,99.99,99.99,99.99*2E
$GNGSA,A,1,,,,,,,,,,,,,99.99,99.99,99.99*2E
$GPGSV,3,1,10,01,24,246,,05,02,325,,06,20,148,,10,67,295,*79
$GPGSV,3,2,10,14,54,320,,15,25,087,,18,61,251,,19,26,048,*78
$GPGSV,3,3,10,22,30,169,,23,34,061,*74
$GLGSV,2,1,08,67,24,300,,68,24,242,,73,25,308,,74,54,012,*6F
$GLGSV,2,2,08,75,26,078,,81,28,039,,87,24,170,,88,54,108,*6A
$GNGLL,,,,,000000.000,V,N*64
$GNZDA,000000.000,01,02,2026,00,00*4D
$PUBX,00,000000.000,,,,,,NF,,,,,,,99.99,99.99,99.99,0,0,0*17
)") << "in a tunnel, and in the next month";
  lOptions.mTunnels = {{10000, 40200}, {60000, 60000}};
  const std::string lSeeded = epoch(lOptions, 94);
  EXPECT_NE(lSeeded.find("$GNRMC,000000.000,A,3538.90259,N,13944.88994,E,"), std::string::npos) << "behind one";
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
