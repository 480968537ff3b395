#pragma once

#include "Intake.h"
#include "Turns.h"

namespace drive {

/// The sentences of one source on their way to the intake that all share: those of an epoch together. On the source's
/// thread.
class SourceTurn : public tool::SentenceSink {
 public:
  SourceTurn(size_t nSource, Turns& nTurns, Intake& nIntake) : mSource(nSource), mTurns(nTurns), mIntake(nIntake) {}

  bool onSentence(std::string_view nSentence) override;
  void finish() { mTurns.end(mSource); }  ///< behind the last sentence

 private:
  const size_t mSource;
  Turns& mTurns;
  Intake& mIntake;
  EpochCycle mCycle;
  int64_t mTimeMs = -1;  // of the epoch under way
};

}  // namespace drive
