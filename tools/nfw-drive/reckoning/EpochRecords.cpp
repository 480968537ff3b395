#include "EpochRecords.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

#include "JsonRecord.h"
#include "LogKinds.h"
#include "NfwNmeaDataParser.h"
#include "SentenceTime.h"

namespace drive {

namespace {

using namespace ZTSDeadReckoningDef;
using nfw::NmeaDataParser;

const size_t MAX_PARSED = 127;                      // characters
const unsigned int MAX_GGA_SATELLITES = 15;         // more do not fit into four bits
const char MODES[] = "NADE";                        // by nfw::AutonomousMethodType
const unsigned char QUALITIES[] = {0, 1, 2, 6, 0};  // by nfw::SatelliteQuality
const char RMC_STATUSES[] = "VADU";

template <class Record>
using Parse = bool (*)(char const*, unsigned int, Record*);

template <class Record>
bool parse(Parse<Record> npParse, const char* npText, Record* npRecord) {
  return npParse(npText, 1, npRecord);
}

/// A number as it is, or 0 when its place in the record of a report is too small for it.
template <class Number>
Number fitting(uint32_t nNumber) {
  return nNumber <= std::numeric_limits<Number>::max() ? static_cast<Number>(nNumber) : Number{0};
}

template <class Number>
Number numberOf(std::string_view nField) {
  Number lNumber{};
  const auto lResult = std::from_chars(nField.data(), nField.data() + nField.size(), lNumber);
  return lResult.ec == std::errc() ? lNumber : Number{0};
}

void copyTalker(const char* npText, char (&nTalker)[2]) { memcpy(nTalker, npText + 1, sizeof(nTalker)); }

double signedValue(const nfw::GnssSentenceCoordinate& nCoordinate) {
  const bool lIsNegative =
      nCoordinate.direction == nfw::DIRECTION_SOUTH || nCoordinate.direction == nfw::DIRECTION_WEST;
  return lIsNegative ? -nCoordinate.value : nCoordinate.value;
}

template <class Record>
std::optional<Place> placeOf(const Record& nRecord) {
  if (nRecord.latitude.direction == nfw::DIRECTION_NONE || nRecord.longitude.direction == nfw::DIRECTION_NONE) {
    return std::nullopt;
  }
  return Place{tool::decimalDegrees(nRecord.latitude), tool::decimalDegrees(nRecord.longitude)};
}

char rmcStatus(const char* npText) {
  const std::string_view lField = tool::sentenceField(npText, 2);
  return !lField.empty() && strchr(RMC_STATUSES, lField[0]) != nullptr ? lField[0] : RMC_STATUSES[0];
}

// The parser leaves out those of a group's last message, so they are taken from the text.
DRG_GSV_SATELLITE satelliteOf(const char* npText, int nFirstField) {
  std::string_view lFields[4];
  bool lIsWhole = true;
  for (std::string_view& lField : lFields) {
    lField = tool::sentenceField(npText, nFirstField++);
    lIsWhole = lIsWhole && !lField.empty();
  }
  return {numberOf<uint16_t>(lFields[0]), lIsWhole ? uint8_t{1} : uint8_t{0}, numberOf<unsigned char>(lFields[1]),
          numberOf<unsigned char>(lFields[3]), numberOf<unsigned short>(lFields[2])};
}

}  // namespace

void EpochRecords::take(std::string_view nSentence) {
  const LogMute lMute;
  char lText[MAX_PARSED + 1];
  if (nSentence.size() > MAX_PARSED) return;
  lText[nSentence.copy(lText, MAX_PARSED)] = '\0';
  switch (NmeaDataParser::analyzeNmeaSentenceType(lText, static_cast<unsigned int>(nSentence.size()))) {
    case nfw::NMEA_RMC:
      return takeRmc(lText);
    case nfw::NMEA_VTG:
      return takeVtg(lText);
    case nfw::NMEA_GGA:
      return takeGga(lText);
    case nfw::NMEA_GSA:
      return takeGsa(lText);
    case nfw::NMEA_GSV:
      return takeGsv(lText);
    case nfw::NMEA_ZDA:
      return takeZda(lText);
    case nfw::NMEA_PUBX:
      return takePubx(lText);
    default:
      return;
  }
}

std::optional<Place> EpochRecords::getFix() const {
  if (mIsRefused) return std::nullopt;
  return mGgaPlace ? mGgaPlace : mRmcPlace;
}

unsigned int EpochRecords::usedCount() const {
  unsigned int lCount = 0;
  for (unsigned int i = 0; i < mInfo.gsaCount; ++i) {
    for (const unsigned int lNumber : mInfo.gsa[i].number) lCount += lNumber != 0 ? 1 : 0;
  }
  return lCount;
}

void EpochRecords::takeRmc(const char* npText) {
  nfw::RmcSentence lRecord;
  if (!parse(&NmeaDataParser::parseRmcSentence, npText, &lRecord)) return;
  mHasRmc = true;
  mRmcPlace = placeOf(lRecord);
  mDate = lRecord.date;
  DRG_RMC& lRmc = mInfo.rmc;
  copyTalker(npText, lRmc.talker);
  lRmc.status = rmcStatus(npText);
  lRmc.mode = MODES[lRecord.mode];
  lRmc.latitude = signedValue(lRecord.latitude);
  lRmc.longitude = signedValue(lRecord.longitude);
  lRmc.speed = lRecord.speed;
  lRmc.course = lRecord.direction;
  lRmc.day = fitting<unsigned char>(lRecord.date.day);
  lRmc.month = fitting<unsigned char>(lRecord.date.month);
  lRmc.year = static_cast<unsigned char>(lRecord.date.year % 100);
  lRmc.variation = lRecord.magneticDeclination;
  if (lRmc.status == RMC_STATUSES[0]) mIsRefused = true;
}

void EpochRecords::takeVtg(const char* npText) {
  nfw::VtgSentence lRecord;
  if (!parse(&NmeaDataParser::parseVtgSentence, npText, &lRecord)) return;
  mHasVtg = true;
  DRG_VTG& lVtg = mInfo.vtg;
  copyTalker(npText, lVtg.talker);
  lVtg.mode = MODES[lRecord.mode];
  lVtg.courseTrue = lRecord.directionForTrueNorth;
  lVtg.courseMagnetic = lRecord.directionForMagneticNorth;
  lVtg.speedKnot = lRecord.speedKnot;
  lVtg.speedKmh = lRecord.speedKmh;
}

void EpochRecords::takeGga(const char* npText) {
  nfw::GgaSentence lRecord;
  if (!parse(&NmeaDataParser::parseGgaSentence, npText, &lRecord)) return;
  mHasGga = true;
  mGgaPlace = placeOf(lRecord);
  DRG_GGA& lGga = mInfo.gga;
  copyTalker(npText, lGga.talker);
  lGga.quality = QUALITIES[lRecord.quality];
  lGga.satellites = static_cast<unsigned char>(std::min(lRecord.satelliteCount, MAX_GGA_SATELLITES));
  lGga.latitude = signedValue(lRecord.latitude);
  lGga.longitude = signedValue(lRecord.longitude);
  lGga.hdop = lRecord.hdop;
  lGga.altitude = lRecord.altitude;
  lGga.geoidSeparation = lRecord.geoidSeparation;
  lGga.age = fitting<unsigned short>(lRecord.dgpsDataAge);
  lGga.stationId = fitting<unsigned short>(lRecord.dgpsStationId);
  if (lGga.quality == 0) mIsRefused = true;
}

void EpochRecords::takeGsa(const char* npText) {
  nfw::GsaSentence lRecord;
  if (mInfo.gsaCount == DRG_GSA_NUM || !parse(&NmeaDataParser::parseGsaSentence, npText, &lRecord)) return;
  DRG_GSA& lGsa = mInfo.gsa[mInfo.gsaCount++];
  copyTalker(npText, lGsa.talker);
  lGsa.selection = lRecord.positioningType == nfw::POSITIONING_MANUAL ? 'M' : 'A';
  lGsa.fixMode = static_cast<unsigned char>(lRecord.mode + 1);
  for (unsigned int i = 0; i < DRG_GSA_SATELLITE_NUM; ++i) {
    lGsa.number[i] = fitting<uint16_t>(lRecord.satelliteId[i]);
  }
  lGsa.pdop = lRecord.pdop;
  lGsa.hdop = lRecord.hdop;
  lGsa.vdop = lRecord.vdop;
}

void EpochRecords::takeGsv(const char* npText) {
  nfw::GsvSentence lRecord;
  if (mInfo.gsvCount == DRG_GSV_NUM || !parse(&NmeaDataParser::parseGsvSentence, npText, &lRecord)) return;
  DRG_GSV& lGsv = mInfo.gsv[mInfo.gsvCount++];
  copyTalker(npText, lGsv.talker);
  lGsv.count = fitting<unsigned char>(lRecord.messageCount);
  lGsv.number = fitting<unsigned char>(lRecord.messageNumber);
  lGsv.view = fitting<unsigned char>(lRecord.satelliteView);
  int lField = 4;
  for (DRG_GSV_SATELLITE& lSatellite : lGsv.satellite) {
    lSatellite = satelliteOf(npText, lField);
    lField += 4;
  }
}

void EpochRecords::takeZda(const char* npText) {
  nfw::ZdaSentence lRecord;
  if (!mHasRmc && parse(&NmeaDataParser::parseZdaSentence, npText, &lRecord)) mDate = lRecord.date;
}

// Only message 00 tells of a position.
void EpochRecords::takePubx(const char* npText) {
  nfw::PubxSentence lRecord;
  if (strncmp(npText, "$PUBX,00,", 9) != 0 || !parse(&NmeaDataParser::parsePubxSentence, npText, &lRecord)) return;
  mHasPubx = true;
  mInfo.pubx = {static_cast<unsigned char>(lRecord.status),
                lRecord.messageId,
                0.0,
                signedValue(lRecord.latitude),
                signedValue(lRecord.longitude),
                lRecord.altitudeRef,
                lRecord.hacc,
                lRecord.vacc,
                lRecord.speed,
                lRecord.direction,
                lRecord.vvel,
                fitting<unsigned short>(lRecord.dgpsDataAge),
                lRecord.hdop,
                lRecord.vdop,
                lRecord.tdop,
                fitting<unsigned char>(lRecord.satelliteCount),
                lRecord.drMode ? uint8_t{1} : uint8_t{0}};
}

}  // namespace drive
