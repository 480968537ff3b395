#pragma once

#include "LineStyle.h"
#include "View.h"

namespace drive {

/// The sentences as they are delivered, a line each: those of the receiver, or those of dead reckoning in their place.
class NmeaView : public View {
 public:
  NmeaView(const LineStyle& nStyle, OutputQueue& nOutput) : mStyle(nStyle), mOutput(nOutput) {}

  void showRaw(std::string_view nSentence) override {
    if (!mStyle.mShowsDeadReckoning) write(nSentence);
  }
  void showDeadReckoning(std::string_view nSentence) override {
    if (mStyle.mShowsDeadReckoning) write(nSentence);
  }
  void end() override { mOutput.flush(); }

 private:
  void write(std::string_view nSentence) {
    mText.assign(nSentence);
    if (nSentence.empty() || nSentence.back() != '\n') mText += "\r\n";
    mOutput.write(mText);
    if (mStyle.mIsPrompt) mOutput.flush();
  }

  const LineStyle mStyle;
  OutputQueue& mOutput;
  std::string mText;
};

}  // namespace drive
