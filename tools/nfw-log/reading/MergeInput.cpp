#include "MergeInput.h"

#include "WallClock.h"

namespace logtool {

namespace {

const size_t LOG_TICK_AT = 40;
const size_t SENSOR_TICK_AT = 1;

}  // namespace

MergeStart findStart(const Recording& nRecording) {
  MergeStart lStart;
  if (nRecording.mPaths.front() == "-") return lStart;
  Silence lSilence;
  RecordingReader lReader(nRecording, lSilence);
  WallClock lClock;
  tool::Record lRecord;
  while (!lStart.mHasClock && lReader.next(&lRecord)) {
    if (!lStart.mHasTick) lStart.mTick = lRecord.mTick;
    lStart.mHasTick = true;
    const int64_t lTime = lClock.timeOf(lRecord);
    lStart.mHasClock = lTime != NO_TIME;
    lStart.mClockOffset = lTime - lRecord.mTick;
  }
  return lStart;
}

void MergeInput::advance() {
  if (mIsWaiting) mReader.emplace(mRecording, mProblems);
  mIsWaiting = false;
  mHasRecord = false;
  while (!mHasRecord && !mSelector.isOver() && mReader->next(&mRecord)) {
    mIsSelected = mSelector.takes(mRecord);
    mHasRecord = mIsSelected || mIsOfAll;
    if (mSelector.getTimeline().isBackward()) ++mBackward;
    if (mIsFirst) mBase = mShift + mRecord.mTick;
    mIsFirst = false;
  }
  if (mHasRecord) return;
  mRead = mReader->getRead();
  mReader.reset();
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
