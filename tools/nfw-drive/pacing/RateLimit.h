#pragma once

#include "SentenceSink.h"
#include "Stopper.h"

namespace drive {

/// Lets no more than a sentence a millisecond pass. A replay keeps the timing of its recording and waits for nobody:
/// what was recorded as fast as it goes would overrun the listeners' queue then.
class RateLimit : public tool::SentenceSink {
 public:
  /// @param nSharing so many share what may pass
  RateLimit(tool::Stopper& nStopper, tool::SentenceSink& nNext, size_t nSharing)
      : mStopper(nStopper), mNext(nNext), mPause(BURST * nSharing) {}

  bool onSentence(std::string_view nSentence) override {
    if (++mCount % BURST == 0 && !mStopper.waitFor(mPause)) return false;
    return mNext.onSentence(nSentence);
  }

 private:
  static constexpr unsigned int BURST = 4;
  tool::Stopper& mStopper;
  tool::SentenceSink& mNext;
  const std::chrono::milliseconds mPause;
  unsigned int mCount = 0;
};

}  // namespace drive
