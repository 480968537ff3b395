#include "NmeaParserCheck.h"

#include "GpsSdkRecords.h"
#include "PlatformSeams.h"
#include "RecordBytes.h"
#include "SentenceParser.h"

using namespace nfw;

namespace {

// What the SDK's records cannot say in the framework's: talkers beyond the four are unknown.
template <class Record>
std::string comparable(Record nRecord) {
  if constexpr (!std::is_same_v<Record, PubxSentence>) {
    if (nRecord.satelliteType == SATELLITE_OTHER) nRecord.satelliteType = SATELLITE_UNKNOWN;
  }
  return recordBytes(nRecord);
}

// Of the last message of a group only the receiver reads satellites.
void leaveOut(GPGSV* npRecord) {
  if (npRecord->messageCount == npRecord->messageNumber) npRecord->satelliteCount = 0;
}
template <class SdkRecord>
void leaveOut(SdkRecord*) {}

GPGGA sdkRecord(const GgaSentence&) { return {}; }
GPGLL sdkRecord(const GllSentence&) { return {}; }
GPGSA sdkRecord(const GsaSentence&) { return {}; }
GPGSV sdkRecord(const GsvSentence&) { return {}; }
GPRMC sdkRecord(const RmcSentence&) { return {}; }
GPVTG sdkRecord(const VtgSentence&) { return {}; }
GPZDA sdkRecord(const ZdaSentence&) { return {}; }
PUBX sdkRecord(const PubxSentence&) { return {}; }

}  // namespace

std::string differenceFromReference(const std::string& nText, bool* npHasRecord) {
  const seams::CapturedLog lLog;
  std::string lDifference;
  const int lType = NmeaDataParser::analyzeNmeaSentenceType(nText.c_str(), static_cast<unsigned int>(nText.size()));
  if (lType != static_cast<int>(gpshost::kindOf(nText.c_str()))) lDifference += "another kind ";
  eachParse(nText, [&](auto npParse, auto nParsed) {
    auto lRead = sdkRecord(nParsed);
    const bool lIsParsed = npParse(nText.c_str(), 1, &nParsed);
    if (lIsParsed != gpshost::parse(nText.c_str(), &lRead)) lDifference += lIsParsed ? "only parsed " : "only read ";
    leaveOut(&lRead);
    if (lIsParsed && comparable(nParsed) != comparable(convertRecord(lRead))) lDifference += "another record ";
    if (lIsParsed && npHasRecord != nullptr) *npHasRecord = true;
  });
  return lDifference.empty() ? "" : lDifference + "[" + nText + "]";
}
