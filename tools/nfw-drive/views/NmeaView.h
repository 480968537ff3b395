#pragma once

#include "View.h"

namespace drive {

/// The sentences as they are delivered, a line each: those of the receiver, or those of dead reckoning in their place.
class NmeaView : public View {
 public:
  NmeaView(bool nShowsDeadReckoning, bool nIsPrompt, OutputQueue& nOutput)
      : mShowsDeadReckoning(nShowsDeadReckoning), mIsPrompt(nIsPrompt), mOutput(nOutput) {}

  void showRaw(std::string_view nSentence) override {
    if (!mShowsDeadReckoning) write(nSentence);
  }
  void showDeadReckoning(std::string_view nSentence) override {
    if (mShowsDeadReckoning) write(nSentence);
  }
  void end() override { mOutput.flush(); }

 private:
  void write(std::string_view nSentence) {
    mText.assign(nSentence);
    if (nSentence.empty() || nSentence.back() != '\n') mText += "\r\n";
    mOutput.write(mText);
    if (mIsPrompt) mOutput.flush();
  }

  const bool mShowsDeadReckoning;
  const bool mIsPrompt;
  OutputQueue& mOutput;
  std::string mText;
};

}  // namespace drive
