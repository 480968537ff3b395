#include <gtest/gtest.h>

#include <vector>

#include "ReplayTiming.h"

namespace {

using nfw::ReplayTiming;

const int64_t DROPPED = -1;

/// The due ticks of records of these times, each scheduled when it is not dropped.
std::vector<int64_t> dues(ReplayTiming::Rule nRule, uint32_t nStart, const std::vector<uint32_t>& nTimes) {
  ReplayTiming lTiming(nRule);
  std::vector<int64_t> lDues;
  for (int lRound = 0; lRound < 2; ++lRound) {  // a second replay remembers nothing of the first
    lTiming.start(nStart, nTimes[0]);
    lDues.clear();
    for (const uint32_t lTime : nTimes) {
      uint32_t lDue = 0;
      const bool lIsPlayed = lTiming.due(lTime, &lDue);
      if (lIsPlayed) lTiming.scheduled(lTime);
      lDues.push_back(lIsPlayed ? static_cast<int64_t>(lDue) : DROPPED);
    }
  }
  return lDues;
}

TEST(ReplayTimingTest, ARecordIsDueAtItsDistanceFromTheFirst) {
  const struct {
    ReplayTiming::Rule mRule;
    uint32_t mStart;
    std::vector<uint32_t> mTimes;
    std::vector<int64_t> mDues;
  } CASES[] = {
      {ReplayTiming::FIXED, 1000, {500, 500, 600, 550, 499, 700}, {1000, 1000, 1100, 1050, DROPPED, 1200}},
      {ReplayTiming::FIXED, 0xFFFFFFF0u, {10, 40}, {0xFFFFFFF0u, 14}},  // the tick wraps
      {ReplayTiming::FIXED, 1000, {0xFFFFFFF0u, 5}, {1000, DROPPED}},   // the recorded time wrapped
      {ReplayTiming::REBASED, 1000, {500, 600, 600}, {1000, 1100, 1100}},
      // a second recording: one second after the last record of the first, whether it starts above the base or below
      {ReplayTiming::REBASED, 0, {10000, 20000, 15000, 15100}, {0, 10000, 11000, 11100}},
      {ReplayTiming::REBASED, 0, {10000, 20000, 5000, 5000, 5100}, {0, 10000, DROPPED, 11000, 11100}},
      {ReplayTiming::REBASED, 0, {10000, 5000, 4000, 4500}, {0, DROPPED, DROPPED, 1000}},
  };
  for (const auto& lCase : CASES) EXPECT_EQ(lCase.mDues, dues(lCase.mRule, lCase.mStart, lCase.mTimes));
}

TEST(ReplayTimingTest, TheIntervalIsZeroForWhatIsNotAfterNow) {
  const struct {
    uint32_t mDue, mNow, mInterval;
  } CASES[] = {{1000, 999, 1},      {1000, 1000, 0},     {1000, 1001, 0},
               {5, 0xFFFFFFFEu, 7}, {0xFFFFFFFEu, 5, 0}, {0x80000000u, 1, 0x7FFFFFFFu},
               {0x80000001u, 1, 0}};
  for (const auto& lCase : CASES) EXPECT_EQ(lCase.mInterval, ReplayTiming::interval(lCase.mDue, lCase.mNow));
}

}  // namespace
