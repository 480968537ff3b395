#pragma once

#include "FixView.h"

namespace drive {

/// One line an epoch, for files, pipes and logs. An epoch ends when a sentence of another time
/// comes; the line of one without a fix waits for its report of dead reckoning.
class LineView : public FixView {
 public:
  LineView(bool nShowsDeadReckoning, bool nIsPrompt, OutputQueue& nOutput)
      : mShowsDeadReckoning(nShowsDeadReckoning), mIsPrompt(nIsPrompt), mOutput(nOutput) {}

  void showRaw(std::string_view nSentence) override;
  void showDeadReckoning(std::string_view nSentence) override;
  void end() override;

 private:
  void endEpoch();
  void writeAwaited();
  void writeEpoch(const FixState& nFix);

  const bool mShowsDeadReckoning;
  const bool mIsPrompt;
  OutputQueue& mOutput;
  int64_t mTime = -1;          // of the epoch under way, -1 before the first
  int64_t mReckonedTime = -1;  // of the last report of dead reckoning
  int64_t mAwaitedTime = -1;
  std::optional<FixState> mAwaited;  // an epoch that waits for its report
};

}  // namespace drive
