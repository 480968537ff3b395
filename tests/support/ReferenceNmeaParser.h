// The parse as it is defined, in its plainest form: a working copy consumed from the front, field by field, with
// strtod. Slow and short: the yardstick for the parser that is fast.
#pragma once

#include <string>
#include <vector>

#include "NfwNmeaSentence.h"

class ReferenceNmeaParser {
 public:
  bool parse(const std::string& nText, nfw::GgaSentence* npRecord);
  bool parse(const std::string& nText, nfw::GllSentence* npRecord);
  bool parse(const std::string& nText, nfw::GsaSentence* npRecord);
  bool parse(const std::string& nText, nfw::GsvSentence* npRecord);
  bool parse(const std::string& nText, nfw::RmcSentence* npRecord);
  bool parse(const std::string& nText, nfw::VtgSentence* npRecord);
  bool parse(const std::string& nText, nfw::ZdaSentence* npRecord);
  bool parse(const std::string& nText, nfw::PubxSentence* npRecord);

  const std::vector<std::string>& lines() const { return mLines; }  ///< what the last parse has to say

 private:
  bool line(const std::string& nText);
  bool fail(const std::string& nText) { return line(mPrefix + "(): " + nText); }
  bool open(const std::string& nText, const std::string& nRecord, const std::string& nType);
  bool open(const std::string& nText, const std::string& nRecord, const std::string& nType, nfw::SatelliteType* npType);
  bool extract(const std::string& nError);
  bool extractHeadData();
  bool time(const std::string& nError, nfw::GnssSentenceTime* npTime);
  bool date(nfw::GnssSentenceDate* npDate);
  bool coordinate(const std::string& nAxis, const std::string& nDirection, nfw::GnssSentenceCoordinate* npCoordinate);
  bool direction(const std::string& nError, nfw::CoordinateDirection* npDirection);
  bool real(const std::string& nError, const std::string& nName, double* npValue);
  bool count(const std::string& nError, const std::string& nNumberError, uint32_t* npValue);
  bool mode(nfw::AutonomousMethodType* npMode);
  bool flag(const std::string& nError, char nLetter, bool* npFlag);

  std::string mPrefix;
  std::string mRest;
  std::string mItem;
  std::vector<std::string> mLines;
};
