// The ids of timers: one count per process.
#pragma once

#include <vector>

#include "Clock.h"

namespace utl {

/// Gives ids from 1 up, past INT_MAX again from 1, and never one that is still given. Any thread may call.
class TimerIds {
 public:
  static TimerIds& ofProcess();

  explicit TimerIds(int nLast = 0) : mLast(nLast) {}
  void reserve(unsigned int nNum);  ///< room for so many more; without it take() may need memory
  void unreserve(unsigned int nNum);
  int take();
  void give(int nId);

 private:
  Mutex mMutex;
  int mLast ZTS_ANNOTATION(guarded_by(mMutex));
  size_t mReserved ZTS_ANNOTATION(guarded_by(mMutex)) = 0;
  std::vector<int> mAlive ZTS_ANNOTATION(guarded_by(mMutex));  // sorted
};

}  // namespace utl
