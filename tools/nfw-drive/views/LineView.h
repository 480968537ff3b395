#pragma once

#include "EpochView.h"
#include "FixState.h"

namespace drive {

/// One line an epoch, for files, pipes and logs.
class LineView : public EpochLineView<FixState> {
 public:
  using EpochLineView::EpochLineView;

  void showZda(const nfw::ZdaSentence& nRecord) override { mState.take(nRecord); }
  void showDeadReckoning(std::string_view nSentence) override {
    if (mStyle.mShowsDeadReckoning) write(prefix() + "dead reckoning  " + std::string(nSentence));
    EpochLineView::showDeadReckoning(nSentence);
  }

 private:
  std::string prefix() const { return mStyle.mSource.empty() ? "" : mStyle.mSource + "  "; }
  std::string line(const FixState& nFix) const override;
};

}  // namespace drive
