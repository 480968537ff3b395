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

/// Which of the words the test holds for; true when there is one.
template <class Test>
bool note(const std::vector<std::string>& nWords, std::vector<bool>* npSeen, Test nTest) {
  bool lIsFound = false;
  for (size_t i = 0; i < nWords.size(); ++i) {
    if (!nTest(nWords[i])) continue;
    lIsFound = true;
    (*npSeen)[i] = true;
  }
  return lIsFound;
}

/// Looks for texts in the sentences of a record.
class Finder : public tool::SentenceSink {
 public:
  Finder(const std::vector<std::string>& nTexts, std::vector<bool>* npSeen) : mTexts(nTexts), mpSeen(npSeen) {}
  bool hasFound() const { return mHasFound; }

  bool look(std::string_view nData) {
    return note(mTexts, mpSeen, [&](const auto& nText) { return nData.find(nText) != std::string_view::npos; });
  }
  bool onSentence(std::string_view nSentence) override {
    mHasFound = look(nSentence) || mHasFound;
    return true;
  }

 private:
  const std::vector<std::string>& mTexts;
  std::vector<bool>* const mpSeen;
  bool mHasFound = false;
};

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
      mTakesAll(nSelection.isAll()),
      mSeen(nSelection) {
  if (!nSelection.mTexts.empty()) mSentences = std::make_unique<Sentences>();
}

bool Selector::takes(const tool::Record& nRecord) {
  mTimeline.step(nRecord.mTick);
  if (mAsksClock || nRecord.mKind == tool::SENSOR_RECORD) mTime = mClock.timeOf(nRecord);
  return mTakesAll || isChosen(nRecord);
}

bool Selector::isChosen(const tool::Record& nRecord) {
  const bool lIsOfType = isOfType(nRecord);
  return isInTime() && lIsOfType && isListed(nRecord) && (mSelection.mTexts.empty() || hasText(nRecord));
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
  const auto lHas = [&](const std::vector<int>& nIds) {
    return std::find(nIds.begin(), nIds.end(), nRecord.mId) != nIds.end();
  };
  return (mSelection.mIds.empty() || lHas(mSelection.mIds)) && !lHas(mSelection.mExcludedIds);
}

bool Selector::isOfType(const tool::Record& nRecord) {
  const Selection& lAsked = mSelection;
  if (lAsked.mTypes.empty() && lAsked.mExcludedTypes.empty()) return true;
  const std::string_view lType = recordType(nRecord);
  const bool lIsAsked = note(lAsked.mTypes, &mSeen.mTypes, [&](const std::string& nType) { return nType == lType; });
  return !note(lAsked.mExcludedTypes, &mSeen.mExcludedTypes, [&](const auto& nType) { return nType == lType; }) &&
         (lIsAsked || lAsked.mTypes.empty());
}

bool Selector::hasText(const tool::Record& nRecord) {
  Finder lFinder(mSelection.mTexts, &mSeen.mTexts);
  if (nRecord.mKind == tool::LOG_RECORD) return lFinder.look(nRecord.mData);
  mSentences->read(nRecord, lFinder);
  return lFinder.hasFound();
}

}  // namespace logtool
