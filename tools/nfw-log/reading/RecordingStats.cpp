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
  const bool lIsGap = !mTimeline.isBackward() && mTimeline.getStepMs() >= mGapMs;
  if (lIsGap || mTimeline.isBackward())
    noteBreak(lIsGap, {nReader.getPath(), nRecord.mOffset, lBefore, mTimeline.getStepMs()});
}

void RecordingStats::noteBreak(bool nIsGap, const Break& nBreak) {
  std::vector<Break>& lList = nIsGap ? mGaps : mBackward;
  ++(nIsGap ? mGapNum : mBackwardNum);
  if (lList.size() < MAX_LISTED) lList.push_back(nBreak);
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
