// What every benchmark program needs: a clock, ratios to a floor that withstand a noisy machine, and a count of
// requests for memory. Included by one source file of a program, for it stands in front of malloc.
#pragma once

#include <time.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace bench {

inline int64_t clockNs(clockid_t nClock) {
  timespec lTime = {};
  clock_gettime(nClock, &lTime);
  return static_cast<int64_t>(lTime.tv_sec) * 1000000000 + lTime.tv_nsec;
}
inline int64_t nowNs() { return clockNs(CLOCK_MONOTONIC); }
inline int64_t threadCpuNs() { return clockNs(CLOCK_THREAD_CPUTIME_ID); }  ///< not disturbed by other processes' turns

inline double median(std::vector<double> nValues) {
  if (nValues.empty()) return 0;
  const auto lMiddle = nValues.begin() + static_cast<std::ptrdiff_t>(nValues.size() / 2);
  std::nth_element(nValues.begin(), lMiddle, nValues.end());
  return *lMiddle;
}

/// Results in rows: ours and a floor, each in nanoseconds, their ratio and the aim. Or one value and its aim.
class Table {
 public:
  using Measure = std::function<double()>;  // one round: nanoseconds per operation

  explicit Table(const char* npTitle) {
    std::printf("\n%s\n%-46s %12s %12s %8s %8s\n", npTitle, "", "ours ns", "floor ns", "ratio", "aim");
  }

  /// Runs both in turn, `nRounds` times after one round to warm up, and takes the medians. The ratio is the median of
  /// the ratios of pairs, so that a busy spell of the machine hits both sides.
  double ratio(const std::string& nName, const Measure& nOurs, const Measure& nFloor, double nAim, int nRounds = 15) {
    std::vector<double> lOurs, lFloors, lRatios;
    for (int i = -1; i < nRounds; ++i) {
      const bool lFloorFirst = i % 2 == 0;
      const double lEarly = lFloorFirst ? nFloor() : 0, lOur = nOurs(), lFloor = lFloorFirst ? lEarly : nFloor();
      if (i < 0) continue;
      lOurs.push_back(lOur);
      lFloors.push_back(lFloor);
      lRatios.push_back(lOur / lFloor);
    }
    const double lRatio = median(lRatios);
    std::printf("%-46s %12.1f %12.1f %8.2f %8.2f%s\n", nName.c_str(), median(lOurs), median(lFloors), lRatio, nAim,
                lRatio <= nAim ? "" : "  above");
    std::fflush(stdout);
    return lRatio;
  }

  /// A value that must not exceed its aim.
  void value(const std::string& nName, double nValue, double nAim, const char* npUnit) {
    std::printf("%-46s %12.3f %s, aim %.3f%s\n", nName.c_str(), nValue, npUnit, nAim, nValue <= nAim ? "" : "  above");
    std::fflush(stdout);
  }
};

inline std::atomic<unsigned long> gAllocations{0};

/// Requests for memory in the whole process so far, the C library's own included.
inline unsigned long allocations() { return gAllocations.load(std::memory_order_relaxed); }

}  // namespace bench

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's own, behind the ones that stand in for them here
extern "C" {
void* __libc_malloc(size_t nSize);
void* __libc_calloc(size_t nNum, size_t nSize);
void* __libc_realloc(void* npMemory, size_t nSize);
void* __libc_memalign(size_t nAlignment, size_t nSize);

void* malloc(size_t nSize) noexcept {
  bench::gAllocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_malloc(nSize);
}
void* calloc(size_t nNum, size_t nSize) noexcept {
  bench::gAllocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_calloc(nNum, nSize);
}
void* realloc(void* npMemory, size_t nSize) noexcept {
  bench::gAllocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_realloc(npMemory, nSize);
}
void* aligned_alloc(size_t nAlignment, size_t nSize) noexcept {
  bench::gAllocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_memalign(nAlignment, nSize);
}
}
// NOLINTEND(bugprone-reserved-identifier)
