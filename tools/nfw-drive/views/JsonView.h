#pragma once

#include "JsonRecord.h"
#include "ReckonedJson.h"
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
    mText = reckonedJson(nSentence);
    write();
  }
  void end() override { mOutput.flush(); }

 private:
  template <class Record>
  void show(const Record& nRecord) {
    mText.clear();
    tool::appendJson(nRecord, &mText);
    write();
  }
  void write() {
    mOutput.write(mText);
    if (mIsPrompt) mOutput.flush();
  }

  const bool mShowsDeadReckoning;
  const bool mIsPrompt;
  OutputQueue& mOutput;
  std::string mText;
};

}  // namespace drive
