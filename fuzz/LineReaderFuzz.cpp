// Any bytes: every piece is counted once, what passes is a sentence, and it does not matter how the bytes arrive.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "Fuzz.h"
#include "LineReader.h"
#include "SentenceTime.h"

namespace {

bool isSentence(std::string_view nText) {
  for (const char lByte : nText) {
    if (lByte != '\t' && (lByte < 0x20 || lByte > 0x7E)) return false;
  }
  const bool lStarts = nText[0] == '$' || nText[0] == '!';
  return lStarts && nText.size() <= tool::LineReader::MAX_SENTENCE && nText.find_first_of("$!", 1) == nText.npos;
}

class Taking : public tool::SentenceSink {
 public:
  bool onSentence(std::string_view nSentence) override {
    require(isSentence(nSentence));
    require(tool::sentenceTime(nSentence) < tool::MS_PER_DAY + 1000);
    mSentences.emplace_back(nSentence);
    return true;
  }
  std::vector<std::string> mSentences;
};

struct Reading {
  tool::LineCounts mCounts;
  Taking mTaking;

  Reading(const char* npData, size_t nSize, size_t nChunk, bool nJudged) {
    tool::LineReader lReader(mCounts, nJudged);
    for (size_t i = 0; i < nSize; i += nChunk) lReader.feed(npData + i, std::min(nChunk, nSize - i), mTaking);
    lReader.finish(mTaking);
    require(mCounts.accepted() == mTaking.mSentences.size());
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* npData, size_t nSize) {
  if (nSize == 0) return 0;
  const auto* const lpBytes = reinterpret_cast<const char*>(npData + 1);
  const bool lJudged = (npData[0] & 1) == 0;
  const Reading lWhole(lpBytes, nSize - 1, nSize, lJudged);
  const Reading lParts(lpBytes, nSize - 1, npData[0] / 2 + 1u, lJudged);
  require(lWhole.mTaking.mSentences == lParts.mTaking.mSentences);
  for (int i = 0; i < tool::LINE_VERDICT_NUM; ++i) {
    const auto lVerdict = static_cast<tool::LineVerdict>(i);
    require(lWhole.mCounts.get(lVerdict) == lParts.mCounts.get(lVerdict));
  }
  return 0;
}
