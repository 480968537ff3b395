#include <cstring>

#include "EightBytes.h"
#include "Format.h"
#include "RecordFormat.h"
#include "RecordText.h"

namespace tool {

namespace {

const size_t PREFIX_SIZE = 36;
const size_t ID_AT = 36;
const size_t TICK_AT = 40;
const size_t SIZE_AT = 44;
const size_t BASE_SIZE = 48;
const size_t STAMP_SIZE = 23;
const size_t ID_TEXT_AT = 26;
const size_t ID_TEXT_SIZE = 8;

// The least and the greatest byte at each place of the text before the numbers.
const char LOW[] = "0000/00/00 00:00:00.000 ID00000000: ";
const char HIGH[] = "9999/19/39 29:59:69.999 IDFFFFFFFF: ";

/// How many of the first bytes are as a record's text has them.
size_t matchLength(std::string_view nBytes) {
  const size_t lSize = std::min(nBytes.size(), PREFIX_SIZE);
  size_t i = 0;
  while (i < lSize && nBytes[i] >= LOW[i] && nBytes[i] <= HIGH[i]) ++i;
  return i;
}

// As above, without a branch for each byte: most texts are right.
bool hasText(const char* npBytes) {
  uint64_t lWrong = 0;
  for (const size_t lAt : {size_t{0}, size_t{8}, size_t{16}, size_t{24}, PREFIX_SIZE - 8}) {
    lWrong |= bytesOutside(littleEndian64(npBytes + lAt), littleEndian64(LOW + lAt), littleEndian64(HIGH + lAt));
  }
  return lWrong == 0;
}

/// What eight hexadecimal digits say, of a text that is right: between 9 and A it may have other signs.
bool readId(const char* npText, uint32_t* npId) {
  const uint64_t lText = littleEndian64(npText);
  const uint64_t lLetters = (lText + EACH_BYTE * (0x80 - 'A')) & TOP_BITS;
  const uint64_t lDigits = bytesOutside(lText, EACH_BYTE * '0', EACH_BYTE * '9') ^ TOP_BITS;
  uint64_t lValue = (lText & EACH_BYTE * 0x0F) + (lLetters >> 7) * 9;  // a digit a byte, the first one lowest
  lValue = (lValue << 4 | lValue >> 8) & 0x00FF00FF00FF00FF;
  lValue = (lValue << 8 | lValue >> 16) & 0x0000FFFF0000FFFF;
  *npId = static_cast<uint32_t>(lValue << 16 | lValue >> 32);
  return (lLetters | lDigits) == TOP_BITS;
}

bool isIdRight(const char* npBytes) {
  uint32_t lId = 0;
  return readId(npBytes + ID_TEXT_AT, &lId) && lId == littleEndian32(npBytes + ID_AT) && lId <= 0x7FFFFFFF;
}

bool isBase(const char* npBytes) { return hasText(npBytes) && isIdRight(npBytes); }

class LogRecordFormat : public RecordFormat {
 public:
  RecordVerdict judge(const RecordView& nView) const override {
    const std::string_view lBytes = nView.mBytes;
    if (lBytes.size() < BASE_SIZE) {
      const bool lMayBe = matchLength(lBytes) == std::min(lBytes.size(), PREFIX_SIZE);
      return {lMayBe ? RecordVerdict::SHORT : RecordVerdict::WRONG, BASE_SIZE};
    }
    if (!(nView.mIsBegun || hasText(lBytes.data())) || !isIdRight(lBytes.data())) return {RecordVerdict::WRONG, 0};
    const uint64_t lSize = uint64_t{littleEndian32(lBytes.data() + SIZE_AT)} + BASE_SIZE + 1;
    if (lSize > MAX_RECORD) return {RecordVerdict::WRONG, 0};
    return judgeEnd(nView, static_cast<size_t>(lSize));
  }

  size_t find(const RecordView& nView) const override { return findFrom(nView.mBytes, 1); }
  size_t overlap() const override { return BASE_SIZE; }

  void decode(std::string_view nBytes, Record* npRecord) const override {
    npRecord->mKind = LOG_RECORD;
    npRecord->mId = static_cast<int>(littleEndian32(nBytes.data() + ID_AT));
    npRecord->mVersion = 0;
    npRecord->mTick = littleEndian32(nBytes.data() + TICK_AT);
    npRecord->mStamp = nBytes.substr(0, STAMP_SIZE);
    npRecord->mData = nBytes.substr(BASE_SIZE, nBytes.size() - BASE_SIZE - 1);
  }

  void explain(const RecordView& nView, RecordDamage* npDamage) const override {
    const std::string_view lBytes = nView.mBytes;
    if (matchLength(lBytes) < std::min(lBytes.size(), PREFIX_SIZE)) {
      npDamage->mExpected = "a record's date, time and id";
      npDamage->mFound = quoteBytes(lBytes.substr(0, PREFIX_SIZE));
    } else if (lBytes.size() < BASE_SIZE) {
      npDamage->mExpected = fmt::format("{} bytes before the data", BASE_SIZE);
      npDamage->mFound = fmt::format("the end after {}", lBytes.size());
    } else if (!isIdRight(lBytes.data())) {
      npDamage->mExpected = fmt::format("the id {} of the text", quoteBytes(lBytes.substr(ID_TEXT_AT, ID_TEXT_SIZE)));
      npDamage->mFound = fmt::format("the id {:08X}", littleEndian32(lBytes.data() + ID_AT));
    } else {
      explainEnd(nView, npDamage);
    }
  }

 private:
  // A size that is spoilt may lead to a line feed by chance. Then no record follows, and one begins within.
  static RecordVerdict judgeEnd(const RecordView& nView, size_t nSize) {
    const std::string_view lBytes = nView.mBytes;
    if (lBytes.size() < nSize) return {RecordVerdict::SHORT, nSize};
    if (lBytes[nSize - 1] != '\n') return {RecordVerdict::WRONG, 0};
    const std::string_view lRest = lBytes.substr(nSize);
    if (lRest.size() < PREFIX_SIZE && !nView.mIsAll && !nView.mIsLive) {
      return {RecordVerdict::SHORT, nSize + BASE_SIZE};
    }
    const bool lIsBegun = lRest.size() >= PREFIX_SIZE && hasText(lRest.data());
    const bool lIsFollowed = lIsBegun || (lRest.size() < PREFIX_SIZE && matchLength(lRest) == lRest.size());
    const bool lIsWhole = lIsFollowed || findFrom(lBytes.substr(0, nSize), 1) == std::string_view::npos;
    return {lIsWhole ? RecordVerdict::WHOLE : RecordVerdict::WRONG, nSize, lIsBegun};
  }

  static size_t findFrom(std::string_view nBytes, size_t nFrom) {
    for (size_t lAt = nFrom; lAt < nBytes.size(); ++lAt) {
      const void* const lpFound = memchr(nBytes.data() + lAt, ':', nBytes.size() - lAt);
      if (lpFound == nullptr) break;
      // A record's text has three colons: 13 and 16 bytes behind its begin, and 34, where nothing else fits.
      lAt = static_cast<size_t>(static_cast<const char*>(lpFound) - nBytes.data());
      if (lAt < nFrom + 13 || lAt - 13 + BASE_SIZE > nBytes.size()) continue;
      if (isBase(nBytes.data() + lAt - 13)) return lAt - 13;
    }
    return std::string_view::npos;
  }

  static void explainEnd(const RecordView& nView, RecordDamage* npDamage) {
    const uint64_t lSize = littleEndian32(nView.mBytes.data() + SIZE_AT);
    const uint64_t lEnd = lSize + BASE_SIZE;
    npDamage->mExpected = fmt::format("{} bytes of data and a line feed", lSize);
    if (lEnd + 1 > MAX_RECORD) {
      npDamage->mExpected = fmt::format("a data size of at most {}", MAX_RECORD - BASE_SIZE - 1);
      npDamage->mFound = std::to_string(lSize);
    } else if (nView.mBytes.size() <= lEnd) {
      npDamage->mFound = fmt::format("the end after {}", nView.mBytes.size() - BASE_SIZE);
    } else if (nView.mBytes[static_cast<size_t>(lEnd)] != '\n') {
      npDamage->mFound =
          fmt::format("{} behind the data", quoteBytes(nView.mBytes.substr(static_cast<size_t>(lEnd), 1)));
    } else {
      npDamage->mFound = "another record within";
    }
  }
};

}  // namespace

const RecordFormat& logRecordFormat() {
  static const LogRecordFormat FORMAT;
  return FORMAT;
}

}  // namespace tool
