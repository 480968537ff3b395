// Sentences of real receivers in the binary log: their records, and the sentences that those become again.
#include <gtest/gtest.h>

#include "BinaryLog.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "PlatformSeams.h"
#include "Recordings.h"

namespace {

using binarylog::Bytes;
using binarylog::Converter;
using binarylog::decode;
using binarylog::encode;
using Strings = std::vector<std::string>;

/// The same digests have to come out on every processor.
const unsigned long long OWN_RECORDS_DIGEST = 15072235931727400996ULL;
const unsigned long long KNOWN_CORPUS_DIGEST = 7762835336353775705ULL;
const unsigned long long KNOWN_CORPUS_RECORDS_DIGEST = 8601648946356006909ULL;

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

/// Of the records in both versions, and of the sentences that they become again.
unsigned long long digestOfRecords(const Strings& nSentences) {
  nfw::NmeaBinaryLogDataVersion0 lVersion0;
  nfw::NmeaBinaryLogDataVersion1 lVersion1;
  unsigned long long lDigest = binarylog::digest({});
  for (const std::string& lSentence : nSentences) {
    for (Converter* const lpVersion : {&lVersion0, static_cast<Converter*>(&lVersion1)}) {
      const Bytes lRecord = encode(*lpVersion, lSentence);
      lDigest = binarylog::digest(lRecord, lDigest);
      if (lRecord.empty()) continue;
      const std::string lAgain = decode(*lpVersion, lRecord);
      lDigest = binarylog::digest(binarylog::bytesOf(lAgain), lDigest);
      EXPECT_EQ(lRecord, encode(*lpVersion, lAgain)) << lSentence;
    }
  }
  return lDigest;
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
