#include "NmeaParserCheck.h"

#include "NfwNmeaDataParser.h"
#include "PlatformSeams.h"
#include "RecordBytes.h"
#include "ReferenceNmeaParser.h"

using namespace nfw;

namespace {

std::string joined(const std::vector<std::string>& nLines) {
  std::string lText;
  for (const std::string& lLine : nLines) lText += lLine + "\n";
  return lText;
}

template <class Record>
std::string difference(const std::string& nText, bool (*npParse)(char const*, unsigned int, Record*),
                       seams::CapturedLog* npLog) {
  npLog->clear();
  ReferenceNmeaParser lReference;
  Record lExpected;
  Record lRecord;
  const bool lIsExpected = lReference.parse(nText, &lExpected);
  const bool lIsParsed = npParse(nText.c_str(), 1, &lRecord);
  const std::string lExpectedLines = joined(lReference.lines());
  const std::string lLines = joined(npLog->texts());
  if (lIsParsed != lIsExpected)
    return "[" + nText + "] verdict; expected lines:\n" + lExpectedLines + "found:\n" + lLines;
  if (lLines != lExpectedLines) return "[" + nText + "] expected lines:\n" + lExpectedLines + "found:\n" + lLines;
  if (lIsParsed && recordBytes(lRecord) != recordBytes(lExpected)) return "[" + nText + "] record";
  return "";
}

}  // namespace

std::string differenceFromReference(const std::string& nText) {
  seams::CapturedLog lLog;
  std::string lDifference = difference(nText, &NmeaDataParser::parseGgaSentence, &lLog);
  if (lDifference.empty()) lDifference = difference(nText, &NmeaDataParser::parseGllSentence, &lLog);
  if (lDifference.empty()) lDifference = difference(nText, &NmeaDataParser::parseGsaSentence, &lLog);
  if (lDifference.empty()) lDifference = difference(nText, &NmeaDataParser::parseGsvSentence, &lLog);
  if (lDifference.empty()) lDifference = difference(nText, &NmeaDataParser::parseRmcSentence, &lLog);
  if (lDifference.empty()) lDifference = difference(nText, &NmeaDataParser::parseVtgSentence, &lLog);
  if (lDifference.empty()) lDifference = difference(nText, &NmeaDataParser::parseZdaSentence, &lLog);
  if (lDifference.empty()) lDifference = difference(nText, &NmeaDataParser::parsePubxSentence, &lLog);
  return lDifference;
}
