#include "TokyoDatum.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "SentenceParser.h"

namespace gpshost {

namespace {

const char DIGITS[] = "0123456789";
const size_t MAX_DIGITS = 15;  // of which every number is a double

/// One coordinate with its direction, as it stands in a sentence: (d)ddmm.mmmm,N
struct Axis {
  const char* mpText;
  const char* mpEnd;      // behind the direction
  const char* mpLetters;  // of the directions, positive first
  int mWidth;             // digits before the point
  int mDecimals;          // -1: no point
  int64_t mUnit;          // of the last digit: so many in a minute
  double mDegrees;
};

int64_t powerOfTen(int nExponent) {
  int64_t lPower = 1;
  for (; nExponent > 0; --nExponent) lPower *= 10;
  return lPower;
}

double toDegrees(const char* npText, size_t nWhole, size_t nDecimals, int64_t nUnit) {
  int64_t lDigits = strtoll(npText, nullptr, 10);
  if (nDecimals > 0) lDigits = lDigits * nUnit + strtoll(npText + nWhole + 1, nullptr, 10);
  const int64_t lDegrees = lDigits / (100 * nUnit);
  const int64_t lMinutes = lDigits % (100 * nUnit);
  return static_cast<double>(lDegrees) + static_cast<double>(lMinutes) / static_cast<double>(60 * nUnit);
}

bool endsField(char nChar) { return nChar == ',' || nChar == '*' || nChar == '\0' || nChar == '\r' || nChar == '\n'; }

/// False when there is no coordinate in plain digits.
bool read(const char* npText, const char* npLetters, Axis* npAxis) {
  const size_t lWhole = strspn(npText, DIGITS);
  const bool lHasPoint = npText[lWhole] == '.';
  const size_t lDecimals = lHasPoint ? strspn(npText + lWhole + 1, DIGITS) : 0;
  const char* const lpComma = npText + lWhole + (lHasPoint ? 1 : 0) + lDecimals;
  if (lWhole < 3 || lWhole + lDecimals > MAX_DIGITS || *lpComma != ',') return false;
  const bool lIsNegative = lpComma[1] == npLetters[1];
  if ((!lIsNegative && lpComma[1] != npLetters[0]) || !endsField(lpComma[2])) return false;
  const int64_t lUnit = powerOfTen(static_cast<int>(lDecimals));
  const double lDegrees = toDegrees(npText, lWhole, lDecimals, lUnit);
  *npAxis = {npText,
             lpComma + 2,
             npLetters,
             static_cast<int>(lWhole),
             lHasPoint ? static_cast<int>(lDecimals) : -1,
             lUnit,
             lIsNegative ? -lDegrees : lDegrees};
  return true;
}

/// Writes the coordinate as wide as it was; the end of it.
char* write(const Axis& nAxis, double nDegrees, char* npOut) {
  const int64_t lMinutes = std::llround(std::fabs(nDegrees) * 60.0 * static_cast<double>(nAxis.mUnit));
  const int64_t lOfDegree = lMinutes % (60 * nAxis.mUnit);
  const int64_t lWhole = lMinutes / (60 * nAxis.mUnit) * 100 + lOfDegree / nAxis.mUnit;
  npOut += snprintf(npOut, 24, "%0*lld", nAxis.mWidth, static_cast<long long>(lWhole));
  if (nAxis.mDecimals >= 0) *npOut++ = '.';
  if (nAxis.mDecimals > 0) {
    npOut += snprintf(npOut, 24, "%0*lld", nAxis.mDecimals, static_cast<long long>(lOfDegree % nAxis.mUnit));
  }
  *npOut++ = ',';
  *npOut++ = nAxis.mpLetters[nDegrees < 0.0 ? 1 : 0];
  return npOut;
}

/// The start of a field; null when there is none. The address is field 0.
const char* fieldAt(const char* npText, int nIndex) {
  for (; nIndex > 0; --nIndex) {
    npText += strcspn(npText, ",*");
    if (*npText != ',') return nullptr;
    ++npText;
  }
  return npText;
}

/// Where the latitude begins; null when there is none.
const char* positionOf(const char* npText) {
  switch (kindOf(npText)) {
    case KIND_GLL:
      return fieldAt(npText, 1);
    case KIND_GGA:
      return fieldAt(npText, 2);
    case KIND_RMC:
      return fieldAt(npText, 3);
    case KIND_PUBX:
      return strncmp(npText, "$PUBX,00,", 9) == 0 ? fieldAt(npText, 3) : nullptr;
    default:
      return nullptr;
  }
}

/// Copies the rest of a sentence behind what was written of it, with the checksum of all where it has one; the end.
char* appendRest(const char* npRest, const char* npWritten, char* npNext) {
  const size_t lBody = strcspn(npRest, "*");
  memcpy(npNext, npRest, lBody);
  npNext += lBody;
  npRest += lBody;
  if (npRest[0] == '*' && npRest[1] != '\0' && npRest[2] != '\0') {
    unsigned int lSum = 0;
    for (const char* p = npWritten + 1; p < npNext; ++p) lSum ^= static_cast<unsigned char>(*p);
    npNext += snprintf(npNext, 4, "*%02X", lSum);
    npRest += 3;
  }
  const size_t lTail = strlen(npRest);
  memcpy(npNext, npRest, lTail + 1);
  return npNext + lTail;
}

}  // namespace

unsigned int moveToTokyo(const char* npText, char* npOut) {
  Axis lLat, lLon;
  const char* const lpPosition = positionOf(npText);
  if (lpPosition == nullptr || !read(lpPosition, "NS", &lLat) || *lLat.mpEnd != ',') return 0;
  if (!read(lLat.mpEnd + 1, "EW", &lLon)) return 0;
  const double lOldLat = lLat.mDegrees, lOldLon = lLon.mDegrees;
  const double lNewLat = lOldLat + 0.000106961 * lOldLat - 0.000017467 * lOldLon - 0.004602017;
  const double lNewLon = lOldLon + 0.000046047 * lOldLat + 0.000083049 * lOldLon - 0.010041046;
  const size_t lHead = static_cast<size_t>(lLat.mpText - npText);
  memcpy(npOut, npText, lHead);
  char* lpNext = write(lLat, lNewLat, npOut + lHead);
  *lpNext++ = ',';
  lpNext = write(lLon, lNewLon, lpNext);
  const char* const lpEnd = appendRest(lLon.mpEnd, npOut, lpNext);
  return static_cast<unsigned int>(lpEnd - npOut);
}

}  // namespace gpshost
