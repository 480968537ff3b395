#include "WallClock.h"

#include <fmt/format.h>

#include <cstring>

#include "RecordText.h"
#include "SensorContent.h"

namespace logtool {

namespace {

const size_t MINUTE_SIZE = 16;  // of "YYYY/MM/DD hh:mm"

struct Civil {
  int64_t mYear, mMonth, mDay, mHour, mMinute, mSecond, mMs;
};

Civil civil(int64_t nMs) {
  // Years begin in March here, so that the leap day is the last of its year; 400 years are 146097 days.
  const int64_t lShifted = nMs / 86400000 + 719468;
  const int64_t lDayOfEra = lShifted % 146097;
  const int64_t lYearOfEra = (lDayOfEra - lDayOfEra / 1460 + lDayOfEra / 36524 - lDayOfEra / 146096) / 365;
  const int64_t lDayOfYear = lDayOfEra - (365 * lYearOfEra + lYearOfEra / 4 - lYearOfEra / 100);
  const int64_t lMarchMonth = (5 * lDayOfYear + 2) / 153;
  const int64_t lMonth = lMarchMonth < 10 ? lMarchMonth + 3 : lMarchMonth - 9;
  const int64_t lYear = lYearOfEra + lShifted / 146097 * 400 + (lMonth <= 2 ? 1 : 0);
  const int64_t lOfDay = nMs % 86400000;
  return {lYear,
          lMonth,
          lDayOfYear - (153 * lMarchMonth + 2) / 5 + 1,
          lOfDay / 3600000,
          lOfDay / 60000 % 60,
          lOfDay / 1000 % 60,
          lOfDay % 1000};
}

}  // namespace

int64_t WallClock::timeOf(const tool::Record& nRecord) {
  return nRecord.mKind == tool::LOG_RECORD ? stampOf(nRecord.mStamp) : utcOf(nRecord);
}

// Most records fall into the minute of the one before.
int64_t WallClock::stampOf(std::string_view nStamp) {
  if (memcmp(nStamp.data(), mMinute, MINUTE_SIZE) != 0) {
    const int64_t lMs = tool::stampMs(nStamp);
    if (lMs < 0) return NO_TIME;
    memcpy(mMinute, nStamp.data(), MINUTE_SIZE);
    mMinuteMs = lMs - lMs % 60000;
  }
  const char* const lpSecond = nStamp.data() + MINUTE_SIZE + 1;
  const int lSecond = (lpSecond[0] - '0') * 10 + lpSecond[1] - '0';
  const int lMs = ((lpSecond[3] - '0') * 10 + lpSecond[4] - '0') * 10 + lpSecond[5] - '0';
  return mMinuteMs + lSecond * 1000 + lMs;
}

int64_t WallClock::utcOf(const tool::Record& nRecord) {
  const int64_t lUtc = tool::sensorUtcMs(nRecord.mId, nRecord.mData);
  if (lUtc >= 0) {
    mUtc = lUtc;
    mTick = nRecord.mTick;
  }
  return mUtc < 0 ? NO_TIME : mUtc + static_cast<int32_t>(nRecord.mTick - mTick);
}

std::string timeText(int64_t nMs) {
  if (nMs < 0) return "-";
  const Civil lTime = civil(nMs);
  return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:03}", lTime.mYear, lTime.mMonth, lTime.mDay, lTime.mHour,
                     lTime.mMinute, lTime.mSecond, lTime.mMs);
}

std::string utcText(int64_t nMs) {
  std::string lText = timeText(nMs) + "Z";
  lText[10] = 'T';
  return lText;
}

std::string durationText(uint64_t nMs) {
  return fmt::format("{}:{:02}:{:02}.{:03}", nMs / 3600000, nMs / 60000 % 60, nMs / 1000 % 60, nMs % 1000);
}

}  // namespace logtool
