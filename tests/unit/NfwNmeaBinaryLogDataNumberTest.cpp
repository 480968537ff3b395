#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>

#include "BinaryLog.h"
#include "BinaryNumber.h"
#include "FieldScanner.h"
#include "PlatformSeams.h"
#include "Split.h"

namespace {

const double UNITS[] = {1, 10, 100, 1000, 10000, 100000};

bool fits(double nValue) { return nValue >= -2147483648.0 && nValue <= 2147483647.0; }

/// The rule in plain double arithmetic; nothing when it is no number, or out of range with either sign.
std::optional<int32_t> byTheRule(const std::string& nText, unsigned int nScale, bool nIsNegated = false) {
  char* lpRest = nullptr;
  const double lScaled = std::strtod(nText.c_str(), &lpRest) * UNITS[nScale];
  const double lRounded = std::trunc(lScaled >= 0 ? lScaled + 0.5 : lScaled - 0.5);
  const double lSigned = nIsNegated ? -lRounded : lRounded;
  if (*lpRest != '\0' || !fits(lRounded) || !fits(lSigned)) return std::nullopt;
  return static_cast<int32_t>(lSigned);
}

/// By the short road where it takes the text, else with care.
std::optional<int32_t> asStored(const std::string& nText, unsigned int nScale, bool nIsNegated = false) {
  const std::string lSentence = "$GPXXX," + nText + (nIsNegated ? ",S*" : ",N*");
  nfw::FieldScanner lFields(reinterpret_cast<const unsigned char*>(lSentence.data()),
                            static_cast<unsigned int>(lSentence.size()));
  if (const std::optional<int32_t> lTaken = lFields.takeScaled(nScale, "NS")) return lTaken;
  int32_t lValue = 0;
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

TEST(NmeaBinaryLogDataNumber, ReadsTheSameUnderALocaleWithADecimalComma) {
  ASSERT_STREQ("C", setlocale(LC_NUMERIC, nullptr));
  if (setlocale(LC_NUMERIC, "fr_FR.UTF-8") == nullptr) GTEST_SKIP() << "no locale with a decimal comma is installed";
  const std::optional<int32_t> lTie = asStored("1.015", 2);
  const std::optional<int32_t> lLong = asStored("12.34567890123456", 2);
  setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(byTheRule("1.015", 2), lTie);
  EXPECT_EQ(1235, lLong);
}

}  // namespace
