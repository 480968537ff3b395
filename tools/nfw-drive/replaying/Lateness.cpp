#include "Lateness.h"

#include <algorithm>

namespace drive {

void Lateness::begin(std::vector<uint32_t> nDues, unsigned int nRate) {
  mDues = std::move(nDues);
  mRate = nRate / 1000.0;
  mLate.reserve(mDues.size());
}

void Lateness::note() {
  if (mIsOver || mLate.size() == mDues.size()) return;
  const std::chrono::duration<double, std::milli> lPassed = Clock::now() - mStart;
  mLate.push_back(static_cast<float>(lPassed.count() - 1000.0 - mDues[mLate.size()] / mRate));
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
