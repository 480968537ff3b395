#include "Lateness.h"

#include <algorithm>

namespace drive {

void Lateness::begin(std::vector<uint32_t> nTicks, uint32_t nFirstTick) {
  mTicks = std::move(nTicks);
  mFirstTick = nFirstTick;
  mLate.reserve(mTicks.size());
}

void Lateness::note() {
  if (mLate.size() == mTicks.size()) return;
  const std::chrono::duration<double, std::milli> lPassed = Clock::now() - mStart;
  const uint32_t lDue = mTicks[mLate.size()] - mFirstTick;
  mLate.push_back(static_cast<float>(lPassed.count() - 1000.0 - lDue));
  mDuration = lPassed.count() / 1000.0;
}

double Lateness::quantile(double nPart) const {
  std::vector<float> lSorted = mLate;
  std::sort(lSorted.begin(), lSorted.end());
  return lSorted[static_cast<size_t>(nPart * static_cast<double>(lSorted.size() - 1))];
}

double Lateness::early() const {
  return std::max(0.0, -static_cast<double>(*std::min_element(mLate.begin(), mLate.end())));
}

}  // namespace drive
