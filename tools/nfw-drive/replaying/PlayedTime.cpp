#include "PlayedTime.h"

#include "RecordText.h"

namespace drive {

namespace {

const uint32_t PAUSE_MS = 1000;    // between recordings of which nothing better is known
const int32_t DISORDER_MS = 1000;  // of records that several threads have written

int32_t distance(uint32_t nFrom, uint32_t nTo) { return static_cast<int32_t>(nTo - nFrom); }

}  // namespace

int64_t PlayedTime::next(const tool::Record& nRecord) {
  const bool lIsAnew = mIsFileNew || distance(mLastTick, nRecord.mTick) < -DISORDER_MS;
  const int64_t lWallMs = nRecord.mStamp.empty() ? -1 : tool::stampMs(nRecord.mStamp);
  if (lIsAnew) {
    mOffset = mIsBegun ? length() + gap(nRecord, lWallMs) : 0;
    mFirstTick = nRecord.mTick;
  }
  mIsFileNew = false;
  mIsBegun = true;
  mLastTick = nRecord.mTick;
  mLastWallMs = lWallMs;
  return int64_t{mOffset} + distance(mFirstTick, nRecord.mTick);
}

uint32_t PlayedTime::gap(const tool::Record& nRecord, int64_t nWallMs) const {
  const int32_t lTicks = distance(mLastTick, nRecord.mTick);
  if (lTicks >= 0) return static_cast<uint32_t>(lTicks);
  if (lTicks >= -DISORDER_MS) return 0;
  return mLastWallMs >= 0 && nWallMs >= mLastWallMs ? static_cast<uint32_t>(nWallMs - mLastWallMs) : PAUSE_MS;
}

}  // namespace drive
