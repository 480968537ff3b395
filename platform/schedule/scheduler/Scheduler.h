// The threads of a run, and who of them goes on.
#pragma once

#include <pthread.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "LockOrder.h"
#include "Strategy.h"
#include "Trace.h"

namespace schedule {

const int64_t NS_PER_MS = 1000000;
const int64_t NEVER = INT64_MAX;
const uint64_t MOST_STEPS = 3000000;  // of a run

/// A thread as the scheduler sees it. Real threads stand behind it, of which one runs: the one that has the turn.
struct Worker {
  enum State { RUNNABLE, WAITING, ENDED };

  unsigned int mNumber = 0;
  std::string mName;
  State mState = RUNNABLE;
  const char* mpOperation = "";        // that it waits in
  const void* mpObject = nullptr;      // that it waits for
  int64_t mDueNs = NEVER;              // when its wait is over
  int64_t mSinceNs = 0;                // it waits
  bool mIsInTime = true;               // woken, and not by time
  bool (*mpIsReady)(void*) = nullptr;  // asked, where the kernel alone knows
  void* mpReadyOf = nullptr;
  uint64_t mPriority = 0;
  std::vector<const pthread_mutex_t*> mHeld;
  const char* mpWithin = nullptr;  // what must be over by
  int64_t mWithinNs = NEVER;       // then

  class Scheduler* mpScheduler = nullptr;
  pthread_t mThread = {};
  bool mIsReleased = false;  // joined or detached
  void* (*mpEntry)(void*) = nullptr;
  void* mpArgument = nullptr;
  int mTask = 0;  // of the kernel
  std::atomic<int> mTurn{0};
};

/// All of it is called by the thread that has the turn, but for the way in of a new thread. No lock is needed.
class Scheduler {
 public:
  static Scheduler* active() { return tpSelf == nullptr ? nullptr : gpActive; }  ///< null outside a run

  Scheduler(uint64_t nSeed, const LockOrder& nOrder);  ///< from here on the calling thread is the first of a run

  /// The running thread is about to do this: another may go on before.
  void point(const char* npOperation, const void* npObject) {
    step(npOperation, npObject);
    if (mStrategy.isChange()) change();
    if (mIsOvertaken) giveWay();
  }
  void yield();
  /// The running thread waits. False when the time is over.
  bool wait(const char* npOperation, const void* npObject, int64_t nDueNs = NEVER);
  bool waitUntilReady(const char* npOperation, bool (*npIsReady)(void*), void* npOf, int64_t nDueNs);
  void wake(const void* npObject, unsigned int nNum);  ///< so many of those that wait for it, whom the seed chooses

  Worker* add(void* (*npEntry)(void*), void* npArgument);
  void enter(Worker* npWorker);  ///< the way in of a new thread: returns when it has the turn
  void leave();                  ///< the way out: the turn goes on
  Worker* find(pthread_t nThread);

  void took(const pthread_mutex_t* npMutex);
  void released(const pthread_mutex_t* npMutex);
  const char* heldName() const;  ///< a lock that the running thread holds, or null

  [[noreturn]] void fail(const std::string& nWords);  ///< prints the report, ends the process
  void printState(FILE* npTo);

  Worker& self() { return *tpSelf; }
  Trace& trace() { return mTrace; }
  Strategy& strategy() { return mStrategy; }
  int64_t nowNs() const { return mNowNs; }
  void end() { tpSelf = nullptr; }  ///< the first thread goes on alone; who still waits is left there

  static constexpr int64_t BEGIN_NS = int64_t{1000000000000};  // the monotonic clock when a run begins

 private:
  void step(const char* npOperation, const void* npObject) {
    mTrace.add(mNowNs - BEGIN_NS, tpSelf->mNumber, npOperation, npObject);
    if (mTrace.steps() > MOST_STEPS) fail("the run does not come to an end");
  }
  void change();
  void giveWay();
  void mayOvertake(const Worker& nWorker);
  Worker* choose(bool nMayStay);
  void handOver(Worker* npTo);
  void awaitTurn(Worker* npWorker);
  void awaitEnd();
  bool askReady();
  void passTime();
  void moveTimeTo(int64_t nNowNs);
  void checkLimits();
  void checkOrder(const char* npTaken);
  std::string stateOf(const Worker& nWorker);
  static const char* nameOfThread(unsigned int nNumber);

  static Scheduler* gpActive;
  static thread_local Worker* tpSelf;

  Strategy mStrategy;
  const LockOrder& mOrder;
  Trace mTrace{&Scheduler::nameOfThread};
  int64_t mNowNs = BEGIN_NS;
  std::vector<std::unique_ptr<Worker>> mWorkers;
  std::vector<Worker*> mAlive, mCandidates;
  bool mIsOvertaken = false;  // by priority: who has become able to run goes before the running one
  int mEndingTask = 0;        // whose real thread has still to go
};

}  // namespace schedule
