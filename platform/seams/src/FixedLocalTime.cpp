#include <atomic>
#include <ctime>

#include "FixedTime.h"
#include "PlatformSeams.h"

namespace seams {

namespace {

std::atomic<long long> gMilliseconds{-1};  // since 1970 as the local clock counts; -1: not fixed

}  // namespace

bool isTimeFixed() { return gMilliseconds.load() >= 0; }

bool fixedTime(long long* npSeconds, unsigned int* npMillisecond) {
  const long long lMilliseconds = gMilliseconds.load();
  if (lMilliseconds < 0) return false;
  *npSeconds = lMilliseconds / 1000;
  *npMillisecond = static_cast<unsigned int>(lMilliseconds % 1000);
  return true;
}

FixedLocalTime::FixedLocalTime(unsigned int nYear, unsigned int nMonth, unsigned int nDay, unsigned int nHour,
                               unsigned int nMinute, unsigned int nSecond, unsigned int nMillisecond) {
  std::tm lFields{};
  lFields.tm_year = static_cast<int>(nYear) - 1900;
  lFields.tm_mon = static_cast<int>(nMonth) - 1;
  lFields.tm_mday = static_cast<int>(nDay);
  lFields.tm_hour = static_cast<int>(nHour);
  lFields.tm_min = static_cast<int>(nMinute);
  lFields.tm_sec = static_cast<int>(nSecond);
  gMilliseconds = static_cast<long long>(timegm(&lFields)) * 1000 + nMillisecond;
}

FixedLocalTime::~FixedLocalTime() { gMilliseconds = -1; }

}  // namespace seams
