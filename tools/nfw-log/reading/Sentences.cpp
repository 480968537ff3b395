#include "Sentences.h"

#include "NfwAppLog.h"
#include "RecordType.h"
#include "SentenceText.h"

namespace logtool {

namespace {

/// Takes the line ends off; a sentence of which nothing is left is none.
class Trimmer : public tool::SentenceSink {
 public:
  explicit Trimmer(tool::SentenceSink& nNext) : mNext(nNext) {}

  bool onSentence(std::string_view nSentence) override {
    const std::string_view lText = tool::withoutLineEnd(nSentence);
    return lText.empty() || mNext.onSentence(lText);
  }

 private:
  tool::SentenceSink& mNext;
};

}  // namespace

// The library says in its log what it cannot decode; here the result says it.
Sentences::Sentences() { nfw::registerLogType(nfw::LOG_TYPE_NFW, "", nfw::LOG_LEVEL_NONE); }

bool Sentences::read(const tool::Record& nRecord, tool::SentenceSink& nSink) {
  Trimmer lTrimmer(nSink);
  if (nRecord.mKind != tool::LOG_RECORD) return mSensor.read(nRecord, lTrimmer);
  readText(nRecord.mData, lTrimmer);
  return true;
}

void Sentences::readText(std::string_view nData, tool::SentenceSink& nSink) {
  while (!nData.empty()) {
    const size_t lEnd = nData.find('\n');
    const std::string_view lLine = nData.substr(0, lEnd);
    if (!isSentenceText(lLine)) return;
    nSink.onSentence(lLine);
    nData.remove_prefix(lEnd == std::string_view::npos ? nData.size() : lEnd + 1);
  }
}

}  // namespace logtool
