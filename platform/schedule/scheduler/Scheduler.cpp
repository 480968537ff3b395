#include "Scheduler.h"

#include <linux/futex.h>
#include <sched.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "Real.h"

namespace schedule {

namespace {

const int64_t MOST_NS = 4 * 3600 * 1000 * NS_PER_MS;
const int64_t LATE_NS = 3 * NS_PER_MS;

int currentTask() { return static_cast<int>(real::systemCall(SYS_gettid)); }

}  // namespace

Scheduler* Scheduler::gpActive = nullptr;
thread_local Worker* Scheduler::tpSelf = nullptr;

Scheduler::Scheduler(uint64_t nSeed, const LockOrder& nOrder) : mStrategy(nSeed), mOrder(nOrder) {
  mWorkers.reserve(256);
  Worker* const lpFirst = add(nullptr, nullptr);
  lpFirst->mName = "main";
  gpActive = this;
  tpSelf = lpFirst;
}

const char* Scheduler::nameOfThread(unsigned int nNumber) { return gpActive->mWorkers[nNumber]->mName.c_str(); }

Worker* Scheduler::add(void* (*npEntry)(void*), void* npArgument) {
  mWorkers.push_back(std::make_unique<Worker>());
  Worker* const lpWorker = mWorkers.back().get();
  lpWorker->mNumber = static_cast<unsigned int>(mWorkers.size() - 1);
  lpWorker->mName = "thread " + std::to_string(lpWorker->mNumber);
  lpWorker->mPriority = mStrategy.newPriority();
  lpWorker->mpScheduler = this;
  lpWorker->mpEntry = npEntry;
  lpWorker->mpArgument = npArgument;
  mAlive.push_back(lpWorker);
  mayOvertake(*lpWorker);
  return lpWorker;
}

Worker* Scheduler::find(pthread_t nThread) {
  for (const auto& lpEach : mWorkers) {
    if (!lpEach->mIsReleased && pthread_equal(lpEach->mThread, nThread) != 0) return lpEach.get();
  }
  fail("a thread is joined or detached that was joined or detached before");
}

// --- Who goes on

void Scheduler::change() {
  mStrategy.drawNextChange();
  if (mStrategy.isByPriority()) tpSelf->mPriority = mStrategy.lowestPriority();
  handOver(choose(mStrategy.isByPriority()));
}

void Scheduler::mayOvertake(const Worker& nWorker) {
  if (mStrategy.isByPriority() && tpSelf != nullptr && nWorker.mPriority > tpSelf->mPriority) mIsOvertaken = true;
}

void Scheduler::giveWay() {
  mIsOvertaken = false;
  handOver(choose(true));
}

void Scheduler::yield() {
  step("yields", nullptr);
  if (mStrategy.isByPriority()) tpSelf->mPriority = mStrategy.lowestPriority();
  Worker* const lpNext = choose(mStrategy.isByPriority());
  if (lpNext == tpSelf) moveTimeTo(mNowNs + NS_PER_MS / 10);  // it may be waiting for time to pass
  handOver(lpNext);
}

/// The running thread stays where there is no other, and, unless it may not, where it is chosen.
Worker* Scheduler::choose(bool nMayStay) {
  mCandidates.clear();
  for (Worker* const lpEach : mAlive) {
    if (lpEach->mState == Worker::RUNNABLE && (nMayStay || lpEach != tpSelf)) mCandidates.push_back(lpEach);
  }
  if (mCandidates.empty()) return tpSelf->mState == Worker::RUNNABLE ? tpSelf : nullptr;
  if (!mStrategy.isByPriority()) return mCandidates[mStrategy.random().below(mCandidates.size())];
  return *std::max_element(mCandidates.begin(), mCandidates.end(),
                           [](const Worker* npA, const Worker* npB) { return npA->mPriority < npB->mPriority; });
}

void Scheduler::handOver(Worker* npTo) {
  mIsOvertaken = false;
  Worker* const lpFrom = tpSelf;
  if (npTo == lpFrom) return;
  npTo->mTurn.store(1);
  real::systemCall(SYS_futex, &npTo->mTurn, FUTEX_WAKE_PRIVATE, 1);
  if (lpFrom->mState != Worker::ENDED) awaitTurn(lpFrom);
}

void Scheduler::awaitTurn(Worker* npWorker) {
  while (npWorker->mTurn.load() == 0) real::systemCall(SYS_futex, &npWorker->mTurn, FUTEX_WAIT_PRIVATE, 0, nullptr);
  npWorker->mTurn.store(0);
  awaitEnd();
}

/// What a thread gives back on its way out it gives back before the next goes on: memory is the same in each run.
void Scheduler::awaitEnd() {
  while (mEndingTask != 0) {
    if (real::systemCall(SYS_tgkill, getpid(), mEndingTask, 0) != 0) mEndingTask = 0;
    real::systemCall(SYS_sched_yield);
  }
}

void Scheduler::enter(Worker* npWorker) {
  npWorker->mTask = currentTask();
  awaitTurn(npWorker);
  tpSelf = npWorker;
}

void Scheduler::leave() {
  point("ends", nullptr);
  Worker* const lpSelf = tpSelf;
  if (!lpSelf->mHeld.empty()) fail("a thread ends with a lock");
  lpSelf->mState = Worker::ENDED;
  mAlive.erase(std::find(mAlive.begin(), mAlive.end(), lpSelf));
  wake(lpSelf, ~0U);
  Worker* lpNext = choose(false);
  while (lpNext == nullptr) passTime(), lpNext = choose(false);
  mEndingTask = lpSelf->mTask;
  handOver(lpNext);
  tpSelf = nullptr;
}

// --- Waiting

bool Scheduler::wait(const char* npOperation, const void* npObject, int64_t nDueNs) {
  Worker& lSelf = *tpSelf;
  step(npOperation, npObject);
  lSelf.mState = Worker::WAITING;
  lSelf.mpOperation = npOperation;
  lSelf.mpObject = npObject;
  lSelf.mDueNs = nDueNs;
  lSelf.mSinceNs = mNowNs;
  lSelf.mIsInTime = true;
  Worker* lpNext = choose(false);
  while (lpNext == nullptr) {
    if (!askReady()) passTime();
    lpNext = choose(true);
  }
  handOver(lpNext);
  lSelf.mpIsReady = nullptr;
  return lSelf.mIsInTime;
}

bool Scheduler::waitUntilReady(const char* npOperation, bool (*npIsReady)(void*), void* npOf, int64_t nDueNs) {
  tpSelf->mpIsReady = npIsReady;
  tpSelf->mpReadyOf = npOf;
  return wait(npOperation, nullptr, nDueNs);
}

void Scheduler::wake(const void* npObject, unsigned int nNum) {
  mCandidates.clear();
  for (Worker* const lpEach : mAlive) {
    if (lpEach->mState == Worker::WAITING && lpEach->mpObject == npObject && npObject != nullptr) {
      mCandidates.push_back(lpEach);
    }
  }
  for (; nNum > 0 && !mCandidates.empty(); --nNum) {
    const unsigned int lChosen = mCandidates.size() == 1 ? 0 : mStrategy.random().below(mCandidates.size());
    mCandidates[lChosen]->mState = Worker::RUNNABLE;
    mayOvertake(*mCandidates[lChosen]);
    mCandidates.erase(mCandidates.begin() + lChosen);
  }
}

bool Scheduler::askReady() {
  bool lIsAny = false;
  for (Worker* const lpEach : mAlive) {
    if (lpEach->mState != Worker::WAITING || lpEach->mpIsReady == nullptr || !lpEach->mpIsReady(lpEach->mpReadyOf)) {
      continue;
    }
    lpEach->mState = Worker::RUNNABLE;
    lIsAny = true;
  }
  return lIsAny;
}

/// Nobody can run: time goes on to the next wait that is over then.
void Scheduler::passTime() {
  int64_t lDueNs = NEVER;
  for (const Worker* const lpEach : mAlive) lDueNs = std::min(lDueNs, lpEach->mDueNs);
  if (lDueNs == NEVER) fail("deadlock: every thread waits, and no time is due");
  if (mStrategy.mHasLateTimers) lDueNs += mStrategy.random().below(LATE_NS);
  moveTimeTo(std::max(mNowNs, lDueNs));
}

void Scheduler::moveTimeTo(int64_t nNowNs) {
  mNowNs = nNowNs;
  for (Worker* const lpEach : mAlive) {
    if (lpEach->mState != Worker::WAITING || lpEach->mDueNs > mNowNs) continue;
    lpEach->mState = Worker::RUNNABLE;
    lpEach->mIsInTime = false;
  }
  checkLimits();
}

void Scheduler::checkLimits() {
  for (const Worker* const lpEach : mAlive) {
    if (mNowNs > lpEach->mWithinNs) fail(std::string(lpEach->mpWithin) + " takes longer than it may");
  }
  if (mNowNs - BEGIN_NS > MOST_NS) fail("a wait without end: hours have passed");
}

// --- Locks

void Scheduler::took(const pthread_mutex_t* npMutex) {
  std::vector<const pthread_mutex_t*>& lHeld = tpSelf->mHeld;
  const char* const lpTaken = Trace::nameOf(npMutex);
  if (lpTaken != nullptr && std::find(lHeld.begin(), lHeld.end(), npMutex) == lHeld.end()) checkOrder(lpTaken);
  lHeld.push_back(npMutex);
}

void Scheduler::checkOrder(const char* npTaken) {
  for (const pthread_mutex_t* const lpEach : tpSelf->mHeld) {
    const char* const lpHeld = Trace::nameOf(lpEach);
    if (lpHeld == nullptr || mOrder.allows(lpHeld, npTaken)) continue;
    fail(std::string("the order of docs/threads.md does not allow ") + npTaken + " to be taken while " + lpHeld +
         " is held");
  }
}

void Scheduler::released(const pthread_mutex_t* npMutex) {
  std::vector<const pthread_mutex_t*>& lHeld = tpSelf->mHeld;
  const auto lFound = std::find(lHeld.rbegin(), lHeld.rend(), npMutex);
  if (lFound == lHeld.rend()) fail("a lock is released that the thread does not hold");
  lHeld.erase(std::next(lFound).base());
}

const char* Scheduler::heldName() const {
  for (const pthread_mutex_t* const lpEach : tpSelf->mHeld) {
    if (const char* const lpName = Trace::nameOf(lpEach)) return lpName;
  }
  return nullptr;
}

// --- The report

std::string Scheduler::stateOf(const Worker& nWorker) {
  std::string lState = "can run";
  if (nWorker.mState == Worker::WAITING) {
    lState = std::string(nWorker.mpOperation) + " " + mTrace.describe(nWorker.mpObject) + " since " +
             std::to_string((nWorker.mSinceNs - BEGIN_NS) / NS_PER_MS) + " ms";
    if (nWorker.mDueNs != NEVER) {
      lState += " until " + std::to_string((nWorker.mDueNs - BEGIN_NS) / NS_PER_MS) + " ms";
    }
  }
  for (const pthread_mutex_t* const lpEach : nWorker.mHeld) lState += ", holds " + mTrace.describe(lpEach);
  return lState;
}

void Scheduler::printState(FILE* npTo) {
  mTrace.print(npTo);
  for (const Worker* const lpEach : mAlive) {
    std::fprintf(npTo, "%s %-16s %s\n", lpEach == tpSelf ? ">" : " ", lpEach->mName.c_str(), stateOf(*lpEach).c_str());
  }
}

void Scheduler::fail(const std::string& nWords) {
  std::fflush(stdout);
  printState(stderr);
  std::fprintf(stderr, "%s: %s\n", tpSelf->mName.c_str(), nWords.c_str());
  std::fflush(nullptr);
  _exit(1);
}

}  // namespace schedule
