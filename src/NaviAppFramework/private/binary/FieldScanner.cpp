#include "FieldScanner.h"

#include <cstring>

#include "NfwAppLog.h"

namespace nfw {
namespace {

const std::ptrdiff_t MAX_DROPPED_DIGITS = 6;
const uint32_t POWERS_OF_TEN[] = {1, 10, 100, 1000, 10000, 100000, 1000000};

}  // namespace

FieldScanner::FieldScanner(const unsigned char* npSentence, unsigned int nLength) : mpEnd(mText + nLength) {
  memcpy(mText, npSentence, nLength);
  memset(mText + nLength, 0, 4);
  mpFirst = mpNext = fieldAt(mText, 2, nullptr);
}

/// The first separator, null when there is none before the end.
inline const char* FieldScanner::separator(const char* npText) {
  const char* lpNext = npText;
  while (*lpNext != '\0' && !endsField(lpNext)) ++lpNext;
  return *lpNext != '\0' ? lpNext : nullptr;
}

const char* FieldScanner::fieldAt(const char* npFrom, unsigned int nTarget, unsigned int* npCount) const {
  const char* lpNext = npFrom;
  for (unsigned int lFound = 1; lFound < nTarget; ++lFound) {
    lpNext = separator(lpNext);
    if (lpNext == nullptr) return mpEnd;
    lpNext = behind(lpNext);
    if (npCount != nullptr) ++*npCount;
  }
  return lpNext;
}

// Of a number M + f, with f the digits beyond nScale, the double that strtod reads is off by half a unit in its last
// place, its product with 10^nScale by one, the sum with 0.5 by half a one: below 2^31 together less than 7.2E-7. As
// long as f is not exactly one half it is at least 10^-6 away from it, six digits at most, and the double arithmetic
// rounds as the digits say. One half itself is left to the double.
std::optional<int32_t> FieldScanner::takeScaled(unsigned int nScale, const char* npSigns) {
  const char* const lpStart = start();
  bool lIsNegative = *lpStart == '-';
  uint64_t lScaled = 0;
  const char* const lpDigits = lIsNegative ? lpStart + 1 : lpStart;
  const char* lpNext = skipDigits(lpDigits, &lScaled);
  std::ptrdiff_t lDigitNum = lpNext - lpDigits;
  std::ptrdiff_t lDropped = -static_cast<std::ptrdiff_t>(nScale);
  if (*lpNext == '.') {
    const char* const lpFraction = lpNext + 1;
    lpNext = skipDigits(lpFraction, &lScaled);
    lDigitNum += lpNext - lpFraction;
    lDropped += lpNext - lpFraction;
  }
  const std::ptrdiff_t lLength = lpNext - lpStart;
  if (!endsField(lpNext) || lLength > MAX_DIGITS || lDropped > MAX_DROPPED_DIGITS) return std::nullopt;
  if (lDigitNum == 0 && lLength != 0) return std::nullopt;  // a sign or a point without a digit
  if (lDropped > 0) {
    const uint32_t lUnit = POWERS_OF_TEN[lDropped];
    const uint64_t lRest = lScaled % lUnit;
    if (lRest * 2 == lUnit) return std::nullopt;
    lScaled = lScaled / lUnit + (lRest * 2 > lUnit ? 1 : 0);
  } else {
    if (lScaled > INT32_MAX) return std::nullopt;
    lScaled *= POWERS_OF_TEN[-lDropped];
  }
  if (lScaled > INT32_MAX) return std::nullopt;

  if (npSigns != nullptr) {  // a field of one letter or none
    if (*lpNext != ',') return std::nullopt;
    if (*++lpNext == npSigns[1]) lIsNegative = !lIsNegative;
    if (*lpNext == '\0' || (!endsField(lpNext) && !endsField(++lpNext))) return std::nullopt;
  }
  reached(lpNext);
  const int32_t lValue = static_cast<int32_t>(lScaled);
  return lIsNegative ? -lValue : lValue;
}

bool FieldScanner::extractNmeaField(Text& nText) {
  const char* const lpSeparator = extract(mpNext, mTarget, nText);
  if (lpSeparator == nullptr) return false;
  reached(lpSeparator);
  return true;
}

bool FieldScanner::extractNmeaField(unsigned int nTarget, Text& nText) const {
  return extract(mpFirst, nTarget, nText) != nullptr;
}

const char* FieldScanner::extract(const char* npFrom, unsigned int nTarget, Text& nText) const {
  unsigned int lCount = 0;
  const char* lpFirst = fieldAt(npFrom, nTarget, &lCount);
  const char* const lpSeparator = separator(lpFirst);
  if (lpSeparator == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::extractNmeaField(): can't find field: target=%u field count=%u", nTarget,
           lCount);
    return nullptr;
  }
  if (lpSeparator > lpFirst + MAX_FIELD) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::extractNmeaField(): insufficient buffer");
    return nullptr;
  }
  const char* lpLast = lpSeparator;
  while (lpFirst != lpLast && *lpFirst == ' ') ++lpFirst;
  while (lpFirst != lpLast && lpLast[-1] == ' ') --lpLast;
  const size_t lLength = static_cast<size_t>(lpLast - lpFirst);
  memcpy(nText, lpFirst, lLength);
  nText[lLength] = '\0';
  return lpSeparator;
}

}  // namespace nfw
