// Sentences of real receivers: what comes back out of the binary log parses as what went in. They are read from the
// folder that NFW_CORPUS names, else from ../shared/nmea beside the project, and are not part of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "BinaryLog.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "NfwNmeaDataParser.h"
#include "PlatformSeams.h"

namespace {

using binarylog::Bytes;
using binarylog::Converter;
using binarylog::decode;
using binarylog::encode;
using nfw::NmeaDataParser;

/// The same digests have to come out on every processor.
const unsigned long long OWN_RECORDS_DIGEST = 14984542861201067390ULL;
const unsigned long long KNOWN_CORPUS_DIGEST = 7762835336353775705ULL;
const unsigned long long KNOWN_CORPUS_RECORDS_DIGEST = 8913155848478145079ULL;

const char* const OWN_SENTENCES[] = {
    "$GPGGA,123519.00,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47",
    "$GNGGA,235959.9996,3853.123456,S,07702.987654,W,2,12,1.005,-3.25,M,-33.95,M,12,0120*5B",
    "$GPGLL,4916.45123,N,12311.1249995,W,225444.00,A,D*7D",
    "$GNGSA,A,3,04,05,,09,12,,,24,300,,,,2.515,1.305,2.105*39",
    "$GLGSV,2,1,08,65,40,083,46,66,17,308,,67,07,344,39,68,22,228,45*75",
    "$GPRMC,081836.75,A,3751.65,S,14507.36,E,000.0,360.05,130998,011.35,W,A*62",
    "$GPVTG,054.705,T,034.405,M,005.5005,N,010.2005,K,E*25",
    ("$PUBX,00,081350.00,4717.113210,N,00833.915187,E,546.5895,RK,2.15,2.05,0.0075,77.525,-0.0075,3,0.925,1.195,0.775,"
     "9,1*5F"),
};

std::vector<std::string> readCorpus() {
  const char* const lpSetting = std::getenv("NFW_CORPUS");
  const std::filesystem::path lFolder = lpSetting != nullptr ? lpSetting : NFW_SOURCE_DIR "/../shared/nmea";
  std::vector<std::filesystem::path> lFiles;
  std::error_code lError;
  for (const auto& lEntry : std::filesystem::directory_iterator(lFolder, lError)) {
    if (lEntry.path().extension() == ".log") lFiles.push_back(lEntry.path());
  }
  std::sort(lFiles.begin(), lFiles.end());
  std::vector<std::string> lLines;
  for (const auto& lFile : lFiles) {
    std::ifstream lStream(lFile, std::ios::binary);
    for (std::string lLine; std::getline(lStream, lLine);) lLines.push_back(lLine);
  }
  return lLines;
}

unsigned long long digestOfRecords(Converter& nConverter, const std::vector<std::string>& nSentences) {
  unsigned long long lDigest = binarylog::digest({});
  for (const std::string& lSentence : nSentences) lDigest = binarylog::digest(encode(nConverter, lSentence), lDigest);
  return lDigest;
}

/// A sentence beside what came back of it, compared field by field up to the decimals that a record has.
class Comparison {
 public:
  Comparison(const std::string& nBefore, const std::string& nAfter) : mBefore(nBefore), mAfter(nAfter) {}

  bool run() {
    switch (NmeaDataParser::analyzeNmeaSentenceType(mBefore.c_str(), static_cast<unsigned int>(mBefore.size()))) {
      case nfw::NMEA_GGA:
        return parse<nfw::GgaSentence>(&NmeaDataParser::parseGgaSentence);
      case nfw::NMEA_GLL:
        return parse<nfw::GllSentence>(&NmeaDataParser::parseGllSentence);
      case nfw::NMEA_GSA:
        return parse<nfw::GsaSentence>(&NmeaDataParser::parseGsaSentence);
      case nfw::NMEA_GSV:
        return parse<nfw::GsvSentence>(&NmeaDataParser::parseGsvSentence);
      case nfw::NMEA_RMC:
        return parse<nfw::RmcSentence>(&NmeaDataParser::parseRmcSentence);
      case nfw::NMEA_VTG:
        return parse<nfw::VtgSentence>(&NmeaDataParser::parseVtgSentence);
      default:
        return parse<nfw::PubxSentence>(&NmeaDataParser::parsePubxSentence);
    }
  }

 private:
  /// @return false for a sentence that does not parse itself
  template <class Record>
  bool parse(bool (*npParse)(const char*, unsigned int, Record*)) {
    Record lBefore, lAfter;
    if (!npParse(mBefore.c_str(), 1, &lBefore)) return false;
    const bool lIsParsed = npParse(mAfter.c_str(), 1, &lAfter);
    if (isException(lBefore)) return true;
    EXPECT_TRUE(lIsParsed) << mBefore << mAfter;
    compare(lBefore, lAfter);
    return true;
  }

  template <class Record>
  static bool isException(const Record&) {
    return false;
  }
  // Exception: a count of satellites above 15 spills into the quality.
  static bool isException(const nfw::GgaSentence& nRecord) { return nRecord.satelliteCount > 15; }
  // Exception: with no satellite in view the record ends, and the empty blocks of such a message are not stored.
  static bool isException(const nfw::GsvSentence& nRecord) { return nRecord.satelliteView == 0; }

  void compare(const nfw::GgaSentence& a, const nfw::GgaSentence& b) {
    same(a.satelliteType, b.satelliteType);
    time(1, b.utcTime);
    coordinate(a.latitude, b.latitude);
    coordinate(a.longitude, b.longitude);
    same(a.quality, b.quality);
    same(a.satelliteCount, b.satelliteCount);
    close(a.hdop, b.hdop, 100);
    close(a.altitude, b.altitude, 10);
    close(a.geoidSeparation, b.geoidSeparation, 10);
    same(a.dgpsDataAge, b.dgpsDataAge);
    same(a.dgpsStationId, b.dgpsStationId);
  }
  void compare(const nfw::GllSentence& a, const nfw::GllSentence& b) {
    same(a.satelliteType, b.satelliteType);
    time(5, b.utcTime);
    coordinate(a.latitude, b.latitude);
    coordinate(a.longitude, b.longitude);
    same(a.status, b.status);
    same(a.mode, b.mode);
  }
  void compare(const nfw::GsaSentence& a, const nfw::GsaSentence& b) {
    same(a.satelliteType, b.satelliteType);
    same(a.positioningType, b.positioningType);
    same(a.mode, b.mode);
    for (unsigned int i = 0; i < nfw::GsaSentence::SATELLITE_NUM; ++i) same(a.satelliteId[i], b.satelliteId[i]);
    close(a.pdop, b.pdop, 100);
    close(a.hdop, b.hdop, 100);
    close(a.vdop, b.vdop, 100);
  }
  // Exception that needs no line here: of the last message of a group the parser reads no satellites.
  void compare(const nfw::GsvSentence& a, const nfw::GsvSentence& b) {
    same(a.satelliteType, b.satelliteType);
    same(a.messageCount, b.messageCount);
    same(a.messageNumber, b.messageNumber);
    same(a.satelliteView, b.satelliteView);
    for (unsigned int i = 0; i < nfw::GsvSentence::SATELLITE_NUM; ++i) {
      same(a.satellite[i].valid, b.satellite[i].valid);
      same(a.satellite[i].satelliteId, b.satellite[i].satelliteId);
      same(a.satellite[i].elevation, b.satellite[i].elevation);
      same(a.satellite[i].azimuth, b.satellite[i].azimuth);
      same(a.satellite[i].snr, b.satellite[i].snr);
    }
  }
  void compare(const nfw::RmcSentence& a, const nfw::RmcSentence& b) {
    same(a.satelliteType, b.satelliteType);
    time(1, b.utcTime);
    same(a.status, b.status);
    coordinate(a.latitude, b.latitude);
    coordinate(a.longitude, b.longitude);
    close(a.speed, b.speed, 1000);
    close(a.direction, b.direction, 100);
    same(a.date.year, b.date.year);
    same(a.date.month, b.date.month);
    same(a.date.day, b.date.day);
    close(a.magneticDeclination, b.magneticDeclination, 10);
    same(a.mode, b.mode);
  }
  void compare(const nfw::VtgSentence& a, const nfw::VtgSentence& b) {
    same(a.satelliteType, b.satelliteType);
    close(a.directionForTrueNorth, b.directionForTrueNorth, 100);
    close(a.directionForMagneticNorth, b.directionForMagneticNorth, 100);
    close(a.speedKnot, b.speedKnot, 1000);
    close(a.speedKmh, b.speedKmh, 1000);
    same(a.mode, b.mode);
  }
  void compare(const nfw::PubxSentence& a, const nfw::PubxSentence& b) {
    same(a.messageId, b.messageId);
    time(2, b.utcTime);
    coordinate(a.latitude, b.latitude);
    coordinate(a.longitude, b.longitude);
    close(a.altitudeRef, b.altitudeRef, 1000);
    same(a.status, b.status);
    close(a.hacc, b.hacc, 10);
    close(a.vacc, b.vacc, 10);
    close(a.speed, b.speed, 1000);
    close(a.direction, b.direction, 100);
    close(a.vvel, b.vvel, 1000);
    same(a.dgpsDataAge, b.dgpsDataAge);
    close(a.hdop, b.hdop, 100);
    close(a.vdop, b.vdop, 100);
    close(a.tdop, b.tdop, 100);
    same(a.satelliteCount, b.satelliteCount);
    same(a.drMode, b.drMode);
  }

  template <class T>
  void same(const T& a, const T& b) {
    EXPECT_EQ(a, b) << mBefore << mAfter;
  }
  void close(double a, double b, double nUnits) { EXPECT_LE(std::abs(a - b), 0.5001 / nUnits) << mBefore << mAfter; }
  // The number of the field: the parser takes the digits behind the point as they stand, and there are three now.
  void time(unsigned int nField, const nfw::GnssSentenceTime& b) {
    size_t lStart = 0;
    for (unsigned int i = 0; i < nField; ++i) lStart = mBefore.find(',', lStart) + 1;
    close(std::strtod(mBefore.c_str() + lStart, nullptr),
          b.hour * 10000.0 + b.minute * 100 + b.second + b.millisecond / 1000.0, 1000);
  }
  // Exception: an empty coordinate comes back as 0 in the north or east.
  void coordinate(const nfw::GnssSentenceCoordinate& a, const nfw::GnssSentenceCoordinate& b) {
    close(a.value, b.value, 100000);
    same(a.degree, b.degree);
    EXPECT_LE(std::abs(a.minute - b.minute), 0.0001001)
        << mBefore << mAfter;  // of which the parser keeps four decimals
    if (a.value != 0 || a.direction != nfw::DIRECTION_NONE) same(a.direction, b.direction);
  }

  const std::string& mBefore;
  const std::string& mAfter;
};

TEST(NmeaBinaryLogDataCorpus, RealSentencesComeBackAsTheyWere) {
  const std::vector<std::string> lSentences = readCorpus();
  if (lSentences.empty()) GTEST_SKIP() << "no folder of real sentences: set NFW_CORPUS to one";
  const seams::CapturedLog lLog;
  nfw::NmeaBinaryLogDataVersion0 lVersion0;
  nfw::NmeaBinaryLogDataVersion1 lVersion1;
  unsigned int lStored = 0, lCompared = 0;
  for (const std::string& lSentence : lSentences) {
    for (Converter* lpVersion : {&lVersion0, static_cast<Converter*>(&lVersion1)}) {
      const Bytes lRecord = encode(*lpVersion, lSentence);
      if (lRecord.empty()) continue;
      ++lStored;
      const std::string lText = decode(*lpVersion, lRecord);
      ASSERT_FALSE(lText.empty()) << lSentence;
      lCompared += Comparison(lSentence, lText).run() ? 1U : 0U;
      if (HasFailure()) return;
    }
  }
  printf("%zu lines, %u records, %u of sentences that parse\n", lSentences.size(), lStored, lCompared);
  EXPECT_LT(lSentences.size() / 2, lCompared);
}

TEST(NmeaBinaryLogDataCorpus, GivesTheSameBytesOnEveryProcessor) {
  const seams::CapturedLog lLog;
  nfw::NmeaBinaryLogDataVersion1 lVersion1;
  EXPECT_EQ(OWN_RECORDS_DIGEST, digestOfRecords(lVersion1, {std::begin(OWN_SENTENCES), std::end(OWN_SENTENCES)}));

  const std::vector<std::string> lCorpus = readCorpus();
  unsigned long long lCorpusDigest = binarylog::digest({});
  for (const std::string& lSentence : lCorpus)
    lCorpusDigest = binarylog::digest(binarylog::bytesOf(lSentence), lCorpusDigest);
  if (lCorpusDigest != KNOWN_CORPUS_DIGEST) GTEST_SKIP() << "not the known folder of sentences: " << lCorpusDigest;
  EXPECT_EQ(KNOWN_CORPUS_RECORDS_DIGEST, digestOfRecords(lVersion1, lCorpus));
}

}  // namespace
