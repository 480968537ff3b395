#include "Format.h"
#include "RecordFormat.h"
#include "RecordText.h"
#include "SensorContent.h"

namespace tool {

namespace {

const size_t TICK_AT = 1;
const size_t SIZE_AT = 5;
const size_t HEADER_SIZE = 7;
const size_t MAX_DATA = 1200;
const int CHAIN = 4;                   // so many headers in a row are no chance
const uint32_t CHAIN_MS = 600 * 1000;  // between two of them, where the begin of a record is searched

size_t dataSize(std::string_view nBytes) { return littleEndian16(nBytes.data() + SIZE_AT); }
uint32_t tick(std::string_view nBytes) { return littleEndian32(nBytes.data() + TICK_AT); }

/// Zeros would be the header of an empty record of the receiver, which there is not: they are what a disk holds where
/// nothing was written.
bool isZero(std::string_view nBytes) {
  return nBytes.substr(0, HEADER_SIZE).find_first_not_of('\0') == std::string_view::npos;
}

/// Its content alone shows that a record stands here.
bool isSure(std::string_view nBytes) {
  const unsigned int lInfo = static_cast<unsigned char>(nBytes[0]);
  const size_t lSize = dataSize(nBytes);
  return nBytes.size() >= HEADER_SIZE + lSize &&
         isSensorContent(static_cast<int>(lInfo & 0xF), static_cast<int>(lInfo >> 4),
                         nBytes.substr(HEADER_SIZE, lSize));
}

/// A record has no mark of its own. It is taken for one when its data is exactly what its id holds, or when others
/// follow it in a row.
class SensorRecordFormat : public RecordFormat {
 public:
  RecordVerdict judge(const RecordView& nView) const override {
    const std::string_view lBytes = nView.mBytes;
    if (lBytes.size() < HEADER_SIZE) return {RecordVerdict::SHORT, HEADER_SIZE};
    if (isZero(lBytes) || dataSize(lBytes) > MAX_DATA) return {RecordVerdict::WRONG, 0};
    const size_t lSize = HEADER_SIZE + dataSize(lBytes);
    if (lBytes.size() < lSize) return {RecordVerdict::SHORT, lSize};
    if (isSure(lBytes)) return {RecordVerdict::WHOLE, lSize};
    return judgeChain(nView, lSize, false);
  }

  size_t find(const RecordView& nView) const override {
    const size_t lKept = nView.mIsAll ? HEADER_SIZE : overlap();
    for (size_t lAt = 1; lAt + lKept <= nView.mBytes.size(); ++lAt) {
      const std::string_view lBytes = nView.mBytes.substr(lAt);
      if (isZero(lBytes)) {  // the next may begin with all but one of these
        const size_t lEnd = lBytes.find_first_not_of('\0');
        if (lEnd == std::string_view::npos) break;
        lAt += lEnd - HEADER_SIZE;
        continue;
      }
      if (static_cast<unsigned char>(lBytes[SIZE_AT + 1]) > MAX_DATA >> 8) continue;
      if (beginsAt({lBytes, nView.mIsAll, false})) return lAt;
    }
    return std::string_view::npos;
  }
  size_t overlap() const override { return (CHAIN + 1) * (HEADER_SIZE + MAX_DATA); }

  void decode(std::string_view nBytes, Record* npRecord) const override {
    const unsigned int lInfo = static_cast<unsigned char>(nBytes[0]);
    npRecord->mKind = SENSOR_RECORD;
    npRecord->mId = static_cast<int>(lInfo & 0xF);
    npRecord->mVersion = static_cast<int>(lInfo >> 4);
    npRecord->mTick = tick(nBytes);
    npRecord->mStamp = {};
    npRecord->mData = nBytes.substr(HEADER_SIZE);
  }

  void explain(const RecordView& nView, RecordDamage* npDamage) const override {
    const std::string_view lBytes = nView.mBytes;
    if (lBytes.size() < HEADER_SIZE) {
      npDamage->mExpected = fmt::format("{} bytes before the data", HEADER_SIZE);
      npDamage->mFound = fmt::format("the end after {}", lBytes.size());
    } else if (isZero(lBytes)) {
      npDamage->mExpected = "a record";
      npDamage->mFound = "bytes of zero";
    } else if (dataSize(lBytes) > MAX_DATA) {
      npDamage->mExpected = fmt::format("a data size of at most {}", MAX_DATA);
      npDamage->mFound = std::to_string(dataSize(lBytes));
    } else if (lBytes.size() < HEADER_SIZE + dataSize(lBytes)) {
      npDamage->mExpected = fmt::format("{} bytes of data", dataSize(lBytes));
      npDamage->mFound = fmt::format("the end after {}", lBytes.size() - HEADER_SIZE);
    } else {
      npDamage->mExpected = fmt::format("records behind one of {} bytes of data", dataSize(lBytes));
      npDamage->mFound = quoteBytes(lBytes.substr(HEADER_SIZE + dataSize(lBytes), HEADER_SIZE));
    }
  }

 private:
  static bool beginsAt(const RecordView& nView) {
    const size_t lSize = HEADER_SIZE + dataSize(nView.mBytes);
    if (dataSize(nView.mBytes) > MAX_DATA || nView.mBytes.size() < lSize || isZero(nView.mBytes)) return false;
    return isSure(nView.mBytes) || judgeChain(nView, lSize, true).mResult == RecordVerdict::WHOLE;
  }

  // Looks on from a first record of `nSize` bytes. Searching asks for more than a size that may be: times in order, and
  // no short cut at the end.
  static RecordVerdict judgeChain(const RecordView& nView, size_t nSize, bool nIsSearch) {
    const RecordVerdict lWhole = {RecordVerdict::WHOLE, nSize};
    const RecordVerdict lWrong = {RecordVerdict::WRONG, 0};
    const RecordVerdict lAtEnd = nIsSearch ? lWrong : lWhole;
    uint32_t lTick = tick(nView.mBytes);
    size_t lAt = nSize;
    for (int i = 1; i < CHAIN; ++i) {
      const std::string_view lRest = nView.mBytes.substr(lAt);
      if (lRest.size() < HEADER_SIZE) return beyond(nView, lAtEnd, lAt + HEADER_SIZE);
      if (isZero(lRest)) return lAtEnd;  // of what was written
      if (dataSize(lRest) > MAX_DATA) return lWrong;
      if (nIsSearch && tick(lRest) - lTick > CHAIN_MS) return lWrong;
      lTick = tick(lRest);
      lAt += HEADER_SIZE + dataSize(lRest);
      if (lAt > nView.mBytes.size()) return beyond(nView, lAtEnd, lAt);
      if (isSure(lRest)) break;
    }
    return lWhole;
  }

  // The chain goes on beyond what is in sight.
  static RecordVerdict beyond(const RecordView& nView, const RecordVerdict& nAtEnd, size_t nSize) {
    return nView.mIsAll || nView.mIsLive ? nAtEnd : RecordVerdict{RecordVerdict::SHORT, nSize};
  }
};

}  // namespace

const RecordFormat& sensorRecordFormat() {
  static const SensorRecordFormat FORMAT;
  return FORMAT;
}

}  // namespace tool
