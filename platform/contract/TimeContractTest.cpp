#include <cstdlib>
#include <ctime>
#include <thread>
#include <vector>

#include "gtest/gtest.h"
#include "utl/Time.h"

namespace {

/// What the fields say in this time zone; -1 without a time.
std::time_t secondOf(const utl::Time& nTime) {
  unsigned int l[7] = {};
  if (!nTime.get(&l[0], &l[1], &l[2], &l[3], &l[4], &l[5], &l[6])) return -1;
  EXPECT_LT(l[6], 1000u);
  const std::vector<int> lSigned(l, l + 6);
  std::tm lFields{};
  lFields.tm_year = lSigned[0] - 1900, lFields.tm_mon = lSigned[1] - 1, lFields.tm_mday = lSigned[2];
  lFields.tm_hour = lSigned[3], lFields.tm_min = lSigned[4], lFields.tm_sec = lSigned[5], lFields.tm_isdst = -1;
  return mktime(&lFields);
}

TEST(TimeContract, IsTheLocalTime) {
  EXPECT_EQ(-1, secondOf(utl::Time())) << "holds none at first";
  EXPECT_FALSE(utl::getLocalTime(nullptr));
  for (const char* const lpZone : {"UTC0", "AAA-05:30", "BBB8"}) {
    setenv("TZ", lpZone, 1);
    tzset();
    utl::Time lTime;
    const std::time_t lBefore = std::time(nullptr);
    // A thread may keep the second that it asked for last: a changed zone is seen by a new one.
    std::thread([&] { EXPECT_TRUE(utl::getLocalTime(&lTime)); }).join();
    EXPECT_LE(lBefore - 1, secondOf(lTime)) << lpZone;  // time() may lag by a clock tick
    EXPECT_GE(std::time(nullptr) + 1, secondOf(lTime)) << lpZone;
  }
  unsetenv("TZ");
  tzset();
}

}  // namespace
