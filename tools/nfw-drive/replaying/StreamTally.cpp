#include "StreamTally.h"

#include <numeric>

#include "Format.h"
#include "SentenceText.h"

namespace drive {

namespace {

std::string describe(uint64_t nCount, uint64_t nOther, const char* npWhat, const char* npOther) {
  return nCount == nOther ? std::string() : fmt::format("{} {}, {} {}", npWhat, nCount, npOther, nOther);
}

std::string describe(const TextTally& nTally, const TextTally& nOther, const char* npWhat, const char* npOther) {
  if (nTally == nOther) return {};
  if (nTally.mCount != nOther.mCount) return describe(nTally.mCount, nOther.mCount, npWhat, npOther);
  return fmt::format("{} differ in their text or order", npWhat);
}

}  // namespace

void TextTally::add(std::string_view nText) {
  ++mCount;
  // The line end does not count: the sensor log adds one.
  for (const char lByte : tool::withoutLineEnd(nText))
    mSum = (mSum ^ static_cast<unsigned char>(lByte)) * 0x100000001B3u;
  mSum = (mSum ^ '\n') * 0x100000001B3u;
  if (mCount == 1) mFirst = mSum;
}

bool StreamTally::operator==(const StreamTally& n) const {
  return mSentences == n.mSentences && mRecords == n.mRecords && mCombined == n.mCombined &&
         mDeadReckoning == n.mDeadReckoning;
}

uint64_t StreamTally::records() const { return std::accumulate(mRecords.begin(), mRecords.end(), uint64_t{0}); }

std::string StreamTally::toText() const {
  std::string lText = fmt::format("sentences {}", mSentences.mCount);
  for (int i = nfw::NMEA_GGA; i < tool::KIND_NUM; ++i) {
    lText += fmt::format("  {} {}", tool::kindName(i), mRecords[static_cast<size_t>(i)]);
  }
  return lText + fmt::format("  combined {}  dead-reckoning {}", mCombined, mDeadReckoning.mCount);
}

std::string StreamTally::difference(const StreamTally& nOther, const char* npOther) const {
  std::string lText = describe(mSentences, nOther.mSentences, "sentences", npOther);
  for (int i = nfw::NMEA_GGA; i < tool::KIND_NUM && lText.empty(); ++i) {
    const auto lKind = static_cast<size_t>(i);
    lText = describe(mRecords[lKind], nOther.mRecords[lKind], tool::kindName(i), npOther);
  }
  if (lText.empty()) lText = describe(mCombined, nOther.mCombined, "combined", npOther);
  if (lText.empty()) lText = describe(mDeadReckoning, nOther.mDeadReckoning, "dead-reckoning sentences", npOther);
  return lText;
}

}  // namespace drive
