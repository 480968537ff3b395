#include "NmeaParserCheck.h"

#include <cstdlib>
#include <map>
#include <optional>
#include <vector>

#include "PlatformSeams.h"
#include "RecordBytes.h"

using namespace nfw;

namespace {

using Text = const std::string&;

std::string sub(Text nText, size_t nPosition, size_t nCount) {
  return nPosition < nText.size() ? nText.substr(nPosition, nCount) : std::string();
}

// A decimal number of the type; in tests no field is longer than what long long takes in, or else it is out of range.
template <class Number>
bool toNumber(Text nText, Number* npValue, bool nIsSigned = false) {
  const size_t lSign = nIsSigned && !nText.empty() && (nText[0] == '-' || nText[0] == '+') ? 1 : 0;
  if (nText.size() == lSign || nText.find_first_not_of("0123456789", lSign) != std::string::npos) return false;
  const long long lValue = std::strtoll(nText.c_str(), nullptr, 10);
  const auto lNumber = static_cast<Number>(lValue);
  if (static_cast<long long>(lNumber) != lValue) return false;
  *npValue = lNumber;
  return true;
}

template <class Value>
std::optional<Value> find(const std::map<std::string, Value>& nMap, Text nKey) {
  const auto lFound = nMap.find(nKey);
  return lFound != nMap.end() ? std::optional<Value>(lFound->second) : std::nullopt;
}

/// The parse as it is defined, in its plainest form: a working copy consumed from the front, field by field, with
/// strtod. Slow and short: the yardstick for the parser that is fast.
class Reference {
 public:
  explicit Reference(Text nText) : mRest(nText) {}
  const std::string& lines() const { return mLines; }

  bool parse(GgaSentence* npRecord) {
    if (!open("GgaSentence", "GGA", &npRecord->satelliteType) || !time("divideTime() Error", &npRecord->utcTime) ||
        !coordinate("Lat", "N・S", &npRecord->latitude) || !coordinate("Lon", "E・W", &npRecord->longitude) ||
        !extract("Quality")) {
      return false;
    }
    int32_t lNumber = mItem.empty() ? 0 : -1;
    toNumber(mItem, &lNumber, true);
    const std::map<int32_t, SatelliteQuality> QUALITIES = {
        {0, QUALITY_INVALID}, {1, QUALITY_GPS}, {2, QUALITY_DIFFERENTIAL}, {6, QUALITY_ESTIMATED}};
    npRecord->quality = QUALITIES.count(lNumber) != 0 ? QUALITIES.at(lNumber) : QUALITY_UNKNOWN;
    if (npRecord->quality == QUALITY_UNKNOWN) {
      return line("convertSatelliteQuality(): Unknown SatelliteQuality Type") ||
             fail("convertSatelliteQuality() Error");
    }
    return count("SatelliteView", "SatelliteView", &npRecord->satelliteCount) &&
           real("HDOP", "Hdop", &npRecord->hdop) && real("Altitude", "Altitude", &npRecord->altitude) &&
           extract("Altitude Unit") && real("Geoid", "Geoid", &npRecord->geoidSeparation) && extract("Geoid Unit") &&
           count("DgpsDataAge", "DgpsDataAge", &npRecord->dgpsDataAge) &&
           count("DgpsId", "DgpsId", &npRecord->dgpsStationId);
  }

  bool parse(GllSentence* npRecord) {
    return open("GllSentence", "GLL", &npRecord->satelliteType) && coordinate("Lat", "N・S", &npRecord->latitude) &&
           coordinate("Lon", "E・W", &npRecord->longitude) && time("divideTime() Error", &npRecord->utcTime) &&
           flag("Status", 'A', &npRecord->status) && mode(&npRecord->mode);
  }

  bool parse(GsaSentence* npRecord) {
    *npRecord = GsaSentence();
    if (!open("GsaSentence", "GSA", &npRecord->satelliteType) || !extract("PositioningType")) return false;
    const auto lType =
        find<PositioningType>({{"A", POSITIONING_AUTOMATIC}, {"M", POSITIONING_MANUAL}}, sub(mItem, 0, 1));
    if (!lType) return line("convertPositioningType(): Unknown Type") || fail("Convert PositioningType Error");
    npRecord->positioningType = *lType;
    if (!extract("Mode")) return false;
    const auto lMode = find<GsaMode>({{"1", GSA_NO_FIX}, {"2", GSA_2D}, {"3", GSA_3D}}, sub(mItem, 0, 1));
    if (!lMode) return line("convertGsaMode(): Unknown Mode") || fail("Convert Mode Error");
    npRecord->mode = *lMode;
    for (int i = 0; i < 12; ++i) {
      if (!count("UsedSatellite", "SatelliteNumber", &npRecord->satelliteId[i])) return false;
      if (npRecord->satelliteId[i] < 256) npRecord->satelliteNumber[i] = static_cast<uint8_t>(npRecord->satelliteId[i]);
    }
    return real("PDOP", "Pdop", &npRecord->pdop) && real("HDOP", "Hdop", &npRecord->hdop) &&
           real("VDOP", "Vdop", &npRecord->vdop);
  }

  bool parse(GsvSentence* npRecord) {
    if (!open("GsvSentence", "GSV", &npRecord->satelliteType) ||
        !count("MessageCount", "MessageCount", &npRecord->messageCount) ||
        !count("MessageNum", "MessageNum", &npRecord->messageNumber) ||
        !count("SatelliteView", "SatelliteView", &npRecord->satelliteView)) {
      return false;
    }
    if (npRecord->satelliteView > 128) return fail("SatelliteView is Over");
    uint32_t lNum = 4;
    if (npRecord->messageCount <= npRecord->messageNumber) {
      lNum = npRecord->messageNumber == 0 ? 0 : npRecord->messageCount * 4 % npRecord->messageNumber;
      if (lNum > 128) fail("BufferSize not enough");
      if (lNum > 128) lNum = 128;
    }
    for (uint32_t i = 0; i < lNum; ++i) {
      GsvSatelliteInfo& lInfo = npRecord->satellite[i];
      if (!count("SatelliteId", "SatelliteId", &lInfo.satelliteId)) return false;
      lInfo.satelliteNumber = lInfo.satelliteId < 256 ? static_cast<uint8_t>(lInfo.satelliteId) : uint8_t{0};
      lInfo.valid = !mItem.empty();
      if (!extract("Elevation")) return false;
      if (!mItem.empty() && !toNumber(mItem, &lInfo.elevation)) {
        return fail("utl::toUint8() Elevation Error lDataItem[" + mItem + "]");
      }
      lInfo.valid = lInfo.valid && !mItem.empty();
      if (!count("Azimuth", "Azimuth", &lInfo.azimuth)) return false;
      lInfo.valid = lInfo.valid && !mItem.empty();
      if (!extract("Snr")) return false;
      if (!mItem.empty() && !toNumber(mItem, &lInfo.snr))
        return fail("utl::toUint8() Snr Error DataItem[" + mItem + "]");
      lInfo.valid = lInfo.valid && !mItem.empty();
    }
    return true;
  }

  bool parse(RmcSentence* npRecord) {
    CoordinateDirection lDirection = DIRECTION_NONE;
    if (!open("RmcSentence", "RMC", &npRecord->satelliteType) || !time("divideTime() Error", &npRecord->utcTime) ||
        !flag("Status", 'A', &npRecord->status) || !coordinate("Lat", "N・S", &npRecord->latitude) ||
        !coordinate("Lon", "E・W", &npRecord->longitude) || !real("Speed", "Speed", &npRecord->speed) ||
        !real("Direction", "Direction", &npRecord->direction) || !date(&npRecord->date) ||
        !real("MagneticDeclination", "MagneticDeclination", &npRecord->magneticDeclination) ||
        !direction("MagneticDeclination Direction", &lDirection)) {
      return false;
    }
    if (lDirection == DIRECTION_WEST) npRecord->magneticDeclination = -npRecord->magneticDeclination;
    return mode(&npRecord->mode);
  }

  bool parse(VtgSentence* npRecord) {
    return open("VtgSentence", "VTG", &npRecord->satelliteType) &&
           real("DirectionForTrueNorth", "DirectionForTrueNorth", &npRecord->directionForTrueNorth) && extract("'T'") &&
           real("DirectionForMagneticNorth", "DirectionForMagneticNorth", &npRecord->directionForMagneticNorth) &&
           extract("'M'") && real("SpeedKnot", "SpeedKnot", &npRecord->speedKnot) && extract("'N'") &&
           real("SpeedKmh", "SpeedKmh", &npRecord->speedKmh) && extract("'K'") && mode(&npRecord->mode);
  }

  bool parse(ZdaSentence* npRecord) {
    const auto number = [this](Text nError, auto* npValue) {
      return extract(nError) && (toNumber(mItem, npValue) || fail("utl::toUint16() Error"));
    };
    return open("ZdaSentence", "ZDA", &npRecord->satelliteType) && time("divideTime() UTC Error", &npRecord->utcTime) &&
           number("Date", &npRecord->date.day) && number("Date", &npRecord->date.month) &&
           number("Date", &npRecord->date.year) && number("Local Time", &npRecord->localZoneHour) &&
           number("Local Time", &npRecord->localZoneMinute);
  }

  bool parse(PubxSentence* npRecord) {
    if (!open("PubxSentence", "PUBX") || !count("MessageId", "MessageId", &npRecord->messageId) ||
        !time("divideTime() Error", &npRecord->utcTime) || !coordinate("Lat", "N・S", &npRecord->latitude) ||
        !coordinate("Lon", "E・W", &npRecord->longitude) ||
        !real("AltitudeRef", "AltitudeRef", &npRecord->altitudeRef) || !extract("Status")) {
      return false;
    }
    const auto lStatus = find<PubxStatus>({{"NF", PUBX_NO_FIX},
                                           {"DR", PUBX_DEAD_RECKONING},
                                           {"G2", PUBX_2D},
                                           {"G3", PUBX_3D},
                                           {"D2", PUBX_DIFFERENTIAL_2D},
                                           {"D3", PUBX_DIFFERENTIAL_3D},
                                           {"RK", PUBX_COMBINED},
                                           {"TT", PUBX_TIME_ONLY}},
                                          sub(mItem, 0, 2));
    if (!lStatus)
      return line("convertPubxStatus(): Unknown Status") || fail("Convert Status Error lDataItem[" + mItem + "]");
    npRecord->status = *lStatus;
    return real("Hacc", "Hacc", &npRecord->hacc) && real("Vacc", "Vacc", &npRecord->vacc) &&
           real("Speed", "Speed", &npRecord->speed) && real("Direction", "Direction", &npRecord->direction) &&
           real("Vvel", "Vvel", &npRecord->vvel) && count("DgpsDataAge", "DgpsDataAge", &npRecord->dgpsDataAge) &&
           real("HDOP", "Hdop", &npRecord->hdop) && real("VDOP", "Vdop", &npRecord->vdop) &&
           real("TDOP", "Tdop", &npRecord->tdop) &&
           count("SatelliteView", "SatelliteView", &npRecord->satelliteCount) && flag("DrMode", '1', &npRecord->drMode);
  }

 private:
  bool fail(Text nText) { return line(mPrefix + "(): " + nText); }
  bool line(Text nText) {
    mLines += "NmeaDataParser::" + nText + "\n";
    return false;
  }

  bool extractHeadData() {
    if (mRest.empty()) return line("extractHeadData(): Sentense None");
    mItem.clear();
    while (mItem.size() < mRest.size() && std::string(",*").find(mRest[mItem.size()]) == std::string::npos) {
      mItem += mRest[mItem.size()];
      if (mItem.size() == 20) return line("extractHeadData(): Invalid Sentense");
    }
    const bool lIsMore = mItem.size() < mRest.size() && mRest[mItem.size()] == ',';
    mRest = lIsMore ? mRest.substr(mItem.size() + 1) : "";
    mItem.erase(0, mItem.find_first_not_of(' '));
    mItem.erase(mItem.find_last_not_of(' ') + 1);
    return true;
  }

  bool extract(Text nError) { return extractHeadData() || fail("Extract " + nError + " Error"); }

  bool open(Text nRecord, Text nType) {
    mPrefix = "parse" + nRecord;
    if (mRest.size() > 127) return fail("utl::copyStr() " + nRecord + " Error");
    return extract(nType) &&
           ((nType == "PUBX" ? mItem == "$PUBX" : sub(mItem, 3, 20) == nType) || fail("Not " + nType + " Sentense"));
  }

  bool open(Text nRecord, Text nType, SatelliteType* npType) {
    if (!open(nRecord, nType)) return false;
    const std::map<char, SatelliteType> TALKERS = {
        {'P', SATELLITE_GPS}, {'L', SATELLITE_GLONASS}, {'A', SATELLITE_GALILEO}, {'N', SATELLITE_COMBINED}};
    if (mItem[0] != '$') return line("getSatelliteType(): nData[0] is not '$'") || true;
    if (mItem[1] != 'G') return line("getSatelliteType(): nData[1] is not 'G'") || true;
    *npType = TALKERS.count(mItem[2]) != 0 ? TALKERS.at(mItem[2]) : SATELLITE_OTHER;
    return true;
  }

  bool time(Text nError, GnssSentenceTime* npTime) {
    if (!extract("UTC")) return false;
    const bool lIsTime = toNumber(sub(mItem, 0, 2), &npTime->hour) && toNumber(sub(mItem, 2, 2), &npTime->minute) &&
                         toNumber(sub(mItem, 4, 2), &npTime->second) &&
                         (mItem.size() <= 7 || toNumber(sub(mItem, 7, 3), &npTime->millisecond));
    return lIsTime || line("divideTime(): utl::toUint16() Error") || fail(nError);
  }

  bool date(GnssSentenceDate* npDate) {
    if (!extract("Date")) return false;
    const bool lIsDate = toNumber(sub(mItem, 0, 2), &npDate->day) && toNumber(sub(mItem, 2, 2), &npDate->month) &&
                         toNumber(sub(mItem, 4, 2), &npDate->year);
    npDate->year += 2000;
    return lIsDate || line("divideUtcDate(): utl::toUint16() Error") || fail("Extract divideUtcDate Error");
  }

  bool coordinate(Text nAxis, Text nDirection, GnssSentenceCoordinate* npCoordinate) {
    if (!extract(nAxis)) return false;
    const size_t lDigits = nAxis == "Lat" ? 2 : 3;
    char* lpRest = nullptr;
    npCoordinate->value = std::strtod(mItem.c_str(), &lpRest);
    if (!mItem.empty() && *lpRest != '\0') {
      return line("parseCoordinate(): lpUnkownStr is [" + std::string(lpRest) + "]") ||
             fail("parseCoordinate() " + nAxis + " Error");
    }
    if (!mItem.empty() && !toNumber(sub(mItem, 0, lDigits), &npCoordinate->degree, true)) {
      return line("parseCoordinate(): utl::toSint32() Error") || fail("parseCoordinate() " + nAxis + " Error");
    }
    npCoordinate->minute = std::strtod(sub(mItem, lDigits, 7).c_str(), nullptr);
    return direction(nDirection + " Info", &npCoordinate->direction);
  }

  bool direction(Text nError, CoordinateDirection* npDirection) {
    if (!extract(nError)) return false;
    *npDirection =
        find<CoordinateDirection>(
            {{"N", DIRECTION_NORTH}, {"S", DIRECTION_SOUTH}, {"E", DIRECTION_EAST}, {"W", DIRECTION_WEST}}, mItem)
            .value_or(DIRECTION_NONE);
    return true;
  }

  bool real(Text nError, Text nName, double* npValue) {
    if (!extract(nError)) return false;
    char* lpRest = nullptr;
    *npValue = std::strtod(mItem.c_str(), &lpRest);
    return *lpRest == '\0' || fail(nName + " strtod() lpUnkownStr is [" + lpRest + "]");
  }

  bool count(Text nError, Text nNumberError, uint32_t* npValue) {
    return extract(nError) &&
           (mItem.empty() || toNumber(mItem, npValue) || fail("utl::toUint32() " + nNumberError + " Error"));
  }

  bool mode(AutonomousMethodType* npMode) {
    if (!extract("Mode")) return false;
    const auto lMode = find<AutonomousMethodType>(
        {{"N", MODE_NOT_VALID}, {"A", MODE_AUTONOMOUS}, {"D", MODE_DIFFERENTIAL}, {"E", MODE_ESTIMATED}},
        sub(mItem, 0, 1));
    *npMode = lMode.value_or(MODE_NOT_VALID);
    return lMode || line("convertAutonomousMethodType(): Unknown Type nData[" + mItem + "]") ||
           fail("Convert Mode Error");
  }

  bool flag(Text nError, char nLetter, bool* npFlag) {
    if (!extract(nError)) return false;
    *npFlag = mItem[0] == nLetter;
    return true;
  }

  std::string mRest, mPrefix, mItem, mLines;
};

}  // namespace

std::string differenceFromReference(const std::string& nText) {
  seams::CapturedLog lLog;
  std::string lDifference;
  eachParse(nText, [&](auto npParse, auto lExpected) {
    lLog.clear();
    auto lRecord = lExpected;
    Reference lReference(nText.c_str());
    const bool lIsExpected = lReference.parse(&lExpected);
    const bool lIsParsed = npParse(nText.c_str(), 1, &lRecord);
    std::string lLines;
    for (const std::string& lLine : lLog.texts()) lLines += lLine + "\n";
    const bool lIsSame = lIsParsed == lIsExpected && lLines == lReference.lines();
    if (lIsSame && (!lIsParsed || recordBytes(lRecord) == recordBytes(lExpected))) return;
    lDifference = "[" + nText + "] " + (lIsSame ? "record" : "expected:\n" + lReference.lines() + "found:\n" + lLines);
  });
  return lDifference;
}
