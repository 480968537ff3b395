#pragma once

#include "SentenceSink.h"
#include "Stopper.h"

namespace drive {

/// Lets no more than two sentences a millisecond pass. A replay keeps the timing of its recording and waits for nobody:
/// what was recorded as fast as it goes would overrun the listeners' queue then.
class RateLimit : public tool::SentenceSink {
 public:
  RateLimit(tool::Stopper& nStopper, tool::SentenceSink& nNext) : mStopper(nStopper), mNext(nNext) {}

  bool onSentence(std::string_view nSentence) override {
    if (++mCount % BURST == 0 && !mStopper.waitFor(std::chrono::milliseconds(BURST / PER_MS))) return false;
    return mNext.onSentence(nSentence);
  }

 private:
  static constexpr unsigned int PER_MS = 2;
  static constexpr unsigned int BURST = 8;
  tool::Stopper& mStopper;
  tool::SentenceSink& mNext;
  unsigned int mCount = 0;
};

}  // namespace drive
