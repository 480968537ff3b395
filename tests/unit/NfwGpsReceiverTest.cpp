// The stand-in's receiver reads sentences by itself; the framework, replaying what it recorded of them, parses again.
// Both have to mean the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "GpsSdkRecords.h"
#include "NfwNmeaDataParser.h"
#include "PlatformSeams.h"
#include "RecordBytes.h"
#include "Recordings.h"
#include "SentenceParser.h"

using namespace nfw;
using Strings = std::vector<std::string>;

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

/// True when there is a record to compare.
template <class SdkRecord, class Record>
bool expectSame(const std::string& nText, bool (*npParse)(char const*, unsigned int, Record*)) {
  SdkRecord lRead{};
  Record lParsed;
  const bool lIsParsed = npParse(nText.c_str(), 1, &lParsed);
  EXPECT_EQ(lIsParsed, gpshost::parse(nText.c_str(), &lRead)) << nText;
  leaveOut(&lRead);
  EXPECT_TRUE(!lIsParsed || comparable(lParsed) == comparable(convertRecord(lRead))) << nText;
  return lIsParsed;
}

bool expectSameMeaning(const std::string& nText) {
  EXPECT_EQ(NmeaDataParser::analyzeNmeaSentenceType(nText.c_str(), static_cast<unsigned int>(nText.size())),
            static_cast<int>(gpshost::kindOf(nText.c_str())))
      << nText;
  const bool lHasRecord[] = {expectSame<GPGGA>(nText, &NmeaDataParser::parseGgaSentence),
                             expectSame<GPGLL>(nText, &NmeaDataParser::parseGllSentence),
                             expectSame<GPGSA>(nText, &NmeaDataParser::parseGsaSentence),
                             expectSame<GPGSV>(nText, &NmeaDataParser::parseGsvSentence),
                             expectSame<GPRMC>(nText, &NmeaDataParser::parseRmcSentence),
                             expectSame<GPVTG>(nText, &NmeaDataParser::parseVtgSentence),
                             expectSame<GPZDA>(nText, &NmeaDataParser::parseZdaSentence),
                             expectSame<PUBX>(nText, &NmeaDataParser::parsePubxSentence)};
  return std::find(std::begin(lHasRecord), std::end(lHasRecord), true) != std::end(lHasRecord);
}

const char* const SENTENCES[] = {
    "$GPGGA,092725.00,4717.11399,N,00833.91590,E,1,08,1.01,499.6,M,48.0,M,,*5B",
    "$GPGLL,4717.11364,N,00833.91565,E,092321.00,A,A*60",
    "$GPGSA,A,3,23,29,07,08,09,18,26,28,,,,,1.94,1.18,1.54*0D",
    "$GPGSV,3,1,10,23,38,230,44,29,71,156,47,07,29,116,41,08,09,081,36*7F",
    "$GPRMC,083559.00,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,3.1,W,A*57",
    "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A*06",
    "$GPZDA,082710.00,16,09,2002,00,00*64",
    "$PUBX,00,081350.00,4717.113210,N,00833.915187,E,546.589,G3,2.1,2.0,0.007,77.52,0.007,,0.92,1.19,0.77,9,0,0*5F",
};

TEST(GpsReceiverTest, ReadsHardCasesAsTheFrameworkDoes) {
  const seams::CapturedLog lLog;
  const std::string VTG = "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A";
  const Strings CASES = {
      "$BDGGA,092725.5,,,,,,,,,,,,,",
      "$GBGGA,092725.50,4717,S,00833,W,6,+1,,,,,,,",
      "$GNGGA,0927251234567,-4717.1,N ,+08.3,EE,06,4294967295,1e1,0x1p3,M,-inf,M,4294967295,0*00",
      "$GNGGA,092725,4717.1,N,833.1,E,1,4294967296,,,,,,,",
      "$GNGGA, 092725 ,4717.1234567890,N,17959.99999999999,E,1,4,nan,,,,,,",
      "$GNGGA,092725,12345678901234567890,N,,,1,,,,,,,,",
      "$GPRMC,083559.00,AB,4717.1,N,00833.9,E,0.0,7.5,09120233,3.1,w,Autonomous\r\n",
      "$GPGSA,A,3,256,4294967295,07,,,,,,,,,,1.94,1.18,*0D",
      "$GPGSV,2,3,10,23,38,230,44,29,71,156,47*7F",
      "$GPGSV,2,3,10,23,38,230,44,29,71,156*7F",
      "$GPGSV,1,1,129*7F",
      "$GPGSV,,,*79",
      "$GPGSV,2,1,04,300,38,70000,44,29,255,156,255,,,,,,,,*7F",
      "$GPGSV,2000000000,2000000001,04,1,2,3,4*7F",
      "$PUBX,04,073731.00,091202,113851.00,1196,15D,1930035,-2660.664,43,*3C",
      "$PUBXGGA,081350.00,,,,,0,TTx,0,0,0,0,0,,0,0,0,0,11,0*5F",
      std::string("$GPZDA,0827\0", 12) + "10.00,16,09,2002,00,00*64",
      VTG + std::string(127 - VTG.size(), ' '),
      VTG + std::string(128 - VTG.size(), ' '),
  };
  for (const std::string& lText : CASES) expectSameMeaning(lText);
}

TEST(GpsReceiverTest, ReadsSpoiltSentencesAsTheFrameworkDoes) {
  static const char BYTES[] = ",,,**$GPNSEWAVD0123456789.-+ ex\t\r";
  std::mt19937 lRandom(5);
  unsigned int lRecords = 0;
  for (unsigned int i = 0; i < 20000; ++i) {
    const seams::CapturedLog lLog;
    std::string lText = SENTENCES[i % std::size(SENTENCES)];
    for (size_t lCount = 1 + lRandom() % 3; lCount > 0; --lCount) {
      lText.replace(lRandom() % lText.size(), lRandom() % 3, lRandom() % 3, BYTES[lRandom() % (sizeof(BYTES) - 1)]);
    }
    if (expectSameMeaning(lText)) ++lRecords;
  }
  EXPECT_TRUE(lRecords > 4000 && lRecords < 16000) << lRecords;
}

TEST(GpsReceiverTest, ReadsRecordedSentencesAsTheFrameworkDoes) {
  const auto lRecordings = nfwtest::recordings();
  if (lRecordings.empty()) GTEST_SKIP() << nfwtest::NO_RECORDINGS;
  size_t lLines = 0, lRecords = 0;
  for (const Strings& lRecording : lRecordings) {
    const seams::CapturedLog lLog;
    lLines += lRecording.size();
    for (const std::string& lText : lRecording) {
      if (expectSameMeaning(lText)) ++lRecords;
    }
  }
  std::cout << lLines << " lines read alike, " << lRecords << " with a record\n";
}

}  // namespace
