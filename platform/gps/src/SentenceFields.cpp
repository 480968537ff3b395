#include "SentenceFields.h"

#include <locale.h>
#include <stdlib.h>

#include <cstring>

#include "utl/StringUtil.h"

namespace gpshost {

namespace {

const unsigned int MAX_MINUTE_CHARS = 7;  // "39.1234"

bool toNumber(const char* npText, unsigned char* npValue) { return utl::toUint8(npText, npValue); }
bool toNumber(const char* npText, unsigned short* npValue) { return utl::toUint16(npText, npValue); }
bool toNumber(const char* npText, unsigned int* npValue) { return utl::toUint32(npText, npValue); }
bool toNumber(const char* npText, int* npValue) { return utl::toSint32(npText, npValue); }

// The same under every locale; that of numbers is never freed, for threads may outlive the statics.
double toReal(const char* npText, const char** nppRest) {
  static const locale_t PLAIN = newlocale(LC_ALL_MASK, "C", nullptr);
  char* lpRest = nullptr;
  const double lValue = strtod_l(npText, &lpRest, PLAIN);
  *nppRest = lpRest;
  return lValue;
}

// -1 when it is not among them.
int placeOf(char nLetter, const char* npLetters) {
  const char* const lpFound = nLetter != '\0' ? strchr(npLetters, nLetter) : nullptr;
  return lpFound != nullptr ? static_cast<int>(lpFound - npLetters) : -1;
}

int satelliteTypeOf(const char* npAddress) {
  if (npAddress[0] != '$' || npAddress[1] != 'G') return 0;
  const int lPlace = placeOf(npAddress[2], "PLAN");
  return lPlace >= 0 ? lPlace + 1 : 5;
}

}  // namespace

bool SentenceFields::take() {
  const size_t lSize = strcspn(mpNext, ",*");
  if (*mpNext == '\0' || lSize >= sizeof(mItem)) return false;
  const char* lpFirst = mpNext;
  const char* lpEnd = mpNext + lSize;
  mpNext = *lpEnd == ',' ? lpEnd + 1 : "";
  while (lpFirst != lpEnd && *lpFirst == ' ') ++lpFirst;
  while (lpFirst != lpEnd && lpEnd[-1] == ' ') --lpEnd;
  const size_t lLength = static_cast<size_t>(lpEnd - lpFirst);
  memcpy(mItem, lpFirst, lLength);
  mItem[lLength] = '\0';
  return true;
}

bool SentenceFields::address(const char* npType, int* npSatelliteType) {
  if (!take() || strlen(mItem) < 3 || strcmp(mItem + 3, npType) != 0) return false;
  *npSatelliteType = satelliteTypeOf(mItem);
  return true;
}

bool SentenceFields::address(const char* npWhole) { return take() && strcmp(mItem, npWhole) == 0; }

/// The number in some columns of the field.
template <class Number>
bool SentenceFields::column(unsigned int nFrom, unsigned int nCount, Number* npValue) const {
  char lPart[sizeof(mItem)];
  return utl::copyStr(lPart, sizeof(lPart), mItem + strnlen(mItem, nFrom), nCount) && toNumber(lPart, npValue);
}

bool SentenceFields::time(GPS_TIME* npTime) {
  npTime->millisecond = 0;
  return take() && column(0, 2, &npTime->hour) && column(2, 2, &npTime->minute) && column(4, 2, &npTime->second) &&
         (strlen(mItem) <= 7 || column(7, 3, &npTime->millisecond));
}

bool SentenceFields::date(GPS_DATE* npDate) {
  if (!take() || !column(0, 2, &npDate->day) || !column(2, 2, &npDate->month) || !column(4, 2, &npDate->year)) {
    return false;
  }
  npDate->year += 2000;
  return true;
}

bool SentenceFields::coordinate(unsigned int nDegreeDigits, GPS_COORDINATE* npCoordinate) {
  if (!take()) return false;
  *npCoordinate = GPS_COORDINATE{};
  if (*mItem == '\0') return direction(&npCoordinate->direction);
  const char* lpRest = nullptr;
  npCoordinate->value = toReal(mItem, &lpRest);
  if (*lpRest != '\0' || !column(0, nDegreeDigits, &npCoordinate->degree)) return false;
  char lMinute[MAX_MINUTE_CHARS + 1];
  if (!utl::copyStr(lMinute, sizeof(lMinute), mItem + strnlen(mItem, nDegreeDigits), MAX_MINUTE_CHARS)) return false;
  npCoordinate->minute = toReal(lMinute, &lpRest);
  return direction(&npCoordinate->direction);
}

bool SentenceFields::direction(int* npDirection) {
  if (!take()) return false;
  *npDirection = strlen(mItem) == 1 ? placeOf(*mItem, "NSEW") + 1 : 0;
  return true;
}

bool SentenceFields::real(double* npValue) {
  if (!take()) return false;
  const char* lpRest = nullptr;
  *npValue = toReal(mItem, &lpRest);
  return *lpRest == '\0';
}

bool SentenceFields::count(unsigned int* npValue) {
  *npValue = 0;
  return take() && (*mItem == '\0' || toNumber(mItem, npValue));
}

bool SentenceFields::number(unsigned int* npValue) { return take() && toNumber(mItem, npValue); }
bool SentenceFields::number(unsigned short* npValue) { return take() && toNumber(mItem, npValue); }

template <class Number>
bool SentenceFields::satelliteValue(Number* npValue, int* npValid) {
  *npValue = 0;
  if (!take()) return false;
  if (*mItem != '\0') return toNumber(mItem, npValue);
  *npValid = 0;
  return true;
}

bool SentenceFields::satellite(GPGSV_SATELLITE* npSatellite) {
  npSatellite->valid = 1;
  return satelliteValue(&npSatellite->number, &npSatellite->valid) &&
         satelliteValue(&npSatellite->elevation, &npSatellite->valid) &&
         satelliteValue(&npSatellite->azimuth, &npSatellite->valid) &&
         satelliteValue(&npSatellite->snr, &npSatellite->valid);
}

// 0, 1 and 2 are themselves, 6 (estimated) is 3.
bool SentenceFields::quality(int* npQuality) {
  int lNumber = 0;
  if (!take() || (*mItem != '\0' && !toNumber(mItem, &lNumber))) return false;
  *npQuality = lNumber == 6 ? 3 : lNumber;
  return lNumber == 6 || (lNumber >= 0 && lNumber <= 2);
}

bool SentenceFields::status(int* npStatus) {
  static const char WORDS[][3] = {"NF", "DR", "G2", "G3", "D2", "D3", "RK", "TT"};
  if (!take()) return false;
  *npStatus = 0;
  for (const char* lpWord : WORDS) {
    if (strncmp(mItem, lpWord, 2) == 0) return true;
    ++*npStatus;
  }
  return false;
}

bool SentenceFields::flag(char nLetter, int* npFlag) {
  if (!take()) return false;
  *npFlag = *mItem == nLetter ? 1 : 0;
  return true;
}

bool SentenceFields::code(const char* npLetters, int nFirst, int* npCode) {
  if (!take()) return false;
  const int lPlace = placeOf(*mItem, npLetters);
  *npCode = nFirst + lPlace;
  return lPlace >= 0;
}

}  // namespace gpshost
