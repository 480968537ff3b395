// The timers of one thread.
#pragma once

#include <cstdint>
#include <vector>

#include "Clock.h"

namespace utl {

class ThreadMsgListener;

/// Timers by due time. A timer is armed until it expires, then queued until its message is taken, then armed again when
/// expiries are left: so it has at most one message in the queue. Guarded by its owner's lock.
class TimerTable {
 public:
  struct Expiry {
    int mId;
    unsigned int mParam;
    ThreadMsgListener* mpListener;
  };

  explicit TimerTable(unsigned int nReserved);
  ~TimerTable();
  TimerTable(const TimerTable&) = delete;
  TimerTable& operator=(const TimerTable&) = delete;

  /// Takes memory only beyond the reservation. Returns the id.
  int arm(ThreadMsgListener* npListener, int64_t nNowMs, unsigned int nIntervalMs, int nCount, unsigned int nParam);
  int64_t earliestMs() const { return mEarliestMs; }  ///< NEVER when none is armed
  unsigned int capacity() const { return static_cast<unsigned int>(mTimers.size()); }

  /// The index of the timer that is due first, from now on queued; -1 when none is due.
  int expire(int64_t nNowMs);
  /// The queued timer with the least id above this one; a null listener stands for any. -1: none.
  int nextQueued(const ThreadMsgListener* npListener, int nAboveId) const;
  bool isQueued(int nIndex) const { return timer(nIndex).mState == QUEUED; }
  Expiry expiry(int nIndex) const {  ///< of a queued timer, as the next
    return {timer(nIndex).mId, timer(nIndex).mParam, timer(nIndex).mpListener};
  }
  Expiry take(int nIndex, int64_t nNowMs);

  bool remove(int nId);
  void removeOf(const ThreadMsgListener* npListener);
  void clear();

 private:
  enum State { FREE, ARMED, QUEUED };
  struct Timer {
    State mState = FREE;
    int mId = 0;
    int64_t mDueMs = 0;
    uint64_t mOrder = 0;  // of setTimer: decides between equal due times
    unsigned int mIntervalMs = 0;
    int mLeft = 0;  // expiries to come, 0: until killed
    unsigned int mParam = 0;
    ThreadMsgListener* mpListener = nullptr;
  };

  Timer& timer(int nIndex) { return mTimers[static_cast<unsigned int>(nIndex)]; }
  const Timer& timer(int nIndex) const { return mTimers[static_cast<unsigned int>(nIndex)]; }
  int freeIndex();
  void insert(int nIndex);
  void release(Timer* npTimer);
  void noteEarliest();
  template <class Chosen>
  bool removeIf(Chosen nChosen);

  const unsigned int mReserved;
  std::vector<Timer> mTimers;
  std::vector<int> mArmed;             // the one that is due first stands last
  int64_t mEarliestMs = Clock::NEVER;  // of these
  uint64_t mLastOrder = 0;
};

}  // namespace utl
