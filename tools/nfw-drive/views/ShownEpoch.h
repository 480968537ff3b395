#pragma once

#include <chrono>

#include "EpochView.h"
#include "FixEpoch.h"

namespace drive {

/// The last epoch of a source that is complete.
class ShownEpoch : public EpochView<FixEpoch> {
 public:
  void showRaw(std::string_view nSentence) override {
    EpochView::showRaw(nSentence);
    mLastSentence = Clock::now();
    mIsUnderWay = true;
  }
  void showGll(const nfw::GllSentence& nRecord) override { mState.take(nRecord); }
  void showPubx(const nfw::PubxSentence& nRecord) override { mState.take(nRecord); }
  // The last sentence of an epoch is known by the silence behind it: nobody waits for the next one to see it.
  void tick() override {
    if (!mIsUnderWay || Clock::now() - mLastSentence < QUIET) return;
    mShown = mState;
    mIsUnderWay = false;
  }

  const FixEpoch& shown() const { return mShown; }
  /// Whole seconds since the last sentence, once that is worth telling of a source that is live; else 0.
  unsigned int silence() const {
    const auto lSilence = std::chrono::floor<std::chrono::seconds>(Clock::now() - mLastSentence);
    return lSilence < SILENCE ? 0 : static_cast<unsigned int>(lSilence.count());
  }

 private:
  using Clock = std::chrono::steady_clock;

  void show(const FixEpoch& nEpoch) override { mShown = nEpoch; }

  static constexpr std::chrono::milliseconds QUIET{200};  // more than a sentence takes at 4800 baud
  static constexpr std::chrono::seconds SILENCE{3};
  FixEpoch mShown;
  Clock::time_point mLastSentence = Clock::now();
  bool mIsUnderWay = false;  // sentences have come since an epoch was shown
};

}  // namespace drive
