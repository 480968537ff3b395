#include "GpsSdkRecords.h"

#include "NfwAppLog.h"

namespace nfw {
namespace {

template <class Enum>
Enum known(int nValue, Enum nFirst, Enum nLast) {
  return nValue >= nFirst && nValue <= nLast ? static_cast<Enum>(nValue) : static_cast<Enum>(0);
}

SatelliteType kind(int nValue) { return known(nValue, SATELLITE_GPS, SATELLITE_COMBINED); }
AutonomousMethodType mode(int nValue) { return known(nValue, MODE_NOT_VALID, MODE_ESTIMATED); }
bool flag(int nValue) { return nValue == 1; }
uint8_t narrow(unsigned int nNumber) { return nNumber < 256 ? static_cast<uint8_t>(nNumber) : uint8_t{0}; }

GnssSentenceTime convert(const GPS_TIME& nTime) {
  GnssSentenceTime lTime;
  lTime.hour = nTime.hour;
  lTime.minute = nTime.minute;
  lTime.second = nTime.second;
  lTime.millisecond = nTime.millisecond;
  return lTime;
}

GnssSentenceDate convert(const GPS_DATE& nDate) {
  GnssSentenceDate lDate;
  lDate.year = nDate.year;
  lDate.month = nDate.month;
  lDate.day = nDate.day;
  return lDate;
}

GnssSentenceCoordinate convert(const GPS_COORDINATE& nCoordinate) {
  GnssSentenceCoordinate lCoordinate;
  lCoordinate.value = nCoordinate.value;
  lCoordinate.degree = nCoordinate.degree;
  lCoordinate.minute = nCoordinate.minute;
  lCoordinate.direction = known(nCoordinate.direction, DIRECTION_NORTH, DIRECTION_WEST);
  return lCoordinate;
}

GsvSatelliteInfo convert(const GPGSV_SATELLITE& nSatellite) {
  GsvSatelliteInfo lSatellite;
  lSatellite.satelliteNumber = narrow(nSatellite.number);
  lSatellite.satelliteId = nSatellite.number;
  lSatellite.valid = flag(nSatellite.valid);
  lSatellite.elevation = nSatellite.elevation;
  lSatellite.snr = nSatellite.snr;
  lSatellite.azimuth = nSatellite.azimuth;
  return lSatellite;
}

}  // namespace

GgaSentence convertRecord(const GPGGA& nRecord) {
  GgaSentence lRecord;
  lRecord.satelliteType = kind(nRecord.satelliteType);
  lRecord.utcTime = convert(nRecord.utcTime);
  lRecord.latitude = convert(nRecord.latitude);
  lRecord.longitude = convert(nRecord.longitude);
  lRecord.quality = known(nRecord.quality, QUALITY_INVALID, QUALITY_UNKNOWN);
  lRecord.satelliteCount = nRecord.satelliteCount;
  lRecord.hdop = nRecord.hdop;
  lRecord.altitude = nRecord.altitude;
  lRecord.geoidSeparation = nRecord.geoidSeparation;
  lRecord.dgpsDataAge = nRecord.dgpsDataAge;
  lRecord.dgpsStationId = nRecord.dgpsStationId;
  return lRecord;
}

GllSentence convertRecord(const GPGLL& nRecord) {
  GllSentence lRecord;
  lRecord.satelliteType = kind(nRecord.satelliteType);
  lRecord.utcTime = convert(nRecord.utcTime);
  lRecord.latitude = convert(nRecord.latitude);
  lRecord.longitude = convert(nRecord.longitude);
  lRecord.status = flag(nRecord.status);
  lRecord.mode = mode(nRecord.mode);
  return lRecord;
}

GsaSentence convertRecord(const GPGSA& nRecord) {
  GsaSentence lRecord;
  lRecord.satelliteType = kind(nRecord.satelliteType);
  lRecord.positioningType = known(nRecord.positioningType, POSITIONING_AUTOMATIC, POSITIONING_MANUAL);
  lRecord.mode = known(nRecord.mode, GSA_NO_FIX, GSA_3D);
  for (unsigned int i = 0; i < GsaSentence::SATELLITE_NUM; ++i) {
    lRecord.satelliteNumber[i] = narrow(nRecord.satelliteNumber[i]);
    lRecord.satelliteId[i] = nRecord.satelliteNumber[i];
  }
  lRecord.pdop = nRecord.pdop;
  lRecord.hdop = nRecord.hdop;
  lRecord.vdop = nRecord.vdop;
  return lRecord;
}

GsvSentence convertRecord(const GPGSV& nRecord) {
  GsvSentence lRecord;
  lRecord.satelliteType = kind(nRecord.satelliteType);
  lRecord.messageCount = nRecord.messageCount;
  lRecord.messageNumber = nRecord.messageNumber;
  lRecord.satelliteView = nRecord.satelliteView;
  unsigned int lCount = nRecord.satelliteCount;
  if (lCount > GsvSentence::SATELLITE_NUM) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::GpsSdkPlayer:convertGsvSentence() BufferSize not enough");
    lCount = GsvSentence::SATELLITE_NUM;
  }
  for (unsigned int i = 0; i < lCount; ++i) lRecord.satellite[i] = convert(nRecord.satellite[i]);
  return lRecord;
}

RmcSentence convertRecord(const GPRMC& nRecord) {
  RmcSentence lRecord;
  lRecord.satelliteType = kind(nRecord.satelliteType);
  lRecord.utcTime = convert(nRecord.utcTime);
  lRecord.status = flag(nRecord.status);
  lRecord.latitude = convert(nRecord.latitude);
  lRecord.longitude = convert(nRecord.longitude);
  lRecord.speed = nRecord.speed;
  lRecord.direction = nRecord.direction;
  lRecord.date = convert(nRecord.date);
  lRecord.magneticDeclination = nRecord.magneticDeclination;
  lRecord.mode = mode(nRecord.mode);
  return lRecord;
}

VtgSentence convertRecord(const GPVTG& nRecord) {
  VtgSentence lRecord;
  lRecord.satelliteType = kind(nRecord.satelliteType);
  lRecord.directionForTrueNorth = nRecord.directionForTrueNorth;
  lRecord.directionForMagneticNorth = nRecord.directionForMagneticNorth;
  lRecord.speedKnot = nRecord.speedKnot;
  lRecord.speedKmh = nRecord.speedKmh;
  lRecord.mode = mode(nRecord.mode);
  return lRecord;
}

ZdaSentence convertRecord(const GPZDA& nRecord) {
  ZdaSentence lRecord;
  lRecord.satelliteType = kind(nRecord.satelliteType);
  lRecord.utcTime = convert(nRecord.utcTime);
  lRecord.date = convert(nRecord.date);
  lRecord.localZoneHour = nRecord.localZoneHour;
  lRecord.localZoneMinute = nRecord.localZoneMinute;
  return lRecord;
}

PubxSentence convertRecord(const PUBX& nRecord) {
  PubxSentence lRecord;
  lRecord.messageId = nRecord.messageId;
  lRecord.utcTime = convert(nRecord.utcTime);
  lRecord.latitude = convert(nRecord.latitude);
  lRecord.longitude = convert(nRecord.longitude);
  lRecord.altitudeRef = nRecord.altitudeRef;
  lRecord.status = known(nRecord.status, PUBX_DEAD_RECKONING, PUBX_TIME_ONLY);
  lRecord.hacc = nRecord.hacc;
  lRecord.vacc = nRecord.vacc;
  lRecord.speed = nRecord.speed;
  lRecord.direction = nRecord.direction;
  lRecord.vvel = nRecord.vvel;
  lRecord.dgpsDataAge = nRecord.dgpsDataAge;
  lRecord.hdop = nRecord.hdop;
  lRecord.vdop = nRecord.vdop;
  lRecord.tdop = nRecord.tdop;
  lRecord.satelliteCount = nRecord.satelliteCount;
  lRecord.drMode = flag(nRecord.drMode);
  return lRecord;
}

NmeaSentence convertRecord(const PARSE_NMEA& nRecord) {
  NmeaSentence lRecord;
  lRecord.gga = convertRecord(nRecord.gga);
  lRecord.gll = convertRecord(nRecord.gll);
  lRecord.gsa = convertRecord(nRecord.gsa);
  lRecord.gsv = convertRecord(nRecord.gsv);
  lRecord.rmc = convertRecord(nRecord.rmc);
  lRecord.vtg = convertRecord(nRecord.vtg);
  return lRecord;
}

}  // namespace nfw
