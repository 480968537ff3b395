#pragma once

#include "EpochView.h"
#include "FixState.h"

namespace drive {

/// One line an epoch, for files, pipes and logs.
class LineView : public EpochView<FixState> {
 public:
  LineView(bool nShowsDeadReckoning, bool nIsPrompt, OutputQueue& nOutput)
      : EpochView(nIsPrompt, nOutput), mShowsDeadReckoning(nShowsDeadReckoning) {}

  void showGsv(const nfw::GsvSentence& nRecord) override { mState.take(nRecord); }
  void showZda(const nfw::ZdaSentence& nRecord) override { mState.take(nRecord); }
  void showDeadReckoning(std::string_view nSentence) override {
    if (mShowsDeadReckoning) write("dead reckoning  " + std::string(nSentence));
    EpochView::showDeadReckoning(nSentence);
  }

 private:
  std::string line(const FixState& nFix) const override;

  const bool mShowsDeadReckoning;
};

}  // namespace drive
