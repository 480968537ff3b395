#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace logtool {

/// A line on standard error that tells how far a run is, its rate and the time left: only on a terminal, and only when
/// the run takes more than a second.
class Progress {
 public:
  /// @param nTotal bytes to read, 0 when that is not known
  explicit Progress(uint64_t nTotal);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Cheap enough to be called for every record.
  void update(uint64_t nDone) {
    if ((++mCalls & 0xFFF) == 0 && mIsShown) show(nDone);
  }

 private:
  using Clock = std::chrono::steady_clock;
  void show(uint64_t nDone);

  const uint64_t mTotal;
  const bool mIsShown;
  const Clock::time_point mStart = Clock::now();
  Clock::time_point mNext = mStart + std::chrono::seconds(1);
  uint32_t mCalls = 0;
  bool mHasLine = false;
};

/// "12.3 MiB".
std::string sizeText(uint64_t nBytes);

}  // namespace logtool
