#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Sentences.h"
#include "Timeline.h"
#include "WallClock.h"

namespace logtool {

/// A point in a recording, as a user gives it.
struct Moment {
  enum Kind { NONE, OFFSET, TIME_OF_DAY, DATE_AND_TIME };
  Kind mKind = NONE;
  int64_t mMs = 0;
};

/// "90", "90s", "250ms", "1.5m", "2h": from the recording's begin. "08:15" and "08:15:30.5": the time of day, of the
/// first day unless the recording runs past midnight. "2026-01-31 08:15:30", also with "T" or slashes.
bool parseMoment(const std::string& nText, Moment* npMoment);

/// Which records a command is about; empty lists stand for all.
struct Selection {
  std::vector<int> mIds;
  std::vector<std::string> mTypes;
  std::vector<int> mExcludedIds;
  std::vector<std::string> mExcludedTypes;
  std::vector<std::string> mTexts;  ///< one of which is in the record's text
  Moment mFrom, mTo;                ///< from the first to before the second
  int64_t mLastMs = -1;             ///< instead of both: so much before the end, which Run finds; -1 without

  bool isAll() const {
    const bool lHasTimes = mFrom.mKind != Moment::NONE || mTo.mKind != Moment::NONE;
    return mIds.empty() && mTypes.empty() && mExcludedIds.empty() && mExcludedTypes.empty() && mTexts.empty() &&
           !lHasTimes;
  }
};

/// Which of what a selection names a recording had, by their indices.
struct Seen {
  explicit Seen(const Selection& nSelection)
      : mTypes(nSelection.mTypes.size()),
        mExcludedTypes(nSelection.mExcludedTypes.size()),
        mTexts(nSelection.mTexts.size()) {}
  std::vector<bool> mTypes, mExcludedTypes;  ///< in any record
  std::vector<bool> mTexts;                  ///< in one that is selected otherwise
};

/// Judges the records of one recording, all of them in their order.
class Selector {
 public:
  explicit Selector(const Selection& nSelection);

  bool takes(const tool::Record& nRecord);
  /// No later record can be taken.
  bool isOver() const { return mIsOver; }

  const Seen& getSeen() const { return mSeen; }
  /// The times of day that bound the selection are turned round: nothing can lie between them.
  bool isTurnedRound() const { return mIsTurnedRound; }

  const Timeline& getTimeline() const { return mTimeline; }
  /// By the recording's clock, which has seen the records that were not taken, too; NO_TIME while it is not known.
  int64_t timeOf(const tool::Record& nRecord) { return mClock.timeOf(nRecord); }

 private:
  bool isInTime();
  bool isChosen(const tool::Record& nRecord);
  bool isAtOrAfter(const Moment& nMoment) const;
  bool isListed(const tool::Record& nRecord) const;
  bool isOfType(const tool::Record& nRecord);
  bool hasText(const tool::Record& nRecord);
  int64_t timeOf(const Moment& nTimeOfDay) const;

  const Selection& mSelection;
  const bool mAsksClock;
  const bool mTakesAll;
  Timeline mTimeline;
  WallClock mClock;
  int64_t mTime = NO_TIME;
  int64_t mFirstTime = NO_TIME;
  bool mIsOver = false;
  bool mIsTurnedRound = false;
  Seen mSeen;
  std::unique_ptr<Sentences> mSentences;  // for records that are not text
};

}  // namespace logtool
