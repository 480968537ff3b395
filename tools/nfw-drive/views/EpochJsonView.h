#pragma once

#include "EpochView.h"
#include "FixEpoch.h"
#include "ReckonedJson.h"

namespace drive {

/// One object a line for each epoch.
class EpochJsonView : public EpochLineView<FixEpoch> {
 public:
  using EpochLineView::EpochLineView;

  void showGll(const nfw::GllSentence& nRecord) override { mState.take(nRecord); }
  void showPubx(const nfw::PubxSentence& nRecord) override { mState.take(nRecord); }
  void showDeadReckoning(std::string_view nSentence) override {
    EpochLineView::showDeadReckoning(nSentence);
    if (mStyle.mShowsDeadReckoning) write(reckonedJson(nSentence, mStyle.mSource));
  }

 private:
  std::string line(const FixEpoch& nEpoch) const override {
    std::string lText;
    nEpoch.appendJson(&lText, mStyle.mSource);
    return lText + "\n";
  }
};

}  // namespace drive
