/// @file
/// Decimal numbers as scaled integers, for fields as receivers write them.
#pragma once

#include "NmeaPlain.h"

namespace nfw {

/// Reads a field in its plain form like NmeaPlain: gives the start of the next field, or null when the field looks
/// different or when the double arithmetic of convertFloatToSint32 must tell; its value may then be touched.
class PlainScaled {
 public:
  /// An optional "-", digits and at most one point, times 10^nScale and rounded half away from zero: what the double
  /// gives for it. An empty field is 0.
  /// @param npSigns two letters: a field of one letter or none follows, and the second negates the number. May be null.
  [[gnu::always_inline]] static const char* read(const char* npText, unsigned int nScale, const char* npSigns,
                                                 int32_t* npValue) {
    const bool lIsNegative = *npText == '-';
    const char* const lpDigits = npText + (lIsNegative ? 1 : 0);
    uint64_t lScaled = 0;
    const char* lpEnd = Decimal::takeDigits(lpDigits, &lScaled);
    std::ptrdiff_t lDigitNum = lpEnd - lpDigits, lDecimals = 0;
    if (*lpEnd == '.') {
      const char* const lpFraction = lpEnd + 1;
      lpEnd = Decimal::takeDigits(lpFraction, &lScaled);
      lDecimals = lpEnd - lpFraction;
      lDigitNum += lDecimals;
    }
    if (lDigitNum == 0 ? lpEnd != npText : lpEnd - npText > MAX_LENGTH) return nullptr;
    if (!rescale(&lScaled, lDecimals - static_cast<std::ptrdiff_t>(nScale))) return nullptr;
    *npValue = static_cast<int32_t>(lIsNegative ? -static_cast<int64_t>(lScaled) : static_cast<int64_t>(lScaled));
    const char* const lpNext = NmeaPlain::behind(lpEnd);
    return npSigns == nullptr || lpNext == nullptr ? lpNext : readSign(lpNext, npSigns[1], npValue);
  }

 private:
  static const std::ptrdiff_t MAX_LENGTH = 18;  // so many digits fit 64 bits
  static const std::ptrdiff_t MAX_DROPPED = 6;
  static constexpr uint32_t POWERS_OF_TEN[] = {1, 10, 100, 1000, 10000, 100000, 1000000};

  static const char* readSign(const char* npText, char nNegative, int32_t* npValue) {
    char lLetter = '\0';
    const char* const lpNext = NmeaPlain::letter(npText, &lLetter);
    if (lLetter == nNegative) *npValue = -*npValue;
    return lpNext;
  }

  static bool rescale(uint64_t* npScaled, std::ptrdiff_t nDropped) {
    if (nDropped > 0) return nDropped <= MAX_DROPPED && dropDigits(npScaled, POWERS_OF_TEN[nDropped]);
    if (*npScaled > INT32_MAX) return false;
    *npScaled *= POWERS_OF_TEN[-nDropped];
    return *npScaled <= INT32_MAX;
  }

  // Of a number M + f, with f the digits beyond the scale, the double that strtod reads is off by half a unit in its
  // last place, its product with 10^nScale by one, the sum with 0.5 by half a one: below 2^31 together less
  // than 7.2E-7. As long as f is not exactly one half it is at least 10^-6 away from it, six digits at most, and the
  // double arithmetic rounds as the digits say. One half itself is left to the double.
  static bool dropDigits(uint64_t* npScaled, uint32_t nUnit) {
    const uint64_t lRest = *npScaled % nUnit;
    if (lRest * 2 == nUnit) return false;
    *npScaled = *npScaled / nUnit + (lRest * 2 > nUnit ? 1 : 0);
    return *npScaled <= INT32_MAX;
  }
};

}  // namespace nfw
