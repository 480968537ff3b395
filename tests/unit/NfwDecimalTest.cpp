#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>

#include "Decimal.h"
#include "Split.h"

using nfw::Decimal;

namespace {

void expectAsStrtod(const std::string& nText) {
  char* lpExpectedRest = nullptr;
  const char* lpRest = nullptr;
  const double lExpected = std::strtod(nText.c_str(), &lpExpectedRest);
  const double lValue = Decimal::read(nText.c_str(), &lpRest);
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

}  // namespace
