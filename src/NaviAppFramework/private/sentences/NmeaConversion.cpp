#include "NmeaConversion.h"

#include <cstring>

#include "Decimal.h"
#include "NfwAppLog.h"
#include "NmeaItem.h"
#include "NmeaLetters.h"
#include "NmeaPlain.h"
#include "utl/StringUtil.h"

namespace nfw {

namespace {

const unsigned int MAX_MINUTE_CHARS = 7;  // "39.1234": what follows is not looked at

struct PubxStatusWord {
  const char* mpText;
  PubxStatus mStatus;
};
const PubxStatusWord PUBX_STATUS_WORDS[] = {
    {"NF", PUBX_NO_FIX},          {"DR", PUBX_DEAD_RECKONING},  {"G2", PUBX_2D},       {"G3", PUBX_3D},
    {"D2", PUBX_DIFFERENTIAL_2D}, {"D3", PUBX_DIFFERENTIAL_3D}, {"RK", PUBX_COMBINED}, {"TT", PUBX_TIME_ONLY}};

bool fail(const char* npText) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s", npText);
  return false;
}

bool toNumber(const char* npText, int32_t* npValue) { return utl::toSint32(npText, npValue); }
bool toNumber(const char* npText, uint32_t* npValue) { return utl::toUint32(npText, npValue); }
bool toNumber(const char* npText, uint16_t* npValue) { return utl::toUint16(npText, npValue); }

/// The numbers in fixed columns of a field; a failure is told in the words of the step.
struct Columns {
  const char* mpText;
  const char* mpCopyError;
  const char* mpNumberError;

  const char* at(unsigned int nPosition) const { return mpText + strnlen(mpText, nPosition); }  // not behind the end

  template <class Number>
  bool read(unsigned int nPosition, unsigned int nCount, Number* npValue) const {
    char lPart[NmeaItem::ITEM_SIZE];
    if (!utl::copyStr(lPart, sizeof(lPart), at(nPosition), nCount)) return fail(mpCopyError);
    return toNumber(lPart, npValue) || fail(mpNumberError);
  }
};

bool readMinute(const char* npText, double* npMinute) {
  char lPart[NmeaItem::ITEM_SIZE];
  if (!utl::copyStr(lPart, sizeof(lPart), npText, MAX_MINUTE_CHARS)) {
    return fail("NmeaDataParser::parseCoordinate(): utl::copyStr() Lon Error");
  }
  const char* lpRest = nullptr;
  *npMinute = Decimal::read(lPart, &lpRest);
  return true;
}

bool divideCoordinate(const char* npText, unsigned int nDegreeDigits, GnssSentenceCoordinate* npCoordinate) {
  const Columns lColumns = {npText, "NmeaDataParser::parseCoordinate(): utl::copyStr() Lat Error",
                            "NmeaDataParser::parseCoordinate(): utl::toSint32() Error"};
  return lColumns.read(0, nDegreeDigits, &npCoordinate->degree) &&
         readMinute(lColumns.at(nDegreeDigits), &npCoordinate->minute);
}

}  // namespace

bool NmeaConversion::divideTime(const char* npText, GnssSentenceTime* npTime) {
  if (npText == nullptr || npTime == nullptr) return fail("NmeaDataParser::divideTime(): Argument Error");
  const Columns lColumns = {npText, "NmeaDataParser::divideTime(): utl::copyStr() Error",
                            "NmeaDataParser::divideTime(): utl::toUint16() Error"};
  npTime->millisecond = 0;
  return lColumns.read(0, 2, &npTime->hour) && lColumns.read(2, 2, &npTime->minute) &&
         lColumns.read(4, 2, &npTime->second) && (*lColumns.at(7) == '\0' || lColumns.read(7, 3, &npTime->millisecond));
}

bool NmeaConversion::divideUtcDate(const char* npText, GnssSentenceDate* npDate) {
  if (npText == nullptr || npDate == nullptr) return fail("NmeaDataParser::divideUtcDate(): Argument Error");
  const Columns lColumns = {npText, "NmeaDataParser::divideUtcDate(): utl::copyStr() Error",
                            "NmeaDataParser::divideUtcDate(): utl::toUint16() Error"};
  if (!lColumns.read(0, 2, &npDate->day) || !lColumns.read(2, 2, &npDate->month)) return false;
  if (!lColumns.read(4, 2, &npDate->year)) return false;
  npDate->year += NmeaPlain::CENTURY;
  return true;
}

bool NmeaConversion::parseCoordinate(const char* npText, int nType, GnssSentenceCoordinate* npCoordinate) {
  if (npText == nullptr || npCoordinate == nullptr) return fail("NmeaDataParser::parseCoordinate(): Argument Error");
  const char* lpRest = nullptr;
  npCoordinate->value = Decimal::read(npText, &lpRest);
  npCoordinate->degree = 0;
  npCoordinate->minute = 0.0;
  if (*npText == '\0') return true;
  if (*lpRest != '\0') {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "NmeaDataParser::parseCoordinate(): lpUnkownStr is [%s]", lpRest);
    return false;
  }
  if (nType == LATITUDE) return divideCoordinate(npText, 2, npCoordinate);
  if (nType == LONGITUDE) return divideCoordinate(npText, 3, npCoordinate);
  return fail("NmeaDataParser::parseCoordinate(): CoordinateType Error");
}

bool NmeaConversion::convertSatelliteQuality(const char* npText, SatelliteQuality* npQuality) {
  int32_t lNumber = 0;
  const bool lIsNumber = *npText == '\0' || utl::toSint32(npText, &lNumber);
  const char lDigit = lIsNumber && lNumber >= 0 && lNumber <= 9 ? static_cast<char>('0' + lNumber) : '\0';
  *npQuality = fromLetter(lDigit, QUALITY_DIGITS, QUALITY_UNKNOWN);
  return *npQuality != QUALITY_UNKNOWN ||
         fail("NmeaDataParser::convertSatelliteQuality(): Unknown SatelliteQuality Type");
}

bool NmeaConversion::convertAutonomousMethodType(const char* npText, AutonomousMethodType* npMode) {
  *npMode = MODE_NOT_VALID;
  if (fromLetter(npText[0], MODE_LETTERS, npMode)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "NmeaDataParser::convertAutonomousMethodType(): Unknown Type nData[%s]",
         npText);
  return false;
}

bool NmeaConversion::convertPositioningType(const char* npText, PositioningType* npType) {
  *npType = POSITIONING_NONE;
  return fromLetter(npText[0], POSITIONING_LETTERS, npType) ||
         fail("NmeaDataParser::convertPositioningType(): Unknown Type");
}

bool NmeaConversion::convertGsaMode(const char* npText, GsaMode* npMode) {
  *npMode = GSA_NO_FIX;
  return fromLetter(npText[0], GSA_MODE_DIGITS, npMode) || fail("NmeaDataParser::convertGsaMode(): Unknown Mode");
}

bool NmeaConversion::convertPubxStatus(const char* npText, PubxStatus* npStatus) {
  *npStatus = PUBX_NO_FIX;
  for (const PubxStatusWord& lWord : PUBX_STATUS_WORDS) {
    if (npText[0] != lWord.mpText[0] || npText[1] != lWord.mpText[1]) continue;
    *npStatus = lWord.mStatus;
    return true;
  }
  return fail("NmeaDataParser::convertPubxStatus(): Unknown Status");
}

CoordinateDirection NmeaConversion::convertDirection(const char* npText) {
  const bool lIsLetter = npText[0] != '\0' && npText[1] == '\0';
  return fromLetter(lIsLetter ? npText[0] : '\0', DIRECTION_LETTERS, DIRECTION_NONE);
}

SatelliteType NmeaConversion::getSatelliteType(const char* npAddress) {
  if (npAddress[0] != '$') {
    fail("NmeaDataParser::getSatelliteType(): nData[0] is not '$'");
    return SATELLITE_UNKNOWN;
  }
  if (npAddress[1] != 'G') {
    fail("NmeaDataParser::getSatelliteType(): nData[1] is not 'G'");
    return SATELLITE_UNKNOWN;
  }
  return fromLetter(npAddress[2], TALKER_LETTERS, SATELLITE_OTHER);
}

}  // namespace nfw
