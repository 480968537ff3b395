#include "Selection.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "RecordText.h"
#include "RecordType.h"

namespace logtool {

namespace {

const int64_t DAY_MS = 24 * 3600 * 1000;

bool parseOffset(const std::string& nText, Moment* npMoment) {
  struct Unit {
    const char* mpName;
    double mMs;
  };
  static const Unit UNITS[] = {{"", 1000.0}, {"s", 1000.0}, {"ms", 1.0}, {"m", 60000.0}, {"h", 3600000.0}};
  const size_t lEnd = std::min(nText.find_first_not_of("0123456789."), nText.size());
  double lNumber = 0.0;
  if (lEnd == 0 || lEnd > 12 || sscanf(nText.substr(0, lEnd).c_str(), "%lf", &lNumber) != 1) return false;
  for (const Unit& lUnit : UNITS) {
    if (nText.substr(lEnd) != lUnit.mpName) continue;
    *npMoment = {Moment::OFFSET, std::llround(lNumber * lUnit.mMs)};
    return true;
  }
  return false;
}

// Milliseconds of "hh:mm", "hh:mm:ss", "hh:mm:ss.sss", -1 for anything else.
int64_t timeOfDay(const std::string& nText) {
  unsigned int lHour = 0, lMinute = 0;
  double lSecond = 0.0;
  int lMinuteEnd = 0, lEnd = 0;
  const int lCount = sscanf(nText.c_str(), "%2u:%2u%n:%lf%n", &lHour, &lMinute, &lMinuteEnd, &lSecond, &lEnd);
  const size_t lUsed = static_cast<size_t>(lCount == 3 ? lEnd : lMinuteEnd);
  const bool lIsRight = lCount >= 2 && lUsed == nText.size() && lHour < 24 && lMinute < 60 && lSecond >= 0.0;
  if (!lIsRight || lSecond >= 60.0) return -1;
  return (lHour * 60 + lMinute) * 60000 + std::llround(lSecond * 1000.0);
}

}  // namespace

bool parseMoment(const std::string& nText, Moment* npMoment) {
  if (parseOffset(nText, npMoment)) return true;
  int lYear = 0;
  unsigned int lMonth = 0, lDay = 0;
  int lDateEnd = 0;
  sscanf(nText.c_str(), "%4d%*1[-/]%2u%*1[-/]%2u%*1[ T]%n", &lYear, &lMonth, &lDay, &lDateEnd);
  if (lDateEnd > 0 && (lYear < 1970 || lMonth < 1 || lMonth > 12 || lDay < 1 || lDay > 31)) return false;
  const int64_t lTime = timeOfDay(nText.substr(static_cast<size_t>(lDateEnd)));
  if (lTime < 0) return false;
  *npMoment = {Moment::TIME_OF_DAY, lTime};
  if (lDateEnd > 0) *npMoment = {Moment::DATE_AND_TIME, tool::daysSince1970(lYear, lMonth, lDay) * DAY_MS + lTime};
  return true;
}

Selector::Selector(const Selection& nSelection)
    : mSelection(nSelection),
      mAsksClock(nSelection.mFrom.mKind > Moment::OFFSET || nSelection.mTo.mKind > Moment::OFFSET),
      mSeen(nSelection.mTypes.size(), false) {}

bool Selector::takes(const tool::Record& nRecord) {
  mTimeline.step(nRecord.mTick);
  if (mAsksClock || nRecord.mKind == tool::SENSOR_RECORD) mTime = mClock.timeOf(nRecord);
  const bool lIsOfType = mSelection.mTypes.empty() || isOfType(nRecord);
  return isInTime() && lIsOfType && isListed(nRecord);
}

bool Selector::isInTime() {
  if (mAsksClock) {
    if (mTime == NO_TIME) return false;
    if (mFirstTime == NO_TIME) {
      mFirstTime = mTime;
      mIsTurnedRound = mSelection.mFrom.mKind == Moment::TIME_OF_DAY && mSelection.mTo.mKind == Moment::TIME_OF_DAY &&
                       timeOf(mSelection.mTo) <= timeOf(mSelection.mFrom);
    }
  }
  const bool lIsBefore = mSelection.mFrom.mKind != Moment::NONE && !isAtOrAfter(mSelection.mFrom);
  const bool lIsBehind = mSelection.mTo.mKind != Moment::NONE && isAtOrAfter(mSelection.mTo);
  mIsOver = lIsBehind && mSelection.mTo.mKind == Moment::OFFSET;  // a clock may be set back
  return !lIsBefore && !lIsBehind;
}

bool Selector::isAtOrAfter(const Moment& nMoment) const {
  if (nMoment.mKind == Moment::OFFSET) return static_cast<int64_t>(mTimeline.getElapsedMs()) >= nMoment.mMs;
  return mTime >= (nMoment.mKind == Moment::DATE_AND_TIME ? nMoment.mMs : timeOf(nMoment));
}

// More than half a day before the begin: the next day is meant.
int64_t Selector::timeOf(const Moment& nTimeOfDay) const {
  const int64_t lTime = mFirstTime - mFirstTime % DAY_MS + nTimeOfDay.mMs;
  return lTime < mFirstTime - DAY_MS / 2 ? lTime + DAY_MS : lTime;
}

bool Selector::isListed(const tool::Record& nRecord) const {
  const auto& lIds = mSelection.mIds;
  return lIds.empty() || std::find(lIds.begin(), lIds.end(), nRecord.mId) != lIds.end();
}

bool Selector::isOfType(const tool::Record& nRecord) {
  const auto& lTypes = mSelection.mTypes;
  const auto lFound = std::find(lTypes.begin(), lTypes.end(), recordType(nRecord));
  if (lFound == lTypes.end()) return false;
  mSeen[static_cast<size_t>(lFound - lTypes.begin())] = true;
  return true;
}

}  // namespace logtool
