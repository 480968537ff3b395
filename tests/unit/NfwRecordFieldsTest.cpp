#include <gtest/gtest.h>

#include "RecordBytes.h"

using namespace nfw;

namespace {

TEST(RecordFields, ARecordIsZeroInEveryByteOfItsMessage) {
  EXPECT_EQ(std::string(2074, '\0'), recordBytes(NmeaSentence()));
  EXPECT_EQ(std::string(24, '\0'), recordBytes(ZdaSentence()));
  EXPECT_EQ(std::string(145, '\0'), recordBytes(PubxSentence()));
}

TEST(RecordFields, StopsAtTheFirstVisitThatFails) {
  GsvSentence lRecord;
  int lVisits = 0;
  EXPECT_FALSE(eachField(lRecord, [&](auto&) { return ++lVisits < 7; }));
  EXPECT_EQ(7, lVisits);
}

}  // namespace
