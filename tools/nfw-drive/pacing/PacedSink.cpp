#include "PacedSink.h"

#include "SentenceTime.h"

namespace drive {

bool PacedSink::onSentence(std::string_view nSentence) {
  if (mOptions.mPaced) {
    const int64_t lTime = tool::sentenceTime(nSentence);
    if (lTime >= 0 && !waitToPlay(lTime)) return false;
  }
  return mNext.onSentence(nSentence);
}

bool PacedSink::waitToPlay(int64_t nTimeOfDay) {
  const int64_t lOffset = mPacer.offset(nTimeOfDay);
  if (mOptions.mLimitMs && lOffset >= *mOptions.mLimitMs) return false;
  if (mOptions.mSpeed == 0.0) return !mStopper.isRequested();
  if (!mStart) mStart = tool::Stopper::Clock::now();
  return mStopper.waitUntil(*mStart + std::chrono::nanoseconds(Pacer::realTime(lOffset, mOptions.mSpeed)));
}

}  // namespace drive
