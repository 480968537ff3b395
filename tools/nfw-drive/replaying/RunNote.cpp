#include "RunNote.h"

#include <sstream>

#include "Format.h"

namespace drive::runnote {

namespace {

const std::string END = "nfw-drive run ends:";

}  // namespace

std::string end(const StreamTally& nTally) {
  std::string lText = fmt::format("{} {} {}", END, nTally.mSentences.mCount, nTally.mSentences.mSum);
  for (const uint64_t lCount : nTally.mRecords) lText += fmt::format(" {}", lCount);
  return lText + fmt::format(" {} {} {}", nTally.mCombined, nTally.mDeadReckoning.mCount, nTally.mDeadReckoning.mSum);
}

std::optional<StreamTally> parseEnd(std::string_view nNote) {
  if (nNote.substr(0, END.size()) != END) return std::nullopt;
  std::istringstream lText{std::string(nNote.substr(END.size()))};
  StreamTally lTally;
  lText >> lTally.mSentences.mCount >> lTally.mSentences.mSum;
  for (uint64_t& lCount : lTally.mRecords) lText >> lCount;
  lText >> lTally.mCombined >> lTally.mDeadReckoning.mCount >> lTally.mDeadReckoning.mSum;
  return lText.fail() ? std::nullopt : std::optional<StreamTally>(lTally);
}

}  // namespace drive::runnote
