#include "WallClock.h"

#include <cstring>

#include "CivilTime.h"
#include "Format.h"
#include "RecordText.h"
#include "SensorContent.h"

namespace logtool {

namespace {

const size_t MINUTE_SIZE = 16;  // of "YYYY/MM/DD hh:mm"

void put(int nValue, int nDigits, char* npText) {
  for (int i = nDigits - 1; i >= 0; --i) {
    npText[i] = static_cast<char>('0' + nValue % 10);
    nValue /= 10;
  }
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
  const tool::SensorTime lTold = tool::sensorTime(nRecord.mId, nRecord.mData);
  return clockOf(nRecord.mId).tell(lTold.mDay, lTold.mTimeOfDay, nRecord.mTick);
}

UtcClock& WallClock::clockOf(int nId) {
  if (nId == tool::SENSOR_DEAD_RECKONING_ID) return mClocks[1];
  return nId == tool::SENSOR_GNSS_ID || mClocks[0].isSet() ? mClocks[0] : mClocks[1];
}

std::string timeText(int64_t nMs) {
  if (nMs < 0) return "-";
  const tool::CivilTime lTime = tool::civilTime(nMs);
  std::string lText = "0000-00-00 00:00:00.000";
  put(lTime.mYear, 4, lText.data());
  put(lTime.mMonth, 2, &lText[5]);
  put(lTime.mDay, 2, &lText[8]);
  put(lTime.mHour, 2, &lText[11]);
  put(lTime.mMinute, 2, &lText[14]);
  put(lTime.mSecond, 2, &lText[17]);
  put(lTime.mMillisecond, 3, &lText[20]);
  return lText;
}

std::string utcText(int64_t nMs) {
  std::string lText;
  appendUtc(nMs, &lText);
  return lText;
}

void appendUtc(int64_t nMs, std::string* npText) {
  const size_t lBegin = npText->size();
  npText->append(timeText(nMs));
  (*npText)[lBegin + 10] = 'T';
  npText->push_back('Z');
}

std::string durationText(uint64_t nMs) {
  return fmt::format("{}:{:02}:{:02}.{:03}", nMs / 3600000, nMs / 60000 % 60, nMs / 1000 % 60, nMs % 1000);
}

}  // namespace logtool
