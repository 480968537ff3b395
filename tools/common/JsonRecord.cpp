#include "JsonRecord.h"

#include <cmath>

#include "JsonObject.h"

namespace tool {

namespace {

const char* const DIRECTIONS[] = {"", "N", "S", "E", "W"};
const char* const QUALITIES[] = {"invalid", "gps", "differential", "estimated", "unknown"};
const char* const MODES[] = {"not valid", "autonomous", "differential", "estimated"};
const char* const SELECTIONS[] = {"none", "automatic", "manual"};
const char* const FIXES[] = {"none", "2D", "3D"};
const char* const STATUSES[] = {"NF", "DR", "G2", "G3", "D2", "D3", "RK", "TT"};

void addTime(const nfw::GnssSentenceTime& nTime, JsonObject& nObject) {
  fmt::format_to(std::back_inserter(*nObject.key("utc")), "\"{:02}:{:02}:{:02}\"", nTime.hour, nTime.minute,
                 nTime.second);
  nObject.number("millisecond", nTime.millisecond);
}

void addDate(const nfw::GnssSentenceDate& nDate, JsonObject& nObject) {
  fmt::format_to(std::back_inserter(*nObject.key("date")), "\"{:04}-{:02}-{:02}\"", nDate.year, nDate.month, nDate.day);
}

void addCoordinate(std::string_view nKey, const nfw::GnssSentenceCoordinate& nCoordinate, JsonObject& nObject) {
  if (nCoordinate.direction == nfw::DIRECTION_NONE && nCoordinate.value == 0.0) return nObject.null(nKey);
  JsonObject lObject(nObject.key(nKey));
  lObject.real("value", nCoordinate.value);
  lObject.text("direction", DIRECTIONS[nCoordinate.direction]);
  lObject.real("degrees", decimalDegrees(nCoordinate));
}

template <class Record>
void addPosition(const Record& nRecord, JsonObject& nObject) {
  addCoordinate("latitude", nRecord.latitude, nObject);
  addCoordinate("longitude", nRecord.longitude, nObject);
}

void addSatellite(const nfw::GsvSatelliteInfo& nSatellite, std::string* npText) {
  JsonObject lObject(npText);
  lObject.number("id", nSatellite.satelliteId);
  lObject.number("elevation", nSatellite.elevation);
  lObject.number("azimuth", nSatellite.azimuth);
  lObject.number("snr", nSatellite.snr);
  lObject.flag("valid", nSatellite.valid);
}

// A block that the sentence does not have is all zero; so is one with empty fields only, which says as little.
bool isPresent(const nfw::GsvSatelliteInfo& nSatellite) { return nSatellite.valid || nSatellite.satelliteId != 0; }

// The members of each record, in the order of its fields.

void addMembers(const nfw::GgaSentence& nRecord, JsonObject& nObject) {
  addTime(nRecord.utcTime, nObject);
  addPosition(nRecord, nObject);
  nObject.text("quality", QUALITIES[nRecord.quality]);
  nObject.number("satellites", nRecord.satelliteCount);
  nObject.real("hdop", nRecord.hdop);
  nObject.real("altitude", nRecord.altitude);
  nObject.real("geoid_separation", nRecord.geoidSeparation);
  nObject.number("dgps_age", nRecord.dgpsDataAge);
  nObject.number("dgps_station", nRecord.dgpsStationId);
}

void addMembers(const nfw::GllSentence& nRecord, JsonObject& nObject) {
  addTime(nRecord.utcTime, nObject);
  addPosition(nRecord, nObject);
  nObject.flag("valid", nRecord.status);
  nObject.text("mode", MODES[nRecord.mode]);
}

void addMembers(const nfw::GsaSentence& nRecord, JsonObject& nObject) {
  nObject.text("selection", SELECTIONS[nRecord.positioningType]);
  nObject.text("fix", FIXES[nRecord.mode]);
  {
    JsonObject lList(nObject.key("satellites"), '[');
    for (const uint32_t lId : nRecord.satelliteId) {
      if (lId != 0) fmt::format_to(std::back_inserter(*lList.element()), "{}", lId);
    }
  }
  nObject.real("pdop", nRecord.pdop);
  nObject.real("hdop", nRecord.hdop);
  nObject.real("vdop", nRecord.vdop);
}

void addMembers(const nfw::GsvSentence& nRecord, JsonObject& nObject) {
  nObject.number("messages", nRecord.messageCount);
  nObject.number("message", nRecord.messageNumber);
  nObject.number("in_view", nRecord.satelliteView);
  JsonObject lList(nObject.key("satellites"), '[');
  for (const nfw::GsvSatelliteInfo& lSatellite : nRecord.satellite) {
    if (isPresent(lSatellite)) addSatellite(lSatellite, lList.element());
  }
}

void addMembers(const nfw::RmcSentence& nRecord, JsonObject& nObject) {
  addDate(nRecord.date, nObject);
  addTime(nRecord.utcTime, nObject);
  nObject.flag("valid", nRecord.status);
  addPosition(nRecord, nObject);
  nObject.real("speed_knots", nRecord.speed);
  nObject.real("course", nRecord.direction);
  nObject.real("magnetic_variation", nRecord.magneticDeclination);
  nObject.text("mode", MODES[nRecord.mode]);
}

void addMembers(const nfw::VtgSentence& nRecord, JsonObject& nObject) {
  nObject.real("course", nRecord.directionForTrueNorth);
  nObject.real("course_magnetic", nRecord.directionForMagneticNorth);
  nObject.real("speed_knots", nRecord.speedKnot);
  nObject.real("speed_kmh", nRecord.speedKmh);
  nObject.text("mode", MODES[nRecord.mode]);
}

void addMembers(const nfw::ZdaSentence& nRecord, JsonObject& nObject) {
  addDate(nRecord.date, nObject);
  addTime(nRecord.utcTime, nObject);
  nObject.number("zone_hours", nRecord.localZoneHour);
  nObject.number("zone_minutes", nRecord.localZoneMinute);
}

void addMembers(const nfw::PubxSentence& nRecord, JsonObject& nObject) {
  nObject.number("message", nRecord.messageId);
  addTime(nRecord.utcTime, nObject);
  addPosition(nRecord, nObject);
  nObject.real("altitude", nRecord.altitudeRef);
  nObject.text("status", STATUSES[nRecord.status]);
  nObject.real("horizontal_accuracy", nRecord.hacc);
  nObject.real("vertical_accuracy", nRecord.vacc);
  nObject.real("speed_kmh", nRecord.speed);
  nObject.real("course", nRecord.direction);
  nObject.real("vertical_velocity", nRecord.vvel);
  nObject.number("dgps_age", nRecord.dgpsDataAge);
  nObject.real("hdop", nRecord.hdop);
  nObject.real("vdop", nRecord.vdop);
  nObject.real("tdop", nRecord.tdop);
  nObject.number("satellites", nRecord.satelliteCount);
  nObject.flag("dead_reckoning", nRecord.drMode);
}

template <class Record>
void appendLine(std::string_view nType, std::string_view nSystem, const Record& nRecord, std::string_view nSource,
                std::string* npText) {
  {
    JsonObject lObject(npText);
    lObject.text("type", nType);
    if (!nSource.empty()) lObject.text("source", nSource);
    if (!nSystem.empty()) lObject.text("system", nSystem);
    addMembers(nRecord, lObject);
  }
  npText->push_back('\n');
}

}  // namespace

double decimalDegrees(const nfw::GnssSentenceCoordinate& nCoordinate) {
  const double lWhole = std::floor(nCoordinate.value / 100.0);
  const double lDegrees = lWhole + (nCoordinate.value - lWhole * 100.0) / 60.0;
  const bool lIsNegative =
      nCoordinate.direction == nfw::DIRECTION_SOUTH || nCoordinate.direction == nfw::DIRECTION_WEST;
  return lIsNegative ? -lDegrees : lDegrees;
}

std::string_view systemName(nfw::SatelliteType nType) {
  static const std::string_view NAMES[] = {"unknown", "GPS", "GLONASS", "Galileo", "combined", "other"};
  return NAMES[nType];
}

void appendJson(const nfw::GgaSentence& nRecord, std::string* npText, std::string_view nSource) {
  appendLine("GGA", systemName(nRecord.satelliteType), nRecord, nSource, npText);
}
void appendJson(const nfw::GllSentence& nRecord, std::string* npText, std::string_view nSource) {
  appendLine("GLL", systemName(nRecord.satelliteType), nRecord, nSource, npText);
}
void appendJson(const nfw::GsaSentence& nRecord, std::string* npText, std::string_view nSource) {
  appendLine("GSA", systemName(nRecord.satelliteType), nRecord, nSource, npText);
}
void appendJson(const nfw::GsvSentence& nRecord, std::string* npText, std::string_view nSource) {
  appendLine("GSV", systemName(nRecord.satelliteType), nRecord, nSource, npText);
}
void appendJson(const nfw::RmcSentence& nRecord, std::string* npText, std::string_view nSource) {
  appendLine("RMC", systemName(nRecord.satelliteType), nRecord, nSource, npText);
}
void appendJson(const nfw::VtgSentence& nRecord, std::string* npText, std::string_view nSource) {
  appendLine("VTG", systemName(nRecord.satelliteType), nRecord, nSource, npText);
}
void appendJson(const nfw::ZdaSentence& nRecord, std::string* npText, std::string_view nSource) {
  appendLine("ZDA", systemName(nRecord.satelliteType), nRecord, nSource, npText);
}
void appendJson(const nfw::PubxSentence& nRecord, std::string* npText, std::string_view nSource) {
  appendLine("PUBX", {}, nRecord, nSource, npText);
}

}  // namespace tool
