#pragma once

#include <optional>

#include "Pacer.h"
#include "SentenceSink.h"
#include "Stopper.h"

namespace drive {

/// How a source is played.
struct PlayOptions {
  bool mPaced = false;              ///< by the sentences' own times; live sources come as they come
  double mSpeed = 1.0;              ///< 0: as fast as it goes
  std::optional<int64_t> mLimitMs;  ///< ends after so much of the sentences' own time
};

/// Holds each sentence back until it is due, then hands it on.
class PacedSink : public tool::SentenceSink {
 public:
  PacedSink(const PlayOptions& nOptions, tool::Stopper& nStopper, tool::SentenceSink& nNext)
      : mOptions(nOptions), mStopper(nStopper), mNext(nNext) {}

  bool onSentence(std::string_view nSentence) override;

 private:
  bool waitToPlay(int64_t nTimeOfDay);

  const PlayOptions mOptions;
  tool::Stopper& mStopper;
  tool::SentenceSink& mNext;
  Pacer mPacer;
  std::optional<tool::Stopper::Clock::time_point> mStart;
};

}  // namespace drive
