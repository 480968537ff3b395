/// @file
/// Real numbers from text, the same under every locale.
#pragma once

#include <cstddef>
#include <cstdint>

namespace nfw {

/// Reads exactly what `strtod` reads in the C locale, bit for bit: a process that has set a comma locale reads the same
/// positions. Numbers as receivers write them take a short exact path; all else (exponents, hexadecimal, "nan", long
/// numbers) goes to the C library under a "C" locale of our own. Nothing is allocated; any thread may call.
class Decimal {
 public:
  static const int MAX_DIGITS = 15;  ///< of a number on the short path: every integer of so many is a double

  /// The number at the start of a terminated text, 0.0 when there is none.
  /// @param nppRest what follows the number; the text itself when there is none
  static double read(const char* npText, const char** nppRest);

  /// The short path: an optional sign, 1 to 15 digits and at most one point. Reads no further than the first character
  /// that cannot belong to it; the caller looks at that one to see that the number ends there.
  /// @return the end of the number; null, and the value untouched, when the text begins otherwise
  static const char* readPlain(const char* npText, double* npValue) {
    const bool lIsNegative = *npText == '-';
    const char* const lpDigits = npText + (lIsNegative || *npText == '+' ? 1 : 0);
    uint64_t lMantissa = 0;
    const char* lpEnd = takeDigits(lpDigits, &lMantissa);
    std::ptrdiff_t lDigitNum = lpEnd - lpDigits;
    std::ptrdiff_t lScale = 0;
    if (*lpEnd == '.') {
      const char* const lpFraction = lpEnd + 1;
      lpEnd = takeDigits(lpFraction, &lMantissa);
      lScale = lpEnd - lpFraction;
      lDigitNum += lScale;
    }
    if (lDigitNum < 1 || lDigitNum > MAX_DIGITS) return nullptr;
    const double lValue = scaled(lMantissa, lScale);
    *npValue = lIsNegative ? -lValue : lValue;
    return lpEnd;
  }

  /// A mantissa of at most MAX_DIGITS with the point `nScale` digits from its right. Both operands are exact, so that
  /// the one division rounds once, as `strtod` does.
  static double scaled(uint64_t nMantissa, std::ptrdiff_t nScale) {
    return static_cast<double>(static_cast<int64_t>(nMantissa)) / POWERS_OF_TEN[nScale];
  }

  /// Appends the digits at the start of a text to a number; their end. Too many wrap around: the caller counts them.
  template <class Number>
  static const char* takeDigits(const char* npText, Number* npNumber) {
    for (; isDigit(*npText); ++npText) *npNumber = *npNumber * 10 + digit(*npText);
    return npText;
  }

  static bool isDigit(char nChar) { return digit(nChar) <= 9; }

  /// Above 9 for anything but a digit.
  static unsigned int digit(char nChar) { return static_cast<unsigned int>(static_cast<unsigned char>(nChar)) - '0'; }

 private:
  static constexpr double POWERS_OF_TEN[MAX_DIGITS + 1] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                           1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
};

}  // namespace nfw
