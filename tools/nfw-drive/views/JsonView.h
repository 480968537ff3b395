#pragma once

#include "JsonObject.h"
#include "JsonRecord.h"
#include "SentenceText.h"
#include "View.h"

namespace drive {

/// One object a line for each record.
class JsonView : public View {
 public:
  /// @param nIsPrompt each line is written at once
  JsonView(bool nShowsDeadReckoning, bool nIsPrompt, OutputQueue& nOutput)
      : mShowsDeadReckoning(nShowsDeadReckoning), mIsPrompt(nIsPrompt), mOutput(nOutput) {}

  void showGga(const nfw::GgaSentence& nRecord) override { show(nRecord); }
  void showGll(const nfw::GllSentence& nRecord) override { show(nRecord); }
  void showGsa(const nfw::GsaSentence& nRecord) override { show(nRecord); }
  void showGsv(const nfw::GsvSentence& nRecord) override { show(nRecord); }
  void showRmc(const nfw::RmcSentence& nRecord) override { show(nRecord); }
  void showVtg(const nfw::VtgSentence& nRecord) override { show(nRecord); }
  void showZda(const nfw::ZdaSentence& nRecord) override { show(nRecord); }
  void showPubx(const nfw::PubxSentence& nRecord) override { show(nRecord); }
  void showDeadReckoning(std::string_view nSentence) override {
    if (!mShowsDeadReckoning) return;
    mText.clear();
    {
      tool::JsonObject lObject(&mText);
      lObject.text("type", "dead reckoning");
      lObject.text("sentence", tool::withoutLineEnd(nSentence));
    }
    write("\n");
  }
  void end() override { mOutput.flush(); }

 private:
  template <class Record>
  void show(const Record& nRecord) {
    mText.clear();
    tool::appendJson(nRecord, &mText);
    write("");
  }
  void write(std::string_view nEnd) {
    mOutput.write(mText.append(nEnd));
    if (mIsPrompt) mOutput.flush();
  }

  const bool mShowsDeadReckoning;
  const bool mIsPrompt;
  OutputQueue& mOutput;
  std::string mText;
};

}  // namespace drive
