#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace drive {

/// Lets sources take turns at handing sentences on: one has the turn until its epoch is over, and those that wait come
/// in their order. Whose epoch stays open loses the turn when nothing came for a while, and at last in any case. Any
/// thread; nothing is allocated once it is made.
class Turns {
 public:
  using Clock = std::chrono::steady_clock;
  struct Limits {
    Clock::duration mQuiet = std::chrono::milliseconds(200);  ///< more than a sentence takes at 4800 baud
    Clock::duration mLongest = std::chrono::seconds(1);
  };

  Turns(size_t nSources, const Limits& nLimits) : mLimits(nLimits) { mWaiting.reserve(nSources); }

  /// Waits for the turn of a source, and does something in it that nobody else does meanwhile.
  /// @param nIsLast the turn is over behind that
  /// @return what it returns; false once all is closed
  template <class Use>
  bool use(size_t nSource, bool nIsLast, const Use& nUse) {
    std::unique_lock<std::mutex> lLock(mMutex);
    if (!await(nSource, lLock)) return false;
    const bool lGoesOn = nUse();
    mLastUse = Clock::now();
    if (nIsLast) pass();
    return lGoesOn;
  }
  void end(size_t nSource);  ///< its turn is over, if it has it
  void close();              ///< lets everybody go who waits, and gives no more turns

 private:
  static constexpr size_t NOBODY = SIZE_MAX;

  bool await(size_t nSource, std::unique_lock<std::mutex>& nLock);
  bool isFree() const { return mHolder == NOBODY || Clock::now() >= due(); }
  Clock::time_point due() const;
  void pass();

  const Limits mLimits;
  std::mutex mMutex;  // guards what follows
  std::condition_variable mChange;
  std::vector<size_t> mWaiting;  // the next first
  size_t mHolder = NOBODY;
  Clock::time_point mBegin, mLastUse;  // of the holder's turn
  bool mIsClosed = false;
};

}  // namespace drive
