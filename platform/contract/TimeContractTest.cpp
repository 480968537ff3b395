#include <cstdlib>
#include <ctime>
#include <string>
#include <thread>

#include "gtest/gtest.h"
#include "utl/Time.h"

namespace {

struct Fields {
  unsigned int mYear = 0, mMonth = 0, mDay = 0, mHour = 0, mMinute = 0, mSecond = 0, mMillisecond = 0;

  bool take(const utl::Time& nTime) {
    return nTime.get(&mYear, &mMonth, &mDay, &mHour, &mMinute, &mSecond, &mMillisecond);
  }
  std::time_t asUtc() const {
    std::tm lFields{};
    lFields.tm_year = static_cast<int>(mYear) - 1900;
    lFields.tm_mon = static_cast<int>(mMonth) - 1;
    lFields.tm_mday = static_cast<int>(mDay);
    lFields.tm_hour = static_cast<int>(mHour);
    lFields.tm_min = static_cast<int>(mMinute);
    lFields.tm_sec = static_cast<int>(mSecond);
    return timegm(&lFields);
  }
};

// While it lives, the process is in another time zone.
class Zone {
 public:
  explicit Zone(const char* npZone) {
    const char* const lpBefore = getenv("TZ");
    mWasSet = lpBefore != nullptr;
    if (mWasSet) mBefore = lpBefore;
    setenv("TZ", npZone, 1);
    tzset();
  }
  ~Zone() {
    mWasSet ? setenv("TZ", mBefore.c_str(), 1) : unsetenv("TZ");
    tzset();
  }

 private:
  bool mWasSet;
  std::string mBefore;
};

TEST(TimeContract, HoldsNoTimeAtFirst) {
  Fields lFields;
  EXPECT_FALSE(lFields.take(utl::Time()));
  EXPECT_FALSE(utl::getLocalTime(nullptr));
}

TEST(TimeContract, IsTheLocalTime) {
  const struct {
    const char* mpZone;
    long mEastOfUtc;  // seconds
  } CASES[] = {{"UTC0", 0}, {"AAA-05:30", 19800}, {"BBB8", -28800}};
  for (const auto& lCase : CASES) {
    Zone lZone(lCase.mpZone);
    utl::Time lTime;
    Fields lFields;
    const std::time_t lBefore = std::time(nullptr);
    // A thread may keep the second that it asked for last: a changed zone is seen by a new one.
    std::thread([&] { EXPECT_TRUE(utl::getLocalTime(&lTime) && lFields.take(lTime)); }).join();
    EXPECT_LE(lBefore - 1, lFields.asUtc() - lCase.mEastOfUtc) << lCase.mpZone;  // time() may lag by a clock tick
    EXPECT_GE(std::time(nullptr) + 1, lFields.asUtc() - lCase.mEastOfUtc) << lCase.mpZone;
    EXPECT_LT(lFields.mMillisecond, 1000u);
  }
}

}  // namespace
