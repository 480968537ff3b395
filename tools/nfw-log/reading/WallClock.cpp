#include "WallClock.h"

#include <cstring>

#include "CivilTime.h"
#include "DecimalText.h"
#include "Format.h"
#include "RecordText.h"
#include "SensorContent.h"

namespace logtool {

namespace {

const size_t MINUTE_SIZE = 16;  // of "YYYY/MM/DD hh:mm"

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
  const struct {
    int mValue, mDigits;
    char mBehind;
  } PARTS[] = {{lTime.mYear, 4, '-'},   {lTime.mMonth, 2, '-'},  {lTime.mDay, 2, ' '},         {lTime.mHour, 2, ':'},
               {lTime.mMinute, 2, ':'}, {lTime.mSecond, 2, '.'}, {lTime.mMillisecond, 3, '\0'}};
  std::string lText;
  lText.reserve(24);
  for (const auto& lPart : PARTS) {
    tool::appendDigits(static_cast<uint64_t>(lPart.mValue), lPart.mDigits, &lText);
    if (lPart.mBehind != '\0') lText += lPart.mBehind;
  }
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
