#include "utl/Time.h"

#include <ctime>

#include "FixedTime.h"
#include "SeamState.h"

namespace utl {

namespace {

static_assert(sizeof(std::time_t) == 8, "dates beyond 2038 on every target");

/// The second that a thread divided last: a log asks for the same one again and again.
struct Divided {
  bool mIsFixed;
  long mZone;  // a changed zone is seen at once
  long long mSeconds;
  std::tm mFields;
};

thread_local Divided gDivided = {false, 0, -1, {}};

// Never localtime(): it is not safe among threads and looks for a changed zone file on each call.
const std::tm* divide(long long nSeconds) {
  const bool lIsFixed = seams::isTimeFixed();
  if (gDivided.mSeconds == nSeconds && gDivided.mIsFixed == lIsFixed && gDivided.mZone == ::timezone) {
    return &gDivided.mFields;
  }
  const std::time_t lSeconds = nSeconds;
  gDivided.mSeconds = -1;
  if ((lIsFixed ? gmtime_r : localtime_r)(&lSeconds, &gDivided.mFields) == nullptr) return nullptr;
  gDivided.mIsFixed = lIsFixed;
  gDivided.mZone = ::timezone;
  gDivided.mSeconds = nSeconds;
  return &gDivided.mFields;
}

}  // namespace

bool Time::get(unsigned int* npYear, unsigned int* npMonth, unsigned int* npDay, unsigned int* npHour,
               unsigned int* npMinute, unsigned int* npSecond, unsigned int* npMillisecond) const {
  if (mSeconds < 0 || seams::fails(seams::LOCAL_TIME_FIELDS)) return false;
  const std::tm* const lpFields = divide(mSeconds);
  if (lpFields == nullptr) return false;
  *npYear = static_cast<unsigned int>(lpFields->tm_year + 1900);
  *npMonth = static_cast<unsigned int>(lpFields->tm_mon + 1);
  *npDay = static_cast<unsigned int>(lpFields->tm_mday);
  *npHour = static_cast<unsigned int>(lpFields->tm_hour);
  *npMinute = static_cast<unsigned int>(lpFields->tm_min);
  *npSecond = static_cast<unsigned int>(lpFields->tm_sec);
  *npMillisecond = mMillisecond;
  return true;
}

bool getLocalTime(Time* npTime) {
  if (npTime == nullptr || seams::fails(seams::LOCAL_TIME)) return false;
  if (seams::fixedTime(&npTime->mSeconds, &npTime->mMillisecond)) return true;
  timespec lNow;
  if (clock_gettime(CLOCK_REALTIME, &lNow) != 0 || lNow.tv_sec < 0) return false;
  npTime->mSeconds = lNow.tv_sec;
  npTime->mMillisecond = static_cast<unsigned int>(lNow.tv_nsec / 1000000);
  return true;
}

}  // namespace utl
