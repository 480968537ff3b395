#pragma once

#include "FixView.h"

namespace drive {

/// One line an epoch, for files, pipes and logs.
class LineView : public FixView {
 public:
  LineView(bool nIsPrompt, tool::Output& nOutput) : mIsPrompt(nIsPrompt), mOutput(nOutput) {}

  void showEpoch(const nfw::NmeaSentence& nRecord) override;
  void end() override { mOutput.flush(); }

 private:
  const bool mIsPrompt;
  tool::Output& mOutput;
};

}  // namespace drive
