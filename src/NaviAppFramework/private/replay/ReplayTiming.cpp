#include "ReplayTiming.h"

namespace nfw {
namespace {

const uint32_t PAUSE_MS = 1000;  // between two recordings of one file

}  // namespace

void ReplayTiming::start(uint32_t nStartTick, uint32_t nFirstTime) {
  mStart = nStartTick;
  mBase = nFirstTime;
  mLast = 0;
  mLastBase = 0;
}

// The distance played is counted from the base of the record scheduled last: the base may have gone down since.
bool ReplayTiming::due(uint32_t nTime, uint32_t* npDue) {
  if (nTime < mBase) {
    if (mRule == REBASED) mBase = nTime;
    return false;
  }
  if (mRule == REBASED && nTime < mLast) {
    mStart += mLast - mLastBase + PAUSE_MS;
    mBase = nTime;
  }
  *npDue = nTime + mStart - mBase;
  return true;
}

void ReplayTiming::scheduled(uint32_t nTime) {
  mLast = nTime;
  mLastBase = mBase;
}

uint32_t ReplayTiming::interval(uint32_t nDue, uint32_t nNow) {
  const uint32_t lDistance = nDue - nNow;
  return static_cast<int32_t>(lDistance) > 0 ? lDistance : 0;
}

}  // namespace nfw
