#include "NfwNmeaDataParser.h"

#include "GsvBlocks.h"
#include "NmeaFields.h"

namespace nfw {

namespace {

const NmeaWords GGA = {"NmeaDataParser::parseGgaSentence()", "GGA", "utl::copyStr() GgaSentence Error",
                       "Extract GGA Error", "Not GGA Sentense"};
const NmeaWords GLL = {"NmeaDataParser::parseGllSentence()", "GLL", "utl::copyStr() GllSentence Error",
                       "Extract GLL Error", "Not GLL Sentense"};
const NmeaWords GSA = {"NmeaDataParser::parseGsaSentence()", "GSA", "utl::copyStr() GsaSentence Error",
                       "Extract GSA Error", "Not GSA Sentense"};
const NmeaWords GSV = {"NmeaDataParser::parseGsvSentence()", "GSV", "utl::copyStr() GsvSentence Error",
                       "Extract GSV Error", "Not GSV Sentense"};
const NmeaWords RMC = {"NmeaDataParser::parseRmcSentence()", "RMC", "utl::copyStr() RmcSentence Error",
                       "Extract RMC Error", "Not RMC Sentense"};
const NmeaWords VTG = {"NmeaDataParser::parseVtgSentence()", "VTG", "utl::copyStr() VtgSentence Error",
                       "Extract VTG Error", "Not VTG Sentense"};
const NmeaWords ZDA = {"NmeaDataParser::parseZdaSentence()", "ZDA", "utl::copyStr() ZdaSentence Error",
                       "Extract ZDA Error", "Not ZDA Sentense"};
const NmeaWords PUBX = {"NmeaDataParser::parsePubxSentence()", "$PUBX", "utl::copyStr() PubxSentence Error",
                        "Extract PUBX Error", "Not PUBX Sentense"};

const uint32_t USED_SATELLITE_NUM = 12;  // in a GSA sentence
const uint32_t MAX_VIEW_NUM = GsvSentence::SATELLITE_NUM;

uint8_t narrow(uint32_t nNumber) { return nNumber < 256 ? static_cast<uint8_t>(nNumber) : uint8_t{0}; }

[[gnu::always_inline]] inline bool readUsedSatellites(NmeaFields& nFields, GsaSentence& nRecord) {
  for (uint32_t i = 0; i < USED_SATELLITE_NUM; ++i) {
    if (!nFields.count("Extract UsedSatellite Error", "utl::toUint32() SatelliteNumber Error",
                       &nRecord.satelliteId[i])) {
      return false;
    }
    nRecord.satelliteNumber[i] = narrow(nRecord.satelliteId[i]);
  }
  return true;
}

// 23,38,230,44
[[gnu::always_inline]] inline bool readSatellite(NmeaFields& nFields, GsvSatelliteInfo& nInfo) {
  nInfo.valid = true;
  const bool lIsRead =
      nFields.satelliteValue("Extract SatelliteId Error", "utl::toUint32() SatelliteId Error", &nInfo.satelliteId,
                             &nInfo.valid) &&
      nFields.satelliteValue("Extract Elevation Error", "utl::toUint8() Elevation Error lDataItem", &nInfo.elevation,
                             &nInfo.valid) &&
      nFields.satelliteValue("Extract Azimuth Error", "utl::toUint32() Azimuth Error", &nInfo.azimuth, &nInfo.valid) &&
      nFields.satelliteValue("Extract Snr Error", "utl::toUint8() Snr Error DataItem", &nInfo.snr, &nInfo.valid);
  nInfo.satelliteNumber = narrow(nInfo.satelliteId);
  return lIsRead;
}

[[gnu::always_inline]] inline bool readSatellites(NmeaFields& nFields, GsvSentence& nRecord) {
  if (nRecord.satelliteView > MAX_VIEW_NUM) return nFields.fail("SatelliteView is Over");
  uint32_t lNum = gsvSatelliteNum(nRecord);
  if (lNum > MAX_VIEW_NUM) {
    nFields.fail("BufferSize not enough");
    lNum = MAX_VIEW_NUM;
  }
  for (uint32_t i = 0; i < lNum; ++i) {
    if (!readSatellite(nFields, nRecord.satellite[i])) return false;
  }
  return true;
}

// 3.1,W is -3.1
[[gnu::always_inline]] inline bool readDeclination(NmeaFields& nFields, RmcSentence& nRecord) {
  CoordinateDirection lDirection = DIRECTION_NONE;
  if (!nFields.real("Extract MagneticDeclination Error", "MagneticDeclination", &nRecord.magneticDeclination) ||
      !nFields.direction("Extract MagneticDeclination Direction Error", &lDirection)) {
    return false;
  }
  if (lDirection == DIRECTION_WEST) nRecord.magneticDeclination = -nRecord.magneticDeclination;
  return true;
}

// $GPGGA,092725.00,4717.11399,N,00833.91590,E,1,08,1.01,499.6,M,48.0,M,,*5B
bool read(NmeaFields nFields, GgaSentence& nRecord) {
  return nFields.open() && nFields.address(&nRecord.satelliteType) &&
         nFields.time("divideTime() Error", &nRecord.utcTime) && nFields.latitude(&nRecord.latitude) &&
         nFields.longitude(&nRecord.longitude) && nFields.quality(&nRecord.quality) &&
         nFields.count("Extract SatelliteView Error", "utl::toUint32() SatelliteView Error", &nRecord.satelliteCount) &&
         nFields.real("Extract HDOP Error", "Hdop", &nRecord.hdop) &&
         nFields.real("Extract Altitude Error", "Altitude", &nRecord.altitude) &&
         nFields.skip("Extract Altitude Unit Error") &&
         nFields.real("Extract Geoid Error", "Geoid", &nRecord.geoidSeparation) &&
         nFields.skip("Extract Geoid Unit Error") &&
         nFields.count("Extract DgpsDataAge Error", "utl::toUint32() DgpsDataAge Error", &nRecord.dgpsDataAge) &&
         nFields.count("Extract DgpsId Error", "utl::toUint32() DgpsId Error", &nRecord.dgpsStationId);
}

// $GPGLL,4717.11364,N,00833.91565,E,092321.00,A,A*60
bool read(NmeaFields nFields, GllSentence& nRecord) {
  return nFields.open() && nFields.address(&nRecord.satelliteType) && nFields.latitude(&nRecord.latitude) &&
         nFields.longitude(&nRecord.longitude) && nFields.time("divideTime() Error", &nRecord.utcTime) &&
         nFields.flag("Extract Status Error", 'A', &nRecord.status) && nFields.mode(&nRecord.mode);
}

// $GPGSA,A,3,23,29,07,08,09,18,26,28,,,,,1.94,1.18,1.54*0D
bool read(NmeaFields nFields, GsaSentence& nRecord) {
  nRecord = GsaSentence();
  return nFields.open() && nFields.address(&nRecord.satelliteType) &&
         nFields.positioningType(&nRecord.positioningType) && nFields.mode(&nRecord.mode) &&
         readUsedSatellites(nFields, nRecord) && nFields.real("Extract PDOP Error", "Pdop", &nRecord.pdop) &&
         nFields.real("Extract HDOP Error", "Hdop", &nRecord.hdop) &&
         nFields.real("Extract VDOP Error", "Vdop", &nRecord.vdop);
}

// $GPGSV,3,1,10,23,38,230,44,29,71,156,47,07,29,116,41,08,09,081,36*7F
bool read(NmeaFields nFields, GsvSentence& nRecord) {
  return nFields.open() && nFields.address(&nRecord.satelliteType) &&
         nFields.count("Extract MessageCount Error", "utl::toUint32() MessageCount Error", &nRecord.messageCount) &&
         nFields.count("Extract MessageNum Error", "utl::toUint32() MessageNum Error", &nRecord.messageNumber) &&
         nFields.count("Extract SatelliteView Error", "utl::toUint32() SatelliteView Error", &nRecord.satelliteView) &&
         readSatellites(nFields, nRecord);
}

// $GPRMC,083559.00,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,3.1,W,A*57
bool read(NmeaFields nFields, RmcSentence& nRecord) {
  return nFields.open() && nFields.address(&nRecord.satelliteType) &&
         nFields.time("divideTime() Error", &nRecord.utcTime) &&
         nFields.flag("Extract Status Error", 'A', &nRecord.status) && nFields.latitude(&nRecord.latitude) &&
         nFields.longitude(&nRecord.longitude) && nFields.real("Extract Speed Error", "Speed", &nRecord.speed) &&
         nFields.real("Extract Direction Error", "Direction", &nRecord.direction) && nFields.date(&nRecord.date) &&
         readDeclination(nFields, nRecord) && nFields.mode(&nRecord.mode);
}

// $GPVTG,77.52,T,,M,0.004,N,0.008,K,A*06
bool read(NmeaFields nFields, VtgSentence& nRecord) {
  return nFields.open() && nFields.address(&nRecord.satelliteType) &&
         nFields.real("Extract DirectionForTrueNorth Error", "DirectionForTrueNorth", &nRecord.directionForTrueNorth) &&
         nFields.skip("Extract 'T' Error") &&
         nFields.real("Extract DirectionForMagneticNorth Error", "DirectionForMagneticNorth",
                      &nRecord.directionForMagneticNorth) &&
         nFields.skip("Extract 'M' Error") &&
         nFields.real("Extract SpeedKnot Error", "SpeedKnot", &nRecord.speedKnot) &&
         nFields.skip("Extract 'N' Error") && nFields.real("Extract SpeedKmh Error", "SpeedKmh", &nRecord.speedKmh) &&
         nFields.skip("Extract 'K' Error") && nFields.mode(&nRecord.mode);
}

// $GPZDA,082710.00,16,09,2002,00,00*64
bool read(NmeaFields nFields, ZdaSentence& nRecord) {
  const char* const NUMBER_ERROR = "utl::toUint16() Error";  // of the year too
  return nFields.open() && nFields.address(&nRecord.satelliteType) &&
         nFields.time("divideTime() UTC Error", &nRecord.utcTime) &&
         nFields.number("Extract Date Error", NUMBER_ERROR, &nRecord.date.day) &&
         nFields.number("Extract Date Error", NUMBER_ERROR, &nRecord.date.month) &&
         nFields.number("Extract Date Error", NUMBER_ERROR, &nRecord.date.year) &&
         nFields.number("Extract Local Time Error", NUMBER_ERROR, &nRecord.localZoneHour) &&
         nFields.number("Extract Local Time Error", NUMBER_ERROR, &nRecord.localZoneMinute);
}

// $PUBX,00,081350.00,4717.113210,N,00833.915187,E,546.589,G3,2.1,2.0,0.007,77.52,0.007,,0.92,1.19,0.77,9,0,0*5F
bool read(NmeaFields nFields, PubxSentence& nRecord) {
  return nFields.open() && nFields.address() &&
         nFields.count("Extract MessageId Error", "utl::toUint32() MessageId Error", &nRecord.messageId) &&
         nFields.time("divideTime() Error", &nRecord.utcTime) && nFields.latitude(&nRecord.latitude) &&
         nFields.longitude(&nRecord.longitude) &&
         nFields.real("Extract AltitudeRef Error", "AltitudeRef", &nRecord.altitudeRef) &&
         nFields.status(&nRecord.status) && nFields.real("Extract Hacc Error", "Hacc", &nRecord.hacc) &&
         nFields.real("Extract Vacc Error", "Vacc", &nRecord.vacc) &&
         nFields.real("Extract Speed Error", "Speed", &nRecord.speed) &&
         nFields.real("Extract Direction Error", "Direction", &nRecord.direction) &&
         nFields.real("Extract Vvel Error", "Vvel", &nRecord.vvel) &&
         nFields.count("Extract DgpsDataAge Error", "utl::toUint32() DgpsDataAge Error", &nRecord.dgpsDataAge) &&
         nFields.real("Extract HDOP Error", "Hdop", &nRecord.hdop) &&
         nFields.real("Extract VDOP Error", "Vdop", &nRecord.vdop) &&
         nFields.real("Extract TDOP Error", "Tdop", &nRecord.tdop) &&
         nFields.count("Extract SatelliteView Error", "utl::toUint32() SatelliteView Error", &nRecord.satelliteCount) &&
         nFields.flag("Extract DrMode Error", '1', &nRecord.drMode);
}

template <class Record>
bool parse(char const* npSentence, unsigned int nLength, Record* npRecord, const NmeaWords& nWords) {
  if (npSentence == nullptr || nLength == 0 || npRecord == nullptr) return false;
  return read(NmeaFields(npSentence, nWords), *npRecord);
}

constexpr uint32_t letters(const char* npText) {
  return (static_cast<uint32_t>(static_cast<unsigned char>(npText[0])) << 16) |
         (static_cast<uint32_t>(static_cast<unsigned char>(npText[1])) << 8) |
         static_cast<uint32_t>(static_cast<unsigned char>(npText[2]));
}

int typeOf(const char* npLetters) {
  switch (letters(npLetters)) {
    case letters("GGA"):
      return NMEA_GGA;
    case letters("GLL"):
      return NMEA_GLL;
    case letters("GSA"):
      return NMEA_GSA;
    case letters("GSV"):
      return NMEA_GSV;
    case letters("RMC"):
      return NMEA_RMC;
    case letters("VTG"):
      return NMEA_VTG;
    case letters("ZDA"):
      return NMEA_ZDA;
    default:
      return NMEA_UNKNOWN;
  }
}

}  // namespace

int NmeaDataParser::analyzeNmeaSentenceType(char const* npSentence, unsigned int nLength) {
  if (npSentence == nullptr) return NMEA_UNKNOWN;
  const size_t lLength = strnlen(npSentence, nLength < 6 ? nLength : 6);
  const int lType = lLength == 6 ? typeOf(npSentence + 3) : NMEA_UNKNOWN;
  if (lType != NMEA_UNKNOWN) return lType;
  return lLength >= 5 && memcmp(npSentence, "$PUBX", 5) == 0 ? NMEA_PUBX : NMEA_UNKNOWN;
}

bool NmeaDataParser::parseGgaSentence(char const* npSentence, unsigned int nLength, GgaSentence* npRecord) {
  return parse(npSentence, nLength, npRecord, GGA);
}

bool NmeaDataParser::parseGllSentence(char const* npSentence, unsigned int nLength, GllSentence* npRecord) {
  return parse(npSentence, nLength, npRecord, GLL);
}

bool NmeaDataParser::parseGsaSentence(char const* npSentence, unsigned int nLength, GsaSentence* npRecord) {
  return parse(npSentence, nLength, npRecord, GSA);
}

bool NmeaDataParser::parseGsvSentence(char const* npSentence, unsigned int nLength, GsvSentence* npRecord) {
  return parse(npSentence, nLength, npRecord, GSV);
}

bool NmeaDataParser::parseRmcSentence(char const* npSentence, unsigned int nLength, RmcSentence* npRecord) {
  return parse(npSentence, nLength, npRecord, RMC);
}

bool NmeaDataParser::parseVtgSentence(char const* npSentence, unsigned int nLength, VtgSentence* npRecord) {
  return parse(npSentence, nLength, npRecord, VTG);
}

bool NmeaDataParser::parseZdaSentence(char const* npSentence, unsigned int nLength, ZdaSentence* npRecord) {
  return parse(npSentence, nLength, npRecord, ZDA);
}

bool NmeaDataParser::parsePubxSentence(char const* npSentence, unsigned int nLength, PubxSentence* npRecord) {
  return parse(npSentence, nLength, npRecord, PUBX);
}

}  // namespace nfw
