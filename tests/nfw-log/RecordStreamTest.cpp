#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

#include "LogBytes.h"
#include "RecordStream.h"

namespace {

using tool::RecordDamage;

/// What is read of a file in memory: whole, or while it grows by pieces.
struct Reading : tool::RecordDamageListener {
  explicit Reading(const std::string& nBytes, size_t nPiece = std::string::npos) {
    const int lFd = ::memfd_create("bytes", MFD_CLOEXEC);
    tool::RecordStream lStream(lFd, this);
    lStream.setLive(nPiece < nBytes.size());
    tool::Record lRecord;
    for (size_t lAt = 0; lAt < nBytes.size(); lAt += std::min(nPiece, nBytes.size())) {
      const size_t lSize = std::min(nPiece, nBytes.size() - lAt);
      EXPECT_EQ(::pwrite(lFd, nBytes.data() + lAt, lSize, static_cast<off_t>(lAt)), static_cast<ssize_t>(lSize));
      while (lStream.next(&lRecord)) mRecords.emplace_back(lRecord.mBytes);
    }
    mKind = lStream.getKind();
    mIsForeign = lStream.isForeign();
    EXPECT_EQ(lStream.getError(), 0);
    ::close(lFd);
  }
  void onDamage(const RecordDamage& nDamage) override {
    mDamages.push_back(nDamage);
    EXPECT_NE(nDamage.mExpected, "");
    EXPECT_NE(nDamage.mFound, "");
  }
  std::vector<std::string> mRecords;
  std::vector<RecordDamage> mDamages;
  tool::RecordKind mKind;
  bool mIsForeign;
};

using Samples = std::vector<std::string>;

std::string joined(const Samples& nRecords) {
  std::string lAll;
  for (const std::string& lRecord : nRecords) lAll += lRecord;
  return lAll;
}

Samples logSamples() {
  Samples lSamples = {logtest::logRecord(0x7FFFFFFF, 999, std::string(300000, ':'))};
  for (unsigned int i = 0; i < 40; ++i) {
    lSamples.push_back(logtest::logRecord(20, 1000 + i * 10, "$GPTXT," + std::string(i * 7, '\n') + "*00\r\n"));
  }
  lSamples.push_back(logtest::logRecord(0, 2001, ""));
  lSamples.push_back(logtest::logRecord(20, 2002, "last"));
  return lSamples;
}

Samples sensorSamples() {
  Samples lSamples;
  for (unsigned int i = 0; i < 40; ++i) {
    lSamples.push_back(logtest::sensorRecord(0, 1, 1000 + i * 10, "\x06GP" + std::string(17, char('a' + i % 20))));
    lSamples.push_back(logtest::sensorRecord(7, 3, 1001 + i * 10, std::string(i * 29, char(i))));
  }
  return lSamples;
}

class RecordStreamOf : public testing::TestWithParam<bool> {
 protected:
  const Samples mSamples = GetParam() ? logSamples() : sensorSamples();
  const tool::RecordKind mKind = GetParam() ? tool::LOG_RECORD : tool::SENSOR_RECORD;
};
INSTANTIATE_TEST_SUITE_P(BothKinds, RecordStreamOf, testing::Bool());

TEST_P(RecordStreamOf, cutAnywhereItGivesTheWholeRecordsAndTellsOfTheRest) {
  const std::string lAll = joined(mSamples);
  Samples lWhole(mSamples.begin(), mSamples.end() - 3);
  size_t lEnd = joined(lWhole).size();
  for (size_t lCut = lEnd; lCut <= lAll.size(); ++lCut) {
    if (lWhole.size() < mSamples.size() && lCut - lEnd == mSamples[lWhole.size()].size()) {
      lEnd = lCut;
      lWhole.push_back(mSamples[lWhole.size()]);
    }
    const Reading lReading(lAll.substr(0, lCut));
    ASSERT_EQ(lReading.mKind, mKind);
    ASSERT_EQ(lReading.mRecords, lWhole) << lCut;
    ASSERT_EQ(lReading.mDamages.size(), lCut > lEnd ? 1u : 0u) << lCut;
    for (const RecordDamage& lDamage : lReading.mDamages) ASSERT_EQ(lDamage.mOffset + lDamage.mLength, lCut);
  }
}

// What stands at the places of a record is lost with it, and nothing else; before the first one it may be no recording.
TEST_P(RecordStreamOf, goesOnWithTheNextWholeRecord) {
  EXPECT_TRUE(Reading(std::string(600000, '\xFF') + joined(mSamples)).mIsForeign);
  for (const std::string& lNoise :
       {std::string(1, '\0'), std::string("2024/05/06 07:08:09.010 ID"), std::string(600000, '\xFF')}) {
    Samples lSamples = mSamples;
    lSamples.insert(lSamples.begin() + 20, lNoise);
    const size_t lOffset = joined(Samples(mSamples.begin(), mSamples.begin() + 20)).size();
    const Reading lReading(joined(lSamples));
    // The record before the noise is not known to be whole when nothing marks its end.
    ASSERT_FALSE(lReading.mDamages.empty());
    EXPECT_LE(lReading.mDamages[0].mOffset, lOffset);
    EXPECT_GE(lReading.mDamages[0].mOffset + lReading.mDamages[0].mLength, lOffset + lNoise.size());
    EXPECT_GE(lReading.mRecords.size() + 3, mSamples.size());
    EXPECT_EQ(lReading.mRecords.back(), mSamples.back());
  }
}

TEST_P(RecordStreamOf, followsAFileThatGrows) { EXPECT_EQ(Reading(joined(mSamples), 97).mRecords, mSamples); }

TEST(RecordStream, tellsWhatIsDamagedAndWhere) {
  const std::string lFirst = logtest::logRecord(20, 1, "first\n");
  const struct {
    size_t mAt;  // in the second record, of 6 bytes of data
    const char* mpBytes;
    const char *mpExpected, *mpFound;
  } CASES[] = {
      {4, "-", "a record's date, time and id", "\"2024-05/06 07:08:09.010 ID00000014: \""},
      {36, "\x15", "the id \"00000014\" of the text", "the id 00000015"},
      {44, "\x05", "5 bytes of data and a line feed", "\"a\" behind the data"},
      {44, "\x30", "48 bytes of data and a line feed", "00 behind the data"},
      {54, "x", "6 bytes of data and a line feed", "\"x\" behind the data"},
      {47, "\x7F", "a data size of at most 16777167", "2130706438"},
  };
  for (const auto& lCase : CASES) {
    std::string lBytes = lFirst + logtest::logRecord(20, 2, "banana") + logtest::logRecord(20, 3, "third");
    lBytes.replace(lFirst.size() + lCase.mAt, 1, lCase.mpBytes);
    const Reading lReading(lBytes);
    EXPECT_EQ(lReading.mRecords.size(), 2u);
    ASSERT_EQ(lReading.mDamages.size(), 1u);
    EXPECT_EQ(lReading.mDamages[0].mOffset, lFirst.size());
    EXPECT_EQ(lReading.mDamages[0].mLength, 55u);
    EXPECT_EQ(lReading.mDamages[0].mExpected, lCase.mpExpected);
    EXPECT_EQ(lReading.mDamages[0].mFound, lCase.mpFound);
  }
  const Reading lWithin(lFirst + logtest::logRecord(20, 2, logtest::logRecord(20, 3, "in")) + "noise" + lFirst);
  EXPECT_EQ(lWithin.mRecords.size(), 3u);
  EXPECT_EQ(lWithin.mDamages[0].mFound, "another record within");
}

}  // namespace
