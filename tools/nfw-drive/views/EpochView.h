#pragma once

#include <optional>

#include "LineStyle.h"
#include "SentenceTime.h"
#include "View.h"

namespace drive {

/// What the views of epochs share. An epoch ends when a sentence of another time comes; one without a fix waits for its
/// report of dead reckoning.
/// @tparam State gathers the sentences: FixState, or FixEpoch
template <class State>
class EpochView : public View {
 public:
  void showRaw(std::string_view nSentence) override {
    const int64_t lTime = tool::sentenceTime(nSentence);
    const bool lIsNew = mTime >= 0 && lTime >= 0 && lTime != mTime;
    if (lIsNew) endEpoch();
    if (lIsNew) mState.begin();
    if (lTime >= 0) mTime = lTime;
    mState.takeText(nSentence);
  }
  void showDeadReckoning(std::string_view nSentence) override {
    mState.takeReckoned(nSentence);
    const int64_t lTime = tool::sentenceTime(nSentence);
    if (lTime >= 0) mReckonedTime = lTime;
    if (!mAwaited || mReckonedTime != mAwaitedTime) return;
    mAwaited->takeReckoned(nSentence);
    if (nSentence.substr(0, 5) == "$PUBX") showAwaited();
  }
  void showGga(const nfw::GgaSentence& nRecord) override { mState.take(nRecord); }
  void showGsa(const nfw::GsaSentence& nRecord) override { mState.take(nRecord); }
  void showRmc(const nfw::RmcSentence& nRecord) override { mState.take(nRecord); }
  void showVtg(const nfw::VtgSentence& nRecord) override { mState.take(nRecord); }
  void end() override {
    showAwaited();
    if (mTime >= 0) show(mState);
  }

 protected:
  /// An epoch has ended.
  virtual void show(const State& nEpoch) = 0;

  State mState;  // of the epoch under way

 private:
  void endEpoch() {
    showAwaited();
    if (!mState.awaitsReport(mReckonedTime == mTime)) return show(mState);
    mAwaitedTime = mTime;
    mAwaited = mState;
  }
  void showAwaited() {
    if (mAwaited) show(*mAwaited);
    mAwaited.reset();
  }

  int64_t mTime = -1;          // of the epoch under way, -1 before the first
  int64_t mReckonedTime = -1;  // of the last report of dead reckoning
  int64_t mAwaitedTime = -1;
  std::optional<State> mAwaited;  // an epoch that waits for its report
};

/// Views of one line an epoch.
template <class State>
class EpochLineView : public EpochView<State> {
 public:
  EpochLineView(const LineStyle& nStyle, OutputQueue& nOutput) : mStyle(nStyle), mOutput(nOutput) {}

  void end() override {
    EpochView<State>::end();
    mOutput.flush();
  }

 protected:
  /// The line of an epoch, with its end.
  virtual std::string line(const State& nEpoch) const = 0;

  void write(const std::string& nLine) {
    mOutput.write(nLine);
    if (mStyle.mIsPrompt) mOutput.flush();
  }

  const LineStyle mStyle;

 private:
  void show(const State& nEpoch) override { write(line(nEpoch)); }

  OutputQueue& mOutput;
};

}  // namespace drive
