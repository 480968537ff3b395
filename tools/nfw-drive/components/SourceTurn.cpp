#include "SourceTurn.h"

#include "SentenceTime.h"

namespace drive {

// What comes without any time makes no epochs.
bool SourceTurn::onSentence(std::string_view nSentence) {
  const int64_t lTimeMs = tool::sentenceTime(nSentence);
  if (lTimeMs >= 0 && lTimeMs != mTimeMs) {
    mTurns.end(mSource);
    mCycle.begin();
    mTimeMs = lTimeMs;
  }
  const bool lIsLast = mCycle.onSentence(nSentence) || mTimeMs < 0;
  return mTurns.use(mSource, lIsLast, [&] { return mIntake.take(nSentence, mSource); });
}

}  // namespace drive
