#include <gtest/gtest.h>

#include <vector>

#include "Pacer.h"
#include "SentenceTime.h"

namespace {

using namespace drive;

TEST(SentenceTime, readsTheTimeWhereItStands) {
  struct Case {
    const char* mpSentence;
    int64_t mTime;
  };
  const Case CASES[] = {
      {"$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47", 45319000},
      {"$GNRMC,000000.000,A", 0},
      {"$GPZDA,235959.99,31,12,2026,00,00*00", 86399990},
      {"$GPGLL,4916.45,N,12311.12,W,225444.5,A,A*00", 82484500},
      {"$PUBX,00,081350.05,4717.1,N*00", 29630050},
      {"$PUBX,04,081350.00,1*00", -1},
      {"$GPVTG,054.7,T,034.4,M*00", -1},
      {"$GPGGA,,4807.038,N*00", -1},
      {"$GPGGA,12a519*00", -1},
      {"$GPGGA,12351*00", -1},
      {"$GPGGA,240000*00", -1},
      {"$GPGGA*00", -1},
      {"$GPGLL,4916.45*00", -1},
      {"$GGA,123519*00", -1},
      {"", -1},
  };
  for (const Case& lCase : CASES) EXPECT_EQ(tool::sentenceTime(lCase.mpSentence), lCase.mTime) << lCase.mpSentence;
}

TEST(Pacer, followsTheTimesOfTheSentences) {
  struct Case {
    const char* mpName;
    std::vector<int64_t> mTimes;
    std::vector<int64_t> mOffsets;
  };
  const int64_t lMidnight = tool::MS_PER_DAY;
  const Case CASES[] = {
      {"steps", {5000, 5000, 6000, 6100}, {0, 0, 1000, 1100}},
      {"midnight", {lMidnight - 500, 500, 1500}, {0, 1000, 2000}},
      {"a minute is a step", {0, 60000}, {0, 60000}},
      {"more is a break", {0, 60001, 61001}, {0, 1000, 2000}},
      {"a little back is due at once", {5000, 6000, 5000, 4000, 7000}, {0, 1000, 1000, 1000, 2000}},
      {"far back is a break", {50000, 40000, 41000}, {0, 1000, 2000}},
      {"back across midnight is a lag", {500, lMidnight - 500, 1500}, {0, 0, 1000}},
  };
  for (const Case& lCase : CASES) {
    SCOPED_TRACE(lCase.mpName);
    Pacer lPacer;
    std::vector<int64_t> lOffsets;
    for (const int64_t lTime : lCase.mTimes) lOffsets.push_back(lPacer.offset(lTime));
    EXPECT_EQ(lOffsets, lCase.mOffsets);
  }
  EXPECT_EQ(Pacer::realTime(1500, 1.0), 1500000000);
  EXPECT_EQ(Pacer::realTime(1500, 10.0), 150000000);
  EXPECT_EQ(Pacer::realTime(1500, 0.5), 3000000000);
}

}  // namespace
