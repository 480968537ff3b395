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

}  // namespace

std::string differenceFromReference(const std::string& nText) {
  const seams::CapturedLog lLog;
  std::string lDifference;
  const int lType = NmeaDataParser::analyzeNmeaSentenceType(nText.c_str(), static_cast<unsigned int>(nText.size()));
  if (lType != static_cast<int>(gpshost::kindOf(nText.c_str()))) lDifference += "another kind ";
  eachParse(nText, [&](auto npParse, auto nParsed, auto nRead) {
    const bool lIsParsed = npParse(nText.c_str(), 1, &nParsed);
    if (lIsParsed != gpshost::parse(nText.c_str(), &nRead)) lDifference += lIsParsed ? "only parsed " : "only read ";
    if constexpr (std::is_same_v<decltype(nRead), GPGSV>) {  // of the last message only the receiver reads satellites
      if (nRead.messageCount == nRead.messageNumber) nRead.satelliteCount = 0;
    }
    if (lIsParsed && comparable(nParsed) != comparable(convertRecord(nRead))) lDifference += "another record ";
  });
  return lDifference.empty() ? "" : lDifference + "[" + nText + "]";
}
