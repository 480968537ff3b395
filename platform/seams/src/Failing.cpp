#include <mutex>

#include "SeamState.h"

namespace seams {

std::atomic<unsigned int> gArmedPoints{0};

namespace {

struct Failure {
  unsigned int mAfter = 0;  // successes still to come
  unsigned int mCount = 0;  // failures in all, 0: no limit
  unsigned int mHits = 0;
};

std::mutex gFailureMutex;
Failure gFailures[POINT_NUM];

unsigned int bitOf(Point nPoint) { return 1u << nPoint; }

}  // namespace

bool failsNow(Point nPoint) {
  std::lock_guard<std::mutex> lLock(gFailureMutex);
  if ((gArmedPoints.load(std::memory_order_relaxed) & bitOf(nPoint)) == 0) return false;
  Failure& lFailure = gFailures[nPoint];
  if (lFailure.mAfter > 0) {
    --lFailure.mAfter;
    return false;
  }
  if (lFailure.mCount != 0 && lFailure.mHits == lFailure.mCount) return false;
  ++lFailure.mHits;
  return true;
}

Failing::Failing(Point nPoint, unsigned int nAfter, unsigned int nCount) : mPoint(nPoint) {
  std::lock_guard<std::mutex> lLock(gFailureMutex);
  gFailures[nPoint] = Failure{nAfter, nCount, 0};
  gArmedPoints.fetch_or(bitOf(nPoint), std::memory_order_relaxed);
}

Failing::~Failing() {
  std::lock_guard<std::mutex> lLock(gFailureMutex);
  gArmedPoints.fetch_and(~bitOf(mPoint), std::memory_order_relaxed);
}

unsigned int Failing::hits() const {
  std::lock_guard<std::mutex> lLock(gFailureMutex);
  return gFailures[mPoint].mHits;
}

}  // namespace seams
