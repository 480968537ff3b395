#include "Pacer.h"

#include "SentenceTime.h"

namespace drive {

int64_t Pacer::offset(int64_t nTimeOfDay) {
  const int64_t lLast = mLast < 0 ? nTimeOfDay : mLast;
  int64_t lStep = nTimeOfDay - lLast;
  if (lStep < -tool::MS_PER_DAY / 2) lStep += tool::MS_PER_DAY;
  if (lStep > tool::MS_PER_DAY / 2) lStep -= tool::MS_PER_DAY;
  if (lStep < 0 && lStep >= -MAX_LAG_MS) return mOffset;
  mLast = nTimeOfDay;
  mOffset += lStep < 0 || lStep > MAX_STEP_MS ? BREAK_MS : lStep;
  return mOffset;
}

int64_t Pacer::realTime(int64_t nOffset, double nSpeed) {
  return static_cast<int64_t>(static_cast<double>(nOffset) * 1e6 / nSpeed);
}

}  // namespace drive
