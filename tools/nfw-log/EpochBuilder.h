#pragma once

#include <string_view>

#include "SentenceFields.h"
#include "SentenceSink.h"
#include "TrackPoint.h"

namespace logtool {

/// Puts the sentences of one log type id together into points: those of one time belong to one point, those without a
/// time to the one under way. Gives away a point when the next begins, if it has a position. What a field says is taken
/// from the first sentence of the epoch that has it.
class EpochBuilder : public tool::SentenceSink {
 public:
  static constexpr uint64_t BREAK_MS = 10000;  ///< a pause between positions from which on the track does not go on

  /// @param nSink not owned, outlives the builder
  explicit EpochBuilder(TrackSink& nSink) : mSink(nSink) {}

  /// Of the sentences that follow.
  void setPlace(int nId, uint64_t nElapsedMs) {
    mId = nId;
    mElapsed = nElapsedMs;
  }
  bool onSentence(std::string_view nSentence) override;
  void finish() { beginAt(-1); }  ///< no more sentences

 private:
  void beginAt(int64_t nTimeOfDay);
  bool isBreak() const;
  void tellTime();
  void setDate(double nYear, double nMonth, double nDay);
  void setPosition(const SentenceFields& nFields, size_t nLatitudeAt);
  void raiseFix(Fix nFix);
  void takeGga(const SentenceFields& nFields);
  void takeGll(const SentenceFields& nFields);
  void takeGsa(const SentenceFields& nFields);
  void takeRmc(const SentenceFields& nFields);
  void takeVtg(const SentenceFields& nFields);
  void takeZda(const SentenceFields& nFields);
  void takePubx(const SentenceFields& nFields);

  TrackSink& mSink;
  int mId = 0;
  uint64_t mElapsed = 0;
  TrackPoint mPoint;
  int64_t mDay = -1;      // since 1970, of the last date that was told
  int64_t mDayTime = -1;  // the time of day then
  TrackPoint mLast;       // given away; without a position before the first
};

}  // namespace logtool
