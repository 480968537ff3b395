#pragma once

#include <string_view>
#include <vector>

#include "SentenceFields.h"
#include "SentenceSink.h"
#include "TrackPoint.h"
#include "UtcDay.h"

namespace logtool {

/// Puts the sentences of one log type id together into points: those of one time belong to one point, those without a
/// time to the one under way. Gives away a point when the next begins, if it has a position. What a field says is taken
/// from the first sentence of the epoch that has it.
class EpochBuilder : public tool::SentenceSink {
 public:
  static constexpr uint64_t BREAK_MS = 10000;  ///< a pause between positions from which on the track does not go on

  /// Points before the first date are held, and dated by it; beyond so many they go without.
  static constexpr size_t MAX_HELD = 256;

  /// @param nSink not owned, outlives the builder
  explicit EpochBuilder(TrackSink& nSink) : mSink(nSink), mWantsSky(nSink.wantsSky()) {}

  /// Of the sentences that follow.
  void setPlace(int nId, uint64_t nElapsedMs) {
    mId = nId;
    mElapsed = nElapsedMs;
  }
  /// When a sentence was told that is not given to the builder, as one that was not selected.
  void setTime(int64_t nUtcMs) {
    if (!mDay.isKnown()) mDay.set(nUtcMs / tool::MS_PER_DAY, nUtcMs % tool::MS_PER_DAY);
  }
  bool onSentence(std::string_view nSentence) override;
  void finish();  ///< no more sentences

 private:
  using Take = void (EpochBuilder::*)(const SentenceFields&);
  struct Kind {
    Take mpTake;     // null: the sentence tells nothing of a point
    size_t mTimeAt;  // its field; 0: it has none
  };

  Kind kindOf(std::string_view nSentence, uint32_t nType) const;
  void beginAt(int64_t nTimeOfDay);
  void endPoint();
  void endSky();
  void giveHeld();
  void give(TrackPoint& nPoint);
  bool isBreak(const TrackPoint& nPoint) const;
  void setPosition(const SentenceFields& nFields, size_t nLatitudeAt);
  void raiseFix(Fix nFix);
  void takeGga(const SentenceFields& nFields);
  void takeGll(const SentenceFields& nFields);
  void takeGsa(const SentenceFields& nFields);
  void takeRmc(const SentenceFields& nFields);
  void takeVtg(const SentenceFields& nFields);
  void takePubx(const SentenceFields& nFields);
  void takeGsv(const SentenceFields& nFields);
  void takeSatellite(const SatelliteView& nView);

  static constexpr size_t MAX_SATELLITES = 128;  // of an epoch

  TrackSink& mSink;
  const bool mWantsSky;
  Sky mSky;
  int mId = 0;
  uint64_t mElapsed = 0;
  TrackPoint mPoint;
  UtcDay mDay;
  std::vector<TrackPoint> mHeld;  // until a date is told
  bool mHolds = true;
  TrackPoint mLast;  // given away; without a position before the first
};

}  // namespace logtool
