// The parser against another one.
#pragma once

#include <string>

#include "NfwNmeaDataParser.h"

/// Calls `nUse(parse operation, empty record)` for the kind of a text; for each kind when it is of none.
template <class Use>
void eachParse(const std::string& nText, Use nUse) {
  using nfw::NmeaDataParser;
  const int lType = NmeaDataParser::analyzeNmeaSentenceType(nText.c_str(), static_cast<unsigned int>(nText.size()));
  const auto lTry = [&](int nType, auto npParse, auto nRecord) {
    if (lType == nType || lType == nfw::NMEA_UNKNOWN) nUse(npParse, nRecord);
  };
  lTry(nfw::NMEA_GGA, &NmeaDataParser::parseGgaSentence, nfw::GgaSentence());
  lTry(nfw::NMEA_GLL, &NmeaDataParser::parseGllSentence, nfw::GllSentence());
  lTry(nfw::NMEA_GSA, &NmeaDataParser::parseGsaSentence, nfw::GsaSentence());
  lTry(nfw::NMEA_GSV, &NmeaDataParser::parseGsvSentence, nfw::GsvSentence());
  lTry(nfw::NMEA_RMC, &NmeaDataParser::parseRmcSentence, nfw::RmcSentence());
  lTry(nfw::NMEA_VTG, &NmeaDataParser::parseVtgSentence, nfw::VtgSentence());
  lTry(nfw::NMEA_ZDA, &NmeaDataParser::parseZdaSentence, nfw::ZdaSentence());
  lTry(nfw::NMEA_PUBX, &NmeaDataParser::parsePubxSentence, nfw::PubxSentence());
}

/// What differs, in verdict or record, between the parser and the one that feeds the stand-in's SDK; empty when nothing
/// does. `npHasRecord` is set when the text is one. Captures the log meanwhile.
std::string differenceFromReference(const std::string& nText, bool* npHasRecord = nullptr);
