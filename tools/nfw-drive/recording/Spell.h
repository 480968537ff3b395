#pragma once

#include <chrono>

namespace drive {

/// When to speak of something that goes wrong for a while: once at its beginning, then every ten seconds, and once when
/// it is over. It is over when two looks in a row did not find it.
class Spell {
 public:
  using Clock = std::chrono::steady_clock;
  enum Word { SILENT, BEGINS, GOES_ON, IS_OVER };

  Word look(bool nIsThere, Clock::time_point nNow) {
    mMisses = nIsThere ? 0 : mMisses + 1;
    if (!mIsOn && !nIsThere) return SILENT;
    if (mIsOn && mMisses >= 2) {
      mIsOn = false;
      return IS_OVER;
    }
    if (mIsOn && nNow - mSpoken < std::chrono::seconds(10)) return SILENT;
    mSpoken = nNow;
    const Word lWord = mIsOn ? GOES_ON : BEGINS;
    mIsOn = true;
    return lWord;
  }

 private:
  bool mIsOn = false;
  unsigned int mMisses = 0;
  Clock::time_point mSpoken;
};

}  // namespace drive
