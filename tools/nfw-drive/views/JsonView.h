#pragma once

#include "JsonRecord.h"
#include "LineStyle.h"
#include "ReckonedJson.h"
#include "View.h"

namespace drive {

/// One object a line for each record.
class JsonView : public View {
 public:
  JsonView(const LineStyle& nStyle, OutputQueue& nOutput) : mStyle(nStyle), mOutput(nOutput) {}

  void showGga(const nfw::GgaSentence& nRecord) override { show(nRecord); }
  void showGll(const nfw::GllSentence& nRecord) override { show(nRecord); }
  void showGsa(const nfw::GsaSentence& nRecord) override { show(nRecord); }
  void showGsv(const nfw::GsvSentence& nRecord) override { show(nRecord); }
  void showRmc(const nfw::RmcSentence& nRecord) override { show(nRecord); }
  void showVtg(const nfw::VtgSentence& nRecord) override { show(nRecord); }
  void showZda(const nfw::ZdaSentence& nRecord) override { show(nRecord); }
  void showPubx(const nfw::PubxSentence& nRecord) override { show(nRecord); }
  void showDeadReckoning(std::string_view nSentence) override {
    if (!mStyle.mShowsDeadReckoning) return;
    mText = reckonedJson(nSentence, mStyle.mSource);
    write();
  }
  void end() override { mOutput.flush(); }

 private:
  template <class Record>
  void show(const Record& nRecord) {
    mText.clear();
    tool::appendJson(nRecord, &mText, mStyle.mSource);
    write();
  }
  void write() {
    mOutput.write(mText);
    if (mStyle.mIsPrompt) mOutput.flush();
  }

  const LineStyle mStyle;
  OutputQueue& mOutput;
  std::string mText;
};

}  // namespace drive
