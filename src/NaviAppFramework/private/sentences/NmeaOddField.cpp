#include "NmeaOddField.h"

#include <cstring>

#include "Decimal.h"
#include "NfwAppLog.h"
#include "NmeaConversion.h"
#include "NmeaItem.h"
#include "utl/StringUtil.h"

namespace nfw {

const char* NmeaWords::fail(const char* npText) const {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s: %s", mpOperation, npText);
  return nullptr;
}

namespace {

bool failWithItem(NmeaOddField nField, const char* npText, const char* npItem) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s: %s[%s]", nField.mWords.mpOperation, npText, npItem);
  return false;
}

// With a conversion that writes its lines itself.
template <class Convert>
const char* extract(NmeaOddField nField, const char* npExtractError, Convert nConvert) {
  NmeaItem lItem;
  const char* const lpNext = lItem.extractHeadData(nField.mpText);
  if (lpNext == nullptr) return nField.mWords.fail(npExtractError);
  return nConvert(lItem.text()) ? lpNext : nullptr;
}

template <class Convert>
const char* extract(NmeaOddField nField, const char* npExtractError, const char* npConvertError, Convert nConvert) {
  return extract(nField, npExtractError,
                 [&](const char* npItem) { return nConvert(npItem) || nField.mWords.fail(npConvertError) != nullptr; });
}

}  // namespace

const char* NmeaOddField::skip(NmeaOddField nField, const char* npExtractError) {
  return extract(nField, npExtractError, [](const char*) { return true; });
}

const char* NmeaOddField::address(NmeaOddField nField) {
  return extract(nField, nField.mWords.mpExtractError, nField.mWords.mpTypeError,
                 [&](const char* npItem) { return strcmp(npItem, nField.mWords.mpType) == 0; });
}

const char* NmeaOddField::address(NmeaOddField nField, SatelliteType* npType) {
  return extract(nField, nField.mWords.mpExtractError, nField.mWords.mpTypeError, [&](const char* npItem) {
    if (strlen(npItem) < 3 || strcmp(npItem + 3, nField.mWords.mpType) != 0) return false;
    *npType = NmeaConversion::getSatelliteType(npItem);
    return true;
  });
}

const char* NmeaOddField::time(NmeaOddField nField, const char* npTimeError, GnssSentenceTime* npTime) {
  return extract(nField, "Extract UTC Error", npTimeError,
                 [&](const char* npItem) { return NmeaConversion::divideTime(npItem, npTime); });
}

const char* NmeaOddField::date(NmeaOddField nField, GnssSentenceDate* npDate) {
  return extract(nField, "Extract Date Error", "Extract divideUtcDate Error",
                 [&](const char* npItem) { return NmeaConversion::divideUtcDate(npItem, npDate); });
}

const char* NmeaOddField::latitude(NmeaOddField nField, GnssSentenceCoordinate* npCoordinate) {
  return extract(nField, "Extract Lat Error", "parseCoordinate() Lat Error", [&](const char* npItem) {
    return NmeaConversion::parseCoordinate(npItem, NmeaConversion::LATITUDE, npCoordinate);
  });
}

const char* NmeaOddField::longitude(NmeaOddField nField, GnssSentenceCoordinate* npCoordinate) {
  return extract(nField, "Extract Lon Error", "parseCoordinate() Lon Error", [&](const char* npItem) {
    return NmeaConversion::parseCoordinate(npItem, NmeaConversion::LONGITUDE, npCoordinate);
  });
}

const char* NmeaOddField::direction(NmeaOddField nField, const char* npExtractError, CoordinateDirection* npDirection) {
  return extract(nField, npExtractError, [&](const char* npItem) {
    *npDirection = NmeaConversion::convertDirection(npItem);
    return true;
  });
}

const char* NmeaOddField::quality(NmeaOddField nField, SatelliteQuality* npQuality) {
  return extract(nField, "Extract Quality Error", "convertSatelliteQuality() Error",
                 [&](const char* npItem) { return NmeaConversion::convertSatelliteQuality(npItem, npQuality); });
}

const char* NmeaOddField::mode(NmeaOddField nField, AutonomousMethodType* npMode) {
  return extract(nField, "Extract Mode Error", "Convert Mode Error",
                 [&](const char* npItem) { return NmeaConversion::convertAutonomousMethodType(npItem, npMode); });
}

const char* NmeaOddField::mode(NmeaOddField nField, GsaMode* npMode) {
  return extract(nField, "Extract Mode Error", "Convert Mode Error",
                 [&](const char* npItem) { return NmeaConversion::convertGsaMode(npItem, npMode); });
}

const char* NmeaOddField::positioningType(NmeaOddField nField, PositioningType* npType) {
  return extract(nField, "Extract PositioningType Error", "Convert PositioningType Error",
                 [&](const char* npItem) { return NmeaConversion::convertPositioningType(npItem, npType); });
}

const char* NmeaOddField::status(NmeaOddField nField, PubxStatus* npStatus) {
  return extract(nField, "Extract Status Error", [&](const char* npItem) {
    return NmeaConversion::convertPubxStatus(npItem, npStatus) ||
           failWithItem(nField, "Convert Status Error lDataItem", npItem);
  });
}

const char* NmeaOddField::flag(NmeaOddField nField, const char* npExtractError, char nLetter, bool* npFlag) {
  return extract(nField, npExtractError, [&](const char* npItem) {
    *npFlag = *npItem == nLetter;
    return true;
  });
}

const char* NmeaOddField::real(NmeaOddField nField, const char* npExtractError, const char* npName, double* npValue) {
  return extract(nField, npExtractError, [&](const char* npItem) {
    const char* lpRest = nullptr;
    *npValue = Decimal::read(npItem, &lpRest);
    if (*lpRest == '\0') return true;
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s: %s strtod() lpUnkownStr is [%s]", nField.mWords.mpOperation, npName,
           lpRest);
    return false;
  });
}

const char* NmeaOddField::number(NmeaOddField nField, const char* npExtractError, const char* npNumberError,
                                 uint16_t* npValue) {
  return extract(nField, npExtractError, npNumberError,
                 [&](const char* npItem) { return utl::toUint16(npItem, npValue); });
}

const char* NmeaOddField::number(NmeaOddField nField, const char* npExtractError, const char* npNumberError,
                                 uint32_t* npValue) {
  return extract(nField, npExtractError, npNumberError,
                 [&](const char* npItem) { return utl::toUint32(npItem, npValue); });
}

const char* NmeaOddField::count(NmeaOddField nField, const char* npExtractError, const char* npNumberError,
                                uint32_t* npValue) {
  return extract(nField, npExtractError, npNumberError, [&](const char* npItem) {
    *npValue = 0;
    return *npItem == '\0' || utl::toUint32(npItem, npValue);
  });
}

const char* NmeaOddField::satelliteValue(NmeaOddField nField, const char* npExtractError, const char* npNumberError,
                                         uint32_t* npValue, bool* npValid) {
  return extract(nField, npExtractError, npNumberError, [&](const char* npItem) {
    *npValue = 0;
    if (*npItem == '\0') *npValid = false;
    return *npItem == '\0' || utl::toUint32(npItem, npValue);
  });
}

const char* NmeaOddField::satelliteValue(NmeaOddField nField, const char* npExtractError, const char* npNumberError,
                                         uint8_t* npValue, bool* npValid) {
  return extract(nField, npExtractError, [&](const char* npItem) {
    *npValue = 0;
    if (*npItem == '\0') *npValid = false;
    return *npItem == '\0' || utl::toUint8(npItem, npValue) || failWithItem(nField, npNumberError, npItem);
  });
}

}  // namespace nfw
