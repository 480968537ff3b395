#pragma once

#include <condition_variable>
#include <mutex>

namespace tool {

/// Bounds what is under way between a producer that must lose nothing and a queue of fixed length: one producer takes a
/// place for each message and waits while there is none; the consumer gives it back when it has handled the message.
class Window {
 public:
  explicit Window(unsigned int nPlaces) : mPlaces(nPlaces) {}

  /// Takes places, all or none. False once the window is closed.
  bool acquire(unsigned int nCount) {
    std::unique_lock<std::mutex> lLock(mMutex);
    if (mTaken + nCount > mPlaces) ++mHeldBack;
    mChange.wait(lLock, [this, nCount] { return mTaken + nCount <= mPlaces || mClosed; });
    if (mClosed) return false;
    mTaken += nCount;
    return true;
  }

  /// A waiting producer is woken when half of the places are free, not for each.
  void release() {
    const std::lock_guard<std::mutex> lLock(mMutex);
    --mTaken;
    if (mTaken <= mPlaces / 2) mChange.notify_one();
  }

  /// Lets waiting producers go and admits no more.
  void close() {
    const std::lock_guard<std::mutex> lLock(mMutex);
    mClosed = true;
    mChange.notify_all();
  }

  /// How often the producer had to wait.
  unsigned long long heldBack() const {
    const std::lock_guard<std::mutex> lLock(mMutex);
    return mHeldBack;
  }

 private:
  mutable std::mutex mMutex;
  std::condition_variable mChange;
  const unsigned int mPlaces;
  unsigned int mTaken = 0;
  unsigned long long mHeldBack = 0;
  bool mClosed = false;
};

}  // namespace tool
