#include "SentenceParser.h"

#include <cstring>

#include "SentenceFields.h"

namespace gpshost {

namespace {

const size_t MAX_PARSED = 127;
const unsigned int MAX_VIEW = 128;
const unsigned int USED_SATELLITES = 12;    // in a GSA sentence
const unsigned int MESSAGE_SATELLITES = 4;  // in a GSV message
const char MODES[] = "NADE";

bool isTooLong(const char* npSentence) { return strnlen(npSentence, MAX_PARSED + 1) > MAX_PARSED; }

bool readUsedSatellites(SentenceFields& nFields, GPGSA& nRecord) {
  for (unsigned int i = 0; i < USED_SATELLITES; ++i) {
    if (!nFields.count(&nRecord.satelliteNumber[i])) return false;
  }
  return true;
}

// Satellites that must be there.
bool readSatellites(SentenceFields& nFields, unsigned int nCount, GPGSV& nRecord) {
  if (nCount > MAX_VIEW) return false;
  for (unsigned int i = 0; i < nCount; ++i) {
    if (!nFields.satellite(&nRecord.satellite[i])) return false;
  }
  nRecord.satelliteCount = nCount;
  return true;
}

// Those of the last message: as many as stand there. Behind them may be the number of a signal, or empty blocks.
void readLastSatellites(SentenceFields& nFields, GPGSV& nRecord) {
  GPGSV_SATELLITE lSatellite{};
  while (nRecord.satelliteCount < MESSAGE_SATELLITES && nFields.satellite(&lSatellite) && lSatellite.number != 0) {
    nRecord.satellite[nRecord.satelliteCount++] = lSatellite;
  }
}

bool readSatellites(SentenceFields& nFields, GPGSV& nRecord) {
  if (nRecord.satelliteView > MAX_VIEW) return false;
  if (nRecord.messageCount > nRecord.messageNumber) return readSatellites(nFields, MESSAGE_SATELLITES, nRecord);
  if (nRecord.messageCount < nRecord.messageNumber) {  // a group that counts wrongly
    return readSatellites(nFields, nRecord.messageCount * MESSAGE_SATELLITES % nRecord.messageNumber, nRecord);
  }
  readLastSatellites(nFields, nRecord);
  return true;
}

// 3.1,W is -3.1
bool readDeclination(SentenceFields& nFields, GPRMC& nRecord) {
  const int WEST = 4;
  int lDirection = 0;
  if (!nFields.real(&nRecord.magneticDeclination) || !nFields.direction(&lDirection)) return false;
  if (lDirection == WEST) nRecord.magneticDeclination = -nRecord.magneticDeclination;
  return true;
}

bool read(SentenceFields nFields, GPGGA& nRecord) {
  return nFields.address("GGA", &nRecord.satelliteType) && nFields.time(&nRecord.utcTime) &&
         nFields.latitude(&nRecord.latitude) && nFields.longitude(&nRecord.longitude) &&
         nFields.quality(&nRecord.quality) && nFields.count(&nRecord.satelliteCount) && nFields.real(&nRecord.hdop) &&
         nFields.real(&nRecord.altitude) && nFields.skip() && nFields.real(&nRecord.geoidSeparation) &&
         nFields.skip() && nFields.count(&nRecord.dgpsDataAge) && nFields.count(&nRecord.dgpsStationId);
}

bool read(SentenceFields nFields, GPGLL& nRecord) {
  return nFields.address("GLL", &nRecord.satelliteType) && nFields.latitude(&nRecord.latitude) &&
         nFields.longitude(&nRecord.longitude) && nFields.time(&nRecord.utcTime) &&
         nFields.flag('A', &nRecord.status) && nFields.code(MODES, 0, &nRecord.mode);
}

bool read(SentenceFields nFields, GPGSA& nRecord) {
  return nFields.address("GSA", &nRecord.satelliteType) && nFields.code("AM", 1, &nRecord.positioningType) &&
         nFields.code("123", 0, &nRecord.mode) && readUsedSatellites(nFields, nRecord) && nFields.real(&nRecord.pdop) &&
         nFields.real(&nRecord.hdop) && nFields.real(&nRecord.vdop);
}

bool read(SentenceFields nFields, GPGSV& nRecord) {
  return nFields.address("GSV", &nRecord.satelliteType) && nFields.count(&nRecord.messageCount) &&
         nFields.count(&nRecord.messageNumber) && nFields.count(&nRecord.satelliteView) &&
         readSatellites(nFields, nRecord);
}

bool read(SentenceFields nFields, GPRMC& nRecord) {
  return nFields.address("RMC", &nRecord.satelliteType) && nFields.time(&nRecord.utcTime) &&
         nFields.flag('A', &nRecord.status) && nFields.latitude(&nRecord.latitude) &&
         nFields.longitude(&nRecord.longitude) && nFields.real(&nRecord.speed) && nFields.real(&nRecord.direction) &&
         nFields.date(&nRecord.date) && readDeclination(nFields, nRecord) && nFields.code(MODES, 0, &nRecord.mode);
}

bool read(SentenceFields nFields, GPVTG& nRecord) {
  return nFields.address("VTG", &nRecord.satelliteType) && nFields.real(&nRecord.directionForTrueNorth) &&
         nFields.skip() && nFields.real(&nRecord.directionForMagneticNorth) && nFields.skip() &&
         nFields.real(&nRecord.speedKnot) && nFields.skip() && nFields.real(&nRecord.speedKmh) && nFields.skip() &&
         nFields.code(MODES, 0, &nRecord.mode);
}

bool read(SentenceFields nFields, GPZDA& nRecord) {
  return nFields.address("ZDA", &nRecord.satelliteType) && nFields.time(&nRecord.utcTime) &&
         nFields.number(&nRecord.date.day) && nFields.number(&nRecord.date.month) &&
         nFields.number(&nRecord.date.year) && nFields.number(&nRecord.localZoneHour) &&
         nFields.number(&nRecord.localZoneMinute);
}

bool read(SentenceFields nFields, PUBX& nRecord) {
  return nFields.address("$PUBX") && nFields.count(&nRecord.messageId) && nFields.time(&nRecord.utcTime) &&
         nFields.latitude(&nRecord.latitude) && nFields.longitude(&nRecord.longitude) &&
         nFields.real(&nRecord.altitudeRef) && nFields.status(&nRecord.status) && nFields.real(&nRecord.hacc) &&
         nFields.real(&nRecord.vacc) && nFields.real(&nRecord.speed) && nFields.real(&nRecord.direction) &&
         nFields.real(&nRecord.vvel) && nFields.count(&nRecord.dgpsDataAge) && nFields.real(&nRecord.hdop) &&
         nFields.real(&nRecord.vdop) && nFields.real(&nRecord.tdop) && nFields.count(&nRecord.satelliteCount) &&
         nFields.flag('1', &nRecord.drMode);
}

template <class Record>
bool parseAs(const char* npSentence, Record* npRecord) {
  if (isTooLong(npSentence)) return false;
  *npRecord = Record{};
  return read(SentenceFields(npSentence), *npRecord);
}

}  // namespace

SentenceKind kindOf(const char* npSentence) {
  static const char TYPES[][4] = {"GGA", "GLL", "GSA", "GSV", "RMC", "VTG", "ZDA"};
  if (strnlen(npSentence, 6) == 6) {
    int lKind = KIND_GGA;
    for (const char* lpType : TYPES) {
      if (memcmp(npSentence + 3, lpType, 3) == 0) return static_cast<SentenceKind>(lKind);
      ++lKind;
    }
  }
  return strncmp(npSentence, "$PUBX", 5) == 0 ? KIND_PUBX : KIND_OTHER;
}

bool parse(const char* npSentence, GPGGA* npRecord) { return parseAs(npSentence, npRecord); }
bool parse(const char* npSentence, GPGLL* npRecord) { return parseAs(npSentence, npRecord); }
bool parse(const char* npSentence, GPGSA* npRecord) { return parseAs(npSentence, npRecord); }
bool parse(const char* npSentence, GPGSV* npRecord) { return parseAs(npSentence, npRecord); }
bool parse(const char* npSentence, GPRMC* npRecord) { return parseAs(npSentence, npRecord); }
bool parse(const char* npSentence, GPVTG* npRecord) { return parseAs(npSentence, npRecord); }
bool parse(const char* npSentence, GPZDA* npRecord) { return parseAs(npSentence, npRecord); }
bool parse(const char* npSentence, PUBX* npRecord) { return parseAs(npSentence, npRecord); }

}  // namespace gpshost
