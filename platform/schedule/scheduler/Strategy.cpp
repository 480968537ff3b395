#include "Strategy.h"

namespace schedule {

Strategy::Strategy(uint64_t nSeed) : mRandom(nSeed) {
  const uint64_t lKinds = mRandom.next();
  mIsByPriority = (lKinds & 1) != 0;
  mHasLateTimers = (lKinds & 2) != 0;
  mHasSlowFiles = (lKinds & 4) != 0;
  mHasSpuriousWakes = (lKinds & 24) == 0;
  mMeanSteps = 2U << mRandom.below(8);
  mChanges = 1 + mRandom.below(6);
  mSpan = uint64_t{256} << mRandom.below(8);
  drawNextChange();
}

void Strategy::drawNextChange() {
  if (!mIsByPriority) {
    mPointsLeft = 1 + mRandom.below(2 * mMeanSteps);
  } else if (mChanges > 0) {
    mPointsLeft = 1 + mRandom.below(mSpan / mChanges--);
  } else {
    mPointsLeft = ~uint64_t{0};
  }
}

}  // namespace schedule
