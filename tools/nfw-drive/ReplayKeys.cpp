#include "ReplayKeys.h"

#include <algorithm>

namespace drive {

namespace {

const int64_t JUMP_MS = 10000;
const unsigned int RATES[] = {100, 200, 500, 1000, 2000, 5000, 10000, 20000, 50000, 100000};  // permille

}  // namespace

void ReplayKeys::on(Keys::Key nKey) {
  if (!mReplay.isWanted() || nKey >= Keys::KEEP) return;
  mLateness.stop();
  switch (nKey) {
    case Keys::PAUSE:
      return togglePause();
    case Keys::STEP:
      return mPlayback.step();
    case Keys::FASTER:
    case Keys::SLOWER:
      return changeRate(nKey == Keys::FASTER);
    case Keys::FORWARD:
      return jump(JUMP_MS);
    case Keys::BACK:
      return jump(-JUMP_MS);
    default:
      return;
  }
}

void ReplayKeys::togglePause() { mPlayback.position().mIsPaused ? mPlayback.resume() : mPlayback.pause(); }

void ReplayKeys::changeRate(bool nIsFaster) {
  const unsigned int lNow = mPlayback.position().mRate;
  const auto* const lpFaster = std::upper_bound(std::begin(RATES), std::end(RATES), lNow);
  const auto* const lpNow = std::lower_bound(std::begin(RATES), std::end(RATES), lNow);
  if (nIsFaster && lpFaster != std::end(RATES)) mPlayback.setRate(*lpFaster);
  if (!nIsFaster && lpNow != std::begin(RATES)) mPlayback.setRate(*(lpNow - 1));
}

// Not out of the part that is played.
void ReplayKeys::jump(int64_t nByMs) {
  const nfw::LogPlayPosition lAt = mPlayback.position();
  const int64_t lLast = mReplay.mToMs ? std::min(*mReplay.mToMs - 1, lAt.mLengthMs) : lAt.mLengthMs;
  if (lLast < mReplay.mFromMs) return;
  const int64_t lTo = std::clamp<int64_t>(lAt.mPositionMs + nByMs, mReplay.mFromMs, lLast);
  mRounds.spoil();
  mPlayback.seek(static_cast<uint32_t>(lTo));
}

}  // namespace drive
