// Any bytes as a recording: every byte is of one record or of one damage, and what is whole can be shown and converted.
#include <cstdint>

#include "EpochBuilder.h"
#include "Fuzz.h"
#include "RecordPrinter.h"
#include "RecordStream.h"
#include "SensorContent.h"

namespace {

class Track : public logtool::TrackSink {
 public:
  void onPoint(const logtool::TrackPoint& nPoint) override { require(nPoint.hasPosition()); }
};

class Reading : public tool::RecordDamageListener {
 public:
  Reading(const void* npData, size_t nSize) {
    const MemoryFile lFile(npData, nSize);
    tool::RecordStream lStream(lFile.mFd, this);
    tool::Record lRecord;
    while (lStream.next(&lRecord)) take(lRecord);
    require(lStream.getError() == 0);
    require(lStream.isForeign() ? mEnd == 0 : mEnd == nSize);
    mKind = lStream.getKind();
    mBuilder.finish();
  }
  void onDamage(const tool::RecordDamage& nDamage) override {
    require(nDamage.mOffset == mEnd && nDamage.mLength > 0 && !nDamage.mExpected.empty() && !nDamage.mFound.empty());
    mEnd += nDamage.mLength;
    ++mDamages;
  }

  std::string mWhole;  // the bytes of all whole records
  size_t mDamages = 0;
  tool::RecordKind mKind = tool::UNKNOWN_RECORD;

 private:
  void take(const tool::Record& nRecord) {
    require(nRecord.mOffset == mEnd && nRecord.mWholeSize == nRecord.mBytes.size());
    require(nRecord.mWholeSize > nRecord.mData.size());
    mEnd += nRecord.mWholeSize;
    mWhole += nRecord.mBytes;
    mSelector.takes(nRecord);
    require(!mPrinter.print(nRecord, mSelector).empty() && mPrinter.print(nRecord, mSelector).back() == '\n');
    mBuilder.setPlace(nRecord.mId, mSelector.getTimeline().getElapsedMs());
    mSentences.read(nRecord, mBuilder);
  }

  uint64_t mEnd = 0;
  const logtool::Options mOptions;
  logtool::RecordPrinter mPrinter{mOptions};
  logtool::Selector mSelector{mOptions.mSelection};
  logtool::Sentences mSentences;
  Track mTrack;
  logtool::EpochBuilder mBuilder{mTrack};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* npData, size_t nSize) {
  const Reading lReading(npData, nSize);
  if (lReading.mKind != tool::LOG_RECORD) return 0;
  const Reading lAgain(lReading.mWhole.data(), lReading.mWhole.size());  // what recover writes is fine
  require(lAgain.mDamages == 0 && lAgain.mWhole == lReading.mWhole);
  return 0;
}
