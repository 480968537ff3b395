#include <gtest/gtest.h>

#include <vector>

#include "RecordBytes.h"

using namespace nfw;

namespace {

TEST(RecordFields, SizesAreThoseOfTheMessages) {
  const size_t SIZES[] = {recordBytes(GgaSentence()).size(), recordBytes(GllSentence()).size(),
                          recordBytes(GsaSentence()).size(), recordBytes(GsvSentence()).size(),
                          recordBytes(RmcSentence()).size(), recordBytes(VtgSentence()).size(),
                          recordBytes(ZdaSentence()).size(), recordBytes(PubxSentence()).size()};
  EXPECT_EQ((std::vector<size_t>{100, 65, 220, 1552, 97, 40, 24, 145}),
            std::vector<size_t>(std::begin(SIZES), std::end(SIZES)));
}

TEST(RecordFields, DefaultRecordIsAllZeroAndACopyKeepsEveryField) {
  NmeaSentence lRecord;
  EXPECT_EQ(std::string(2074, '\0'), recordBytes(lRecord));
  unsigned char lNext = 1;
  eachField(lRecord, [&](auto& nField) {  // any bytes will do but for flags
    std::memset(&nField, std::is_same_v<decltype(nField), bool&> ? 1 : lNext++ % 100, sizeof(nField));
    return true;
  });
  const NmeaSentence lCopy(lRecord);
  EXPECT_EQ(recordBytes(lRecord), recordBytes(lCopy));
  EXPECT_EQ(lRecord.gsv.satellite[127].azimuth, lCopy.gsv.satellite[127].azimuth);
}

TEST(RecordFields, StopsAtTheFirstVisitThatFails) {
  GsvSentence lRecord;
  int lVisits = 0;
  EXPECT_FALSE(eachField(lRecord, [&](auto&) { return ++lVisits < 7; }));
  EXPECT_EQ(7, lVisits);
}

}  // namespace
