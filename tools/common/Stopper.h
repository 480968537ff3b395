#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tool {

/// Ends waits: a request wakes every wait at once and for good. Any thread may request.
class Stopper {
 public:
  using Clock = std::chrono::steady_clock;

  Stopper();
  ~Stopper();
  Stopper(const Stopper&) = delete;
  Stopper& operator=(const Stopper&) = delete;

  void request();
  bool isRequested() const;

  /// True at the given time, false as soon as a stop is requested.
  bool waitUntil(Clock::time_point nTime);
  bool waitFor(Clock::duration nTime) { return waitUntil(Clock::now() + nTime); }

  /// Waits until poll(2) finds `nEvents` on the descriptor. STOPPED also when the wait fails.
  /// @param nLimit 0: none
  enum Outcome { READY, STOPPED, EXPIRED };
  Outcome waitFor(int nFd, short nEvents, std::chrono::milliseconds nLimit) const;

 private:
  mutable std::mutex mMutex;
  std::condition_variable mWake;
  bool mRequested = false;
  int mFd;  // readable once a stop is requested
};

}  // namespace tool
