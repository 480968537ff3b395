#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "RecordFields.h"

using namespace nfw;

namespace {

template <class Record>
size_t sizeOfFields(const Record& nRecord) {
  size_t lSize = 0;
  eachField(nRecord, [&](auto& nField) { return lSize += sizeof(nField), true; });
  return lSize;
}

std::vector<unsigned char> bytesOf(const NmeaSentence& nRecord) {
  std::vector<unsigned char> lBytes;
  eachField(nRecord, [&](auto& nField) {
    const auto* const lpFirst = reinterpret_cast<const unsigned char*>(&nField);
    lBytes.insert(lBytes.end(), lpFirst, lpFirst + sizeof(nField));
    return true;
  });
  return lBytes;
}

TEST(RecordFields, SizesAreThoseOfTheMessages) {
  EXPECT_EQ(100u, sizeOfFields(GgaSentence()));
  EXPECT_EQ(65u, sizeOfFields(GllSentence()));
  EXPECT_EQ(220u, sizeOfFields(GsaSentence()));
  EXPECT_EQ(1552u, sizeOfFields(GsvSentence()));
  EXPECT_EQ(97u, sizeOfFields(RmcSentence()));
  EXPECT_EQ(40u, sizeOfFields(VtgSentence()));
  EXPECT_EQ(24u, sizeOfFields(ZdaSentence()));
  EXPECT_EQ(145u, sizeOfFields(PubxSentence()));
  EXPECT_EQ(2074u, sizeOfFields(NmeaSentence()));
}

TEST(RecordFields, DefaultRecordIsAllZeroAndACopyKeepsEveryField) {
  NmeaSentence lRecord;
  EXPECT_EQ(std::vector<unsigned char>(2074), bytesOf(lRecord));
  unsigned char lNext = 1;
  eachField(lRecord, [&](auto& nField) {  // any bytes will do but for flags
    std::memset(&nField, std::is_same_v<decltype(nField), bool&> ? 1 : lNext++ % 100, sizeof(nField));
    return true;
  });
  const NmeaSentence lCopy(lRecord);
  EXPECT_EQ(bytesOf(lRecord), bytesOf(lCopy));
  EXPECT_EQ(lRecord.gsv.satellite[127].azimuth, lCopy.gsv.satellite[127].azimuth);
}

TEST(RecordFields, StopsAtTheFirstVisitThatFails) {
  GsvSentence lRecord;
  int lVisits = 0;
  EXPECT_FALSE(eachField(lRecord, [&](auto&) { return ++lVisits < 7; }));
  EXPECT_EQ(7, lVisits);
}

}  // namespace
