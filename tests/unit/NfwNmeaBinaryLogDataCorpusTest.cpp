// Sentences of real receivers: what comes back out of the binary log is what went in, to the decimals that it keeps.
#include <gtest/gtest.h>

#include <cmath>

#include "BinaryLog.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "NmeaParserCheck.h"
#include "PlatformSeams.h"
#include "Recordings.h"
#include "Split.h"

namespace {

using binarylog::Bytes;
using binarylog::Converter;
using binarylog::decode;
using binarylog::encode;
using Strings = std::vector<std::string>;

/// The same digests have to come out on every processor.
const unsigned long long OWN_RECORDS_DIGEST = 14984542861201067390ULL;
const unsigned long long KNOWN_CORPUS_DIGEST = 7762835336353775705ULL;
const unsigned long long KNOWN_CORPUS_RECORDS_DIGEST = 8913155848478145079ULL;

const Strings OWN_SENTENCES = {
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

/// The lines of all recordings.
Strings readCorpus() {
  Strings lLines;
  for (const Strings& lRecording : nfwtest::recordings())
    lLines.insert(lLines.end(), lRecording.begin(), lRecording.end());
  return lLines;
}

unsigned long long digestOfRecords(const Strings& nSentences) {
  nfw::NmeaBinaryLogDataVersion1 lVersion1;
  unsigned long long lDigest = binarylog::digest({});
  for (const std::string& lSentence : nSentences) lDigest = binarylog::digest(encode(lVersion1, lSentence), lDigest);
  return lDigest;
}

/// As it was; nothing and zero, or a letter; the same number to the decimals of the record.
bool isSameField(const std::string& nBefore, const std::string& nAfter) {
  if (nBefore == nAfter || (nBefore.empty() && nAfter.size() == 1 && nAfter >= "A")) return true;
  char *lpBeforeEnd = nullptr, *lpAfterEnd = nullptr;
  const double lDifference = std::strtod(nBefore.c_str(), &lpBeforeEnd) - std::strtod(nAfter.c_str(), &lpAfterEnd);
  const size_t lPoint = nAfter.find('.');
  const double lDecimals = lPoint == std::string::npos ? 0 : static_cast<double>(nAfter.size() - lPoint - 1);
  return *lpBeforeEnd == '\0' && *lpAfterEnd == '\0' && std::abs(lDifference) <= 0.5001 * std::pow(10, -lDecimals);
}

bool parses(const std::string& nSentence) {
  bool lIsParsed = false;
  eachParse(nSentence, [&](auto npParse, auto nRecord) { lIsParsed = npParse(nSentence.c_str(), 1, &nRecord); });
  return lIsParsed;
}

void expectSameFields(const std::string& nBefore, const std::string& nAfter) {
  const Strings lBefore = nfwtest::split(nBefore.substr(0, nBefore.find('*')), ',');
  const Strings lAfter = nfwtest::split(nAfter.substr(0, nAfter.find('*')), ',');
  const bool lIsSpilt = lBefore[0].substr(3) == "GGA" && std::stoi("0" + lBefore[7]) > 15;  // into the quality
  for (size_t i = 0; i < lAfter.size() && i < lBefore.size(); ++i) {
    const bool lIsOfZero = i > 0 && std::atof(lBefore[i - 1].c_str()) == 0 && (lAfter[i] == "N" || lAfter[i] == "E");
    const bool lIsException = lIsOfZero || (lIsSpilt && (i == 6 || i == 7));
    EXPECT_TRUE(lIsException || isSameField(lBefore[i], lAfter[i])) << i << nBefore << nAfter;
  }
}

TEST(NmeaBinaryLogDataCorpus, RealSentencesComeBackAsTheyWere) {
  const Strings lSentences = readCorpus();
  if (lSentences.empty()) GTEST_SKIP() << nfwtest::NO_RECORDINGS;
  const seams::CapturedLog lLog;
  nfw::NmeaBinaryLogDataVersion0 lVersion0;
  nfw::NmeaBinaryLogDataVersion1 lVersion1;
  size_t lStored = 0;
  for (const std::string& lSentence : lSentences) {
    for (Converter* lpVersion : {&lVersion0, static_cast<Converter*>(&lVersion1)}) {
      const Bytes lRecord = encode(*lpVersion, lSentence);
      if (lRecord.empty()) continue;
      ++lStored;
      const std::string lText = decode(*lpVersion, lRecord);
      if (parses(lSentence)) expectSameFields(lSentence, lText);
      EXPECT_EQ(lRecord, encode(*lpVersion, lText)) << lSentence;
      if (HasFailure()) return;
    }
  }
  EXPECT_LT(lSentences.size() / 2, lStored);
}

TEST(NmeaBinaryLogDataCorpus, GivesTheSameBytesOnEveryProcessor) {
  const seams::CapturedLog lLog;
  EXPECT_EQ(OWN_RECORDS_DIGEST, digestOfRecords(OWN_SENTENCES));
  const Strings lCorpus = readCorpus();
  unsigned long long lDigest = binarylog::digest({});
  for (const std::string& lSentence : lCorpus) lDigest = binarylog::digest(binarylog::bytesOf(lSentence), lDigest);
  if (lDigest != KNOWN_CORPUS_DIGEST) GTEST_SKIP() << "not the known folder of sentences: " << lDigest;
  EXPECT_EQ(KNOWN_CORPUS_RECORDS_DIGEST, digestOfRecords(lCorpus));
}

}  // namespace
