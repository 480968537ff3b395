#include "PlayClock.h"

#include "Watched.h"

namespace nfw {
namespace {

const int64_t NORMAL = PlayClock::NORMAL_RATE;

int64_t distance(uint32_t nFrom, uint32_t nTo) { return static_cast<int32_t>(nTo - nFrom); }

int64_t divideDown(int64_t nValue, int64_t nBy) { return nValue / nBy - (nValue % nBy < 0 ? 1 : 0); }

int64_t divideUp(int64_t nValue, int64_t nBy) { return nValue / nBy + (nValue % nBy > 0 ? 1 : 0); }

}  // namespace

void PlayClock::reset() {
  const WatchedLock lLock(mSync);
  mIsStarted = mIsPaused = false;
  mChangeNumber = 0;
  mRate = NORMAL_RATE;
}

void PlayClock::start(uint32_t nZeroTick) {
  const WatchedLock lLock(mSync);
  mIsStarted = true;
  mZero = mTick = nZeroTick;
  mNominal = mZero - (mIsPaused ? 1 : 0);
}

// While paused the first record there waits for a step too.
void PlayClock::moveTo(uint32_t nOffsetMs, uint32_t nTick) {
  const WatchedLock lLock(mSync);
  mNominal = mZero + nOffsetMs - (mIsPaused ? 1 : 0);
  mTick = nTick;
  ++mChangeNumber;
}

bool PlayClock::pause(uint32_t nNow) {
  const WatchedLock lLock(mSync);
  if (mIsPaused) return false;
  mNominal = nominal(nNow);
  mIsPaused = true;
  ++mChangeNumber;
  return true;
}

bool PlayClock::resume(uint32_t nNow) {
  const WatchedLock lLock(mSync);
  if (!mIsPaused) return false;
  mTick = nNow;
  mIsPaused = false;
  ++mChangeNumber;
  return true;
}

// The wait for the first record, or for that behind a seek, is none of the recording's time: it stays as long as it is.
void PlayClock::setRate(unsigned int nPermille, uint32_t nNow) {
  const WatchedLock lLock(mSync);
  if (distance(mTick, nNow) > 0) {
    mNominal = nominal(nNow);
    mTick = nNow;
  }
  mRate = nPermille;
  ++mChangeNumber;
}

void PlayClock::stepTo(uint32_t nNominalTick) {
  const WatchedLock lLock(mSync);
  if (mIsPaused) mNominal = nNominalTick;
  ++mChangeNumber;
}

// Rounded up: a fast replay is late by a part of a millisecond, never early.
bool PlayClock::due(uint32_t nNominalTick, uint32_t nNow, uint32_t* npTick) const {
  *npTick = nNominalTick;
  if (!isControlled()) return true;
  const WatchedLock lLock(mSync);
  const int64_t lDistance = distance(mNominal, nNominalTick);
  if (mIsPaused && lDistance > 0) return false;
  *npTick = mIsPaused ? nNow + 1 : mTick + static_cast<uint32_t>(divideUp(lDistance * NORMAL, mRate));
  return true;
}

bool PlayClock::hasCome(uint32_t nNominalTick, uint32_t nNow) const {
  const WatchedLock lLock(mSync);
  return distance(nNominalTick, nominal(nNow)) >= 0;
}

uint32_t PlayClock::position(uint32_t nNow) const {
  const WatchedLock lLock(mSync);
  if (!mIsStarted) return 0;
  const int64_t lPosition = distance(mZero, nominal(nNow));
  return lPosition > 0 ? static_cast<uint32_t>(lPosition) : 0;
}

unsigned int PlayClock::getRate() const {
  const WatchedLock lLock(mSync);
  return mRate;
}

bool PlayClock::isPaused() const {
  const WatchedLock lLock(mSync);
  return mIsPaused;
}

/// Rounded down: what has been due by now, and nothing else, lies up to here.
uint32_t PlayClock::nominal(uint32_t nNow) const {
  if (mIsPaused) return mNominal;
  return mNominal + static_cast<uint32_t>(divideDown(distance(mTick, nNow) * mRate, NORMAL));
}

}  // namespace nfw
