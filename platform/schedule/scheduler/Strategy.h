// Who goes on.
#pragma once

#include <cstdint>

#include "Random.h"

namespace schedule {

/// Half of the seeds walk at random: at each point they change the thread with one probability for the whole run. The
/// other half change by priority: the thread of the highest priority runs, and at a few points, drawn over a number of
/// steps that is drawn as well, the running one gets the lowest. An order that needs few such changes is found that way
/// with a probability that does not shrink with the length of the run.
class Strategy {
 public:
  explicit Strategy(uint64_t nSeed);

  bool isByPriority() const { return mIsByPriority; }
  /// Counts a point. True when the running thread may be changed there.
  bool isChange() { return --mPointsLeft == 0; }
  void drawNextChange();
  uint64_t newPriority() { return (uint64_t{1} << 32) + mRandom.below(uint64_t{1} << 31); }
  uint64_t lowestPriority() { return --mLowest; }
  Random& random() { return mRandom; }

  bool mHasLateTimers;     ///< a time-out may come a little late
  bool mHasSlowFiles;      ///< a file call may take its time
  bool mHasSpuriousWakes;  ///< a wait may return for nothing

 private:
  Random mRandom;
  bool mIsByPriority;
  unsigned int mMeanSteps;    // between two changes of a random walk
  unsigned int mChanges = 0;  // that are left, by priority
  uint64_t mSpan = 0;         // of steps over which these are drawn
  uint64_t mPointsLeft = 0;
  uint64_t mLowest = uint64_t{1} << 32;
};

}  // namespace schedule
