/// @file
/// Fields as receivers write them.
#pragma once

#include <limits>

#include "Decimal.h"
#include "NfwNmeaSentence.h"

namespace nfw {

/// Reads the field at the start of a text where it stands when it has its plain form: digits, or one letter, up to a
/// "," or "*", and no blanks. Each gives the start of the next field (an empty text behind "*"), or null when the field
/// looks different; its value may then be touched. Reads nothing behind the end of the text.
///
/// Positions go in and out by value, not through an object: so they stay in a register all along a sentence.
class NmeaPlain {
 public:
  static const unsigned int CENTURY = 2000;  ///< of a year of two digits

  /// The start of the next field when the field ends here.
  static const char* behind(const char* npEnd) {
    if (*npEnd == ',') return npEnd + 1;
    return *npEnd == '*' ? "" : nullptr;
  }

  static bool isEmpty(const char* npText) { return *npText == ',' || *npText == '*'; }

  /// "$G", the talker's letter and the type.
  static const char* address(const char* npText, const char* npType, char* npTalker) {
    if (npText[0] != '$' || npText[1] != 'G' || isEmpty(npText + 2) || npText[2] == '\0') return nullptr;
    if (npText[3] != npType[0] || npText[4] != npType[1] || npText[5] != npType[2]) return nullptr;
    *npTalker = npText[2];
    return behind(npText + 6);
  }

  /// One letter; 0 when empty.
  [[gnu::always_inline]] static const char* letter(const char* npText, char* npLetter) {
    *npLetter = '\0';
    if (isEmpty(npText)) return behind(npText);
    *npLetter = *npText;
    return static_cast<unsigned char>(*npText) > ' ' ? behind(npText + 1) : nullptr;
  }

  /// At most 9 digits; 0 when empty.
  template <class Number>
  [[gnu::always_inline]] static const char* number(const char* npText, Number* npValue) {
    uint32_t lValue = 0;
    const char* const lpEnd = Decimal::takeDigits(npText, &lValue);
    if (lpEnd - npText > 9 || lValue > std::numeric_limits<Number>::max()) return nullptr;
    *npValue = static_cast<Number>(lValue);
    return behind(lpEnd);
  }

  /// A number without exponent; 0.0 when empty.
  static const char* real(const char* npText, double* npValue) {
    if (const char* const lpEnd = Decimal::readPlain(npText, npValue)) return behind(lpEnd);
    *npValue = 0.0;
    return behind(npText);
  }

  /// hhmmss, or hhmmss. and up to three digits
  static const char* time(const char* npText, GnssSentenceTime* npTime) {
    if (!pair(npText, &npTime->hour) || !pair(npText + 2, &npTime->minute) || !pair(npText + 4, &npTime->second)) {
      return nullptr;
    }
    uint32_t lMillisecond = 0;
    const char* const lpPoint = npText + 6;
    const char* const lpEnd = *lpPoint == '.' ? Decimal::takeDigits(lpPoint + 1, &lMillisecond) : lpPoint;
    npTime->millisecond = static_cast<uint16_t>(lMillisecond);
    return lpEnd - lpPoint <= 4 ? behind(lpEnd) : nullptr;
  }

  /// ddmmyy
  static const char* date(const char* npText, GnssSentenceDate* npDate) {
    if (!pair(npText, &npDate->day) || !pair(npText + 2, &npDate->month) || !pair(npText + 4, &npDate->year)) {
      return nullptr;
    }
    npDate->year += CENTURY;
    return behind(npText + 6);
  }

  /// Degrees, two digits of minutes, a point, and a fraction of up to 10 digits of which the minutes keep four.
  static const char* coordinate(const char* npText, int nDegreeDigits, GnssSentenceCoordinate* npCoordinate) {
    uint64_t lValue = 0;
    const char* const lpPoint = Decimal::takeDigits(npText, &lValue);
    if (lpPoint - npText != nDegreeDigits + 2 || *lpPoint != '.') return nullptr;
    const auto lDegree = static_cast<uint32_t>(lValue) / 100;
    const char* const lpFraction = lpPoint + 1;
    const char* lpEnd = lpFraction;
    for (; lpEnd != lpFraction + 4 && Decimal::isDigit(*lpEnd); ++lpEnd) lValue = lValue * 10 + Decimal::digit(*lpEnd);
    const auto lMinuteScale = lpEnd - lpFraction;
    npCoordinate->degree = static_cast<int32_t>(lDegree);
    npCoordinate->minute = Decimal::scaled(lValue - uint64_t{lDegree} * DEGREE_UNITS[lMinuteScale], lMinuteScale);
    lpEnd = Decimal::takeDigits(lpEnd, &lValue);
    if (lpEnd - lpFraction > 10) return nullptr;
    npCoordinate->value = Decimal::scaled(lValue, lpEnd - lpFraction);
    return behind(lpEnd);
  }

 private:
  static constexpr uint32_t DEGREE_UNITS[] = {100, 1000, 10000, 100000, 1000000};  // by digits of the fraction

  // Two digits. Reads the second only behind the first: the text may end anywhere.
  template <class Number>
  static bool pair(const char* npText, Number* npValue) {
    if (!Decimal::isDigit(npText[0]) || !Decimal::isDigit(npText[1])) return false;
    *npValue = static_cast<Number>(Decimal::digit(npText[0]) * 10 + Decimal::digit(npText[1]));
    return true;
  }
};

}  // namespace nfw
