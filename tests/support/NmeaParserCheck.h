// The parser against another one.
#pragma once

#include <string>

#include "Gps.h"
#include "NfwNmeaDataParser.h"

/// Calls `nUse(parse operation, empty record, empty record of the SDK)` for the kind of a text; for each kind when it
/// is of none.
template <class Use>
void eachParse(const std::string& nText, Use nUse) {
  using nfw::NmeaDataParser;
  const int lType = NmeaDataParser::analyzeNmeaSentenceType(nText.c_str(), static_cast<unsigned int>(nText.size()));
  const auto lTry = [&](int nType, auto npParse, auto nRecord, auto nSdkRecord) {
    if (lType == nType || lType == nfw::NMEA_UNKNOWN) nUse(npParse, nRecord, nSdkRecord);
  };
  lTry(nfw::NMEA_GGA, &NmeaDataParser::parseGgaSentence, nfw::GgaSentence(), GPGGA());
  lTry(nfw::NMEA_GLL, &NmeaDataParser::parseGllSentence, nfw::GllSentence(), GPGLL());
  lTry(nfw::NMEA_GSA, &NmeaDataParser::parseGsaSentence, nfw::GsaSentence(), GPGSA());
  lTry(nfw::NMEA_GSV, &NmeaDataParser::parseGsvSentence, nfw::GsvSentence(), GPGSV());
  lTry(nfw::NMEA_RMC, &NmeaDataParser::parseRmcSentence, nfw::RmcSentence(), GPRMC());
  lTry(nfw::NMEA_VTG, &NmeaDataParser::parseVtgSentence, nfw::VtgSentence(), GPVTG());
  lTry(nfw::NMEA_ZDA, &NmeaDataParser::parseZdaSentence, nfw::ZdaSentence(), GPZDA());
  lTry(nfw::NMEA_PUBX, &NmeaDataParser::parsePubxSentence, nfw::PubxSentence(), PUBX());
}

/// What differs, in verdict or record, between the parser and the one that feeds the stand-in's SDK; empty when nothing
/// does. Captures the log meanwhile.
std::string differenceFromReference(const std::string& nText);
