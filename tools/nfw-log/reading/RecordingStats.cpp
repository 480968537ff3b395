#include "RecordingStats.h"

#include "RecordType.h"

namespace logtool {

void RecordingStats::add(const RecordingReader& nReader, const tool::Record& nRecord) {
  noteTime(nReader, nRecord);
  mKind = nRecord.mKind;
  ++mRecords;
  mBytes += nRecord.mWholeSize;
  statsOf(nRecord.mId).add(recordType(nRecord), nRecord.mData.size());
}

void RecordingStats::noteTime(const RecordingReader& nReader, const tool::Record& nRecord) {
  const uint64_t lBefore = mTimeline.getElapsedMs();
  mTimeline.step(nRecord.mTick);
  if (mRecords == 0) mFirstTick = nRecord.mTick;
  mLastTick = nRecord.mTick;
  const int64_t lTime = mClock.timeOf(nRecord);
  if (mFirstTime == NO_TIME && lTime != NO_TIME) {
    mFirstTime = lTime - static_cast<int64_t>(mTimeline.getElapsedMs());  // the first records had no clock yet
  }
  if (lTime != NO_TIME) mLastTime = lTime;
  const Break lBreak = {{}, nRecord.mOffset, lBefore, mTimeline.getStepMs()};
  const bool lIsGap = !mTimeline.isBackward() && lBreak.mLengthMs >= mGapMs;
  if (!lIsGap && !mTimeline.isBackward()) return;
  std::vector<Break>& lList = lIsGap ? mGaps : mBackward;
  ++(lIsGap ? mGapNum : mBackwardNum);
  if (lList.size() >= MAX_LISTED) return;
  lList.push_back(lBreak);
  lList.back().mPath = nReader.getPath();
}

IdStats& RecordingStats::statsOf(int nId) {
  if (nId == mLastId && mpLastStats != nullptr) return *mpLastStats;
  const auto lFound = mIds.find(nId);
  if (lFound == mIds.end() && mIds.size() >= MAX_IDS) return mOtherIds;
  mLastId = nId;
  mpLastStats = lFound != mIds.end() ? &lFound->second : &mIds[nId];
  return *mpLastStats;
}

void RecordingStats::onDamage(const std::string& nPath, const tool::RecordDamage& nDamage) {
  ++mDamageNum;
  mLostBytes += nDamage.mLength;
  if (mDamages.size() < MAX_LISTED) mDamages.push_back({nPath, nDamage});
}

void RecordingStats::onUnreadable(const std::string& nPath, const std::string& nReason) {
  mUnreadable.push_back(nPath + ": " + nReason);
}

}  // namespace logtool
