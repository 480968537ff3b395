// Numbers in sentences: as they are read, and as the binary log stores them.
#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>

#include "BinaryLog.h"
#include "BinaryNumber.h"
#include "Decimal.h"
#include "PlainScaled.h"
#include "PlatformSeams.h"
#include "Split.h"

namespace {

void expectAsStrtod(const std::string& nText) {
  char* lpExpectedRest = nullptr;
  const char* lpRest = nullptr;
  const double lExpected = std::strtod(nText.c_str(), &lpExpectedRest);
  const double lValue = nfw::Decimal::read(nText.c_str(), &lpRest);
  EXPECT_EQ(0, std::memcmp(&lExpected, &lValue, sizeof(double))) << nText;
  EXPECT_EQ(lpExpectedRest, lpRest) << nText;
}

TEST(Decimal, ReadsAsStrtodBitForBit) {
  for (const std::string& lText : nfwtest::split(
           "|0|-0|-0.0|+5|3539.1234|13944.56789012|.5|5.|.|-|+-1|1.2.3|1,5|12 | 12|\t12|M|1e5|1e|1.5E-3x|0x1F.8p2|0x|"
           "nan|NaN(1)|inf|-infinity|infin|9007199254740992|9007199254740993|9007199254740993.0|123456789012345678|"
           "1234567890123456789|0.000000000000000001|0.0000000000000000001|000000000000000000000001.5|"
           "18446744073709551616|1e400|4.9e-324|0.1",
           '|')) {
    expectAsStrtod(lText);
  }
}

TEST(Decimal, ReadsNumbersOfEveryLengthAndScaleAsStrtod) {
  std::mt19937_64 lRandom(7);
  for (int i = 0; i < 20000; ++i) {
    std::string lText = std::to_string(lRandom() >> (lRandom() % 64));
    lText.insert(static_cast<std::size_t>(lRandom() % (lText.size() + 1)), ".");
    expectAsStrtod((i % 2 != 0 ? "-" : "") + lText);
  }
}

/// The rule in plain double arithmetic; nothing when it is no number, or out of range with either sign.
std::optional<int32_t> byTheRule(const std::string& nText, unsigned int nScale, bool nIsNegated = false) {
  char* lpRest = nullptr;
  const double lScaled = std::strtod(nText.c_str(), &lpRest) * std::pow(10, nScale);
  const double lRounded = std::trunc(lScaled >= 0 ? lScaled + 0.5 : lScaled - 0.5);
  const double lLeast = nIsNegated ? -2147483647.0 : -2147483648.0;
  if (*lpRest != '\0' || !(lRounded >= lLeast && lRounded <= 2147483647.0)) return std::nullopt;
  return static_cast<int32_t>(nIsNegated ? -lRounded : lRounded);
}

/// By the short road where it takes the text, else with care.
std::optional<int32_t> asStored(const std::string& nText, unsigned int nScale, bool nIsNegated = false) {
  int32_t lValue = 0;
  if (nfw::PlainScaled::read((nText + (nIsNegated ? ",S*" : ",N*")).c_str(), nScale, "NS", &lValue) != nullptr) {
    return lValue;
  }
  if (!nfw::convertFloatStrToSint32(nText.c_str(), nScale, nIsNegated, &lValue)) return std::nullopt;
  return lValue;
}

void expectByTheRule(const std::string& nText, unsigned int nScale) {
  for (const bool lIsNegated : {false, true}) {
    ASSERT_EQ(byTheRule(nText, nScale, lIsNegated), asStored(nText, nScale, lIsNegated))
        << nText << " times 10^" << nScale << (lIsNegated ? " negated" : "");
  }
}

TEST(NmeaBinaryLogDataNumber, RoundsAsTheDoubleDoesAtEveryBoundary) {
  const seams::CapturedLog lLog;
  for (unsigned int lScale = 0; lScale <= 5; ++lScale) {
    for (const std::string& lText : nfwtest::split(
             "0|-0|0.5|-0.5|.5|5.||-|.|-.|-.5|-5.|--5|5..|0.05|1.005|1.015|1.115|2.675|-2.675|0.49999999999999994|8."
             "345|1.0000005|1.00000050|1.000000500000001|1.0000005000000001|123519.9995|4807.0381250000|4807."
             "03812499999999|2147483647|2147483647.4|2147483647.5|-2147483648|-2147483648.4|-2147483648.5|21474.83647|"
             "21474.83648|21474.836475|-21474.83648|214748.36475|2147483.6474999999|99999999999|0000000000000000001|"
             "999999999999999999|0.000000000000001|1e3|0x10|inf|nan|+1.5|\t7",
             '|')) {
      expectByTheRule(lText, lScale);
    }
  }
}

TEST(Decimal, IsReadAndStoredTheSameUnderALocaleWithADecimalComma) {
  ASSERT_STREQ("C", setlocale(LC_NUMERIC, nullptr));
  if (setlocale(LC_NUMERIC, "fr_FR.UTF-8") == nullptr) GTEST_SKIP() << "no locale with a decimal comma is installed";
  const std::optional<int32_t> lTie = asStored("1.015", 2);
  const std::optional<int32_t> lLong = asStored("12.34567890123456", 2);
  const char* lpRest = nullptr;
  const double lPlain = nfw::Decimal::read("47.5", &lpRest), lOdd = nfw::Decimal::read("17.1139987654321098", &lpRest);
  setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(byTheRule("1.015", 2), lTie);
  EXPECT_EQ(1235, lLong);
  EXPECT_TRUE(lPlain == 47.5 && lOdd == 17.1139987654321098) << lPlain << ' ' << lOdd;
}

}  // namespace
