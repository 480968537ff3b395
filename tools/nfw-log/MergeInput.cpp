#include "MergeInput.h"

#include "ProblemReport.h"
#include "WallClock.h"

namespace logtool {

namespace {

class Silence : public Problems {
 public:
  void onDamage(const std::string& /*nPath*/, const tool::RecordDamage& /*nDamage*/) override {}
  void onUnreadable(const std::string& /*nPath*/, const std::string& /*nReason*/) override {}
};

const size_t LOG_TICK_AT = 40;
const size_t SENSOR_TICK_AT = 1;

}  // namespace

bool findClockOffset(const Recording& nRecording, int64_t* npOffset) {
  if (nRecording.mPaths.front() == "-") return false;
  Silence lSilence;
  RecordingReader lReader(nRecording, lSilence);
  WallClock lClock;
  tool::Record lRecord;
  while (lReader.next(&lRecord)) {
    const int64_t lTime = lClock.timeOf(lRecord);
    if (lTime == NO_TIME) continue;
    *npOffset = lTime - lRecord.mTick;
    return true;
  }
  return false;
}

void MergeInput::advance() {
  mHasRecord = false;
  while (!mHasRecord && mReader.next(&mRecord)) {
    mHasRecord = mSelector.takes(mRecord);
    if (mIsFirst) mBase = mShift + mRecord.mTick;
    mIsFirst = false;
    if (mSelector.isOver()) return;
  }
}

std::string_view MergeInput::getBytes() {
  if (mShift == 0) return mRecord.mBytes;
  mShifted = mRecord.mBytes;
  const size_t lAt = mRecord.mKind == tool::LOG_RECORD ? LOG_TICK_AT : SENSOR_TICK_AT;
  const uint32_t lTick = mRecord.mTick + static_cast<uint32_t>(mShift);
  for (size_t i = 0; i < 4; ++i) mShifted[lAt + i] = static_cast<char>(lTick >> (8 * i) & 0xFF);
  return mShifted;
}

}  // namespace logtool
