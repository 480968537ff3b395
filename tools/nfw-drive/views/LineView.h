#pragma once

#include "EpochView.h"
#include "FixState.h"

namespace drive {

/// One line an epoch, for files, pipes and logs.
class LineView : public EpochLineView<FixState> {
 public:
  LineView(bool nShowsDeadReckoning, bool nIsPrompt, OutputQueue& nOutput)
      : EpochLineView(nIsPrompt, nOutput), mShowsDeadReckoning(nShowsDeadReckoning) {}

  void showZda(const nfw::ZdaSentence& nRecord) override { mState.take(nRecord); }
  void showDeadReckoning(std::string_view nSentence) override {
    if (mShowsDeadReckoning) write("dead reckoning  " + std::string(nSentence));
    EpochLineView::showDeadReckoning(nSentence);
  }

 private:
  std::string line(const FixState& nFix) const override;

  const bool mShowsDeadReckoning;
};

}  // namespace drive
