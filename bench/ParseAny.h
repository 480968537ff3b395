// A parse of a sentence of any kind, into records that are used again and again: their construction is the caller's.
#pragma once

#include <string>

#include "NfwNmeaDataParser.h"

namespace bench {

struct ParsedRecords {
  nfw::GgaSentence mGga;
  nfw::GllSentence mGll;
  nfw::GsaSentence mGsa;
  nfw::GsvSentence mGsv;
  nfw::RmcSentence mRmc;
  nfw::VtgSentence mVtg;
  nfw::ZdaSentence mZda;
  nfw::PubxSentence mPubx;
};

inline bool parseAny(int nType, const std::string& nText, ParsedRecords& nRecords) {
  using nfw::NmeaDataParser;
  const char* const lpText = nText.c_str();
  const auto lLength = static_cast<unsigned int>(nText.size());
  switch (nType) {
    case nfw::NMEA_GGA:
      return NmeaDataParser::parseGgaSentence(lpText, lLength, &nRecords.mGga);
    case nfw::NMEA_GLL:
      return NmeaDataParser::parseGllSentence(lpText, lLength, &nRecords.mGll);
    case nfw::NMEA_GSA:
      return NmeaDataParser::parseGsaSentence(lpText, lLength, &nRecords.mGsa);
    case nfw::NMEA_GSV:
      return NmeaDataParser::parseGsvSentence(lpText, lLength, &nRecords.mGsv);
    case nfw::NMEA_RMC:
      return NmeaDataParser::parseRmcSentence(lpText, lLength, &nRecords.mRmc);
    case nfw::NMEA_VTG:
      return NmeaDataParser::parseVtgSentence(lpText, lLength, &nRecords.mVtg);
    case nfw::NMEA_ZDA:
      return NmeaDataParser::parseZdaSentence(lpText, lLength, &nRecords.mZda);
    default:
      return NmeaDataParser::parsePubxSentence(lpText, lLength, &nRecords.mPubx);
  }
}

}  // namespace bench
