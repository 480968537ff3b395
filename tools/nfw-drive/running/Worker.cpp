#include "Worker.h"

#include <pthread.h>

#include "StartThread.h"

namespace drive {

Worker::~Worker() {
  if (mThread.joinable()) finish({}, Clock::duration::zero());
  if (mThread.joinable()) mThread.join();
}

bool Worker::start(const char* npName, Clock::duration nTick, Task nOnTick) {
  mTick = nTick;
  mOnTick = std::move(nOnTick);
  mNextTick = Clock::now() + nTick;
  return tool::startThread(&mThread, [this, npName] {
    ::pthread_setname_np(::pthread_self(), npName);
    run();
  });
}

void Worker::post(Task nTask) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  mTasks.push_back(std::move(nTask));
  mChange.notify_all();
}

bool Worker::finish(Task nLast, Clock::duration nLimit) {
  if (!mThread.joinable()) return true;
  std::unique_lock<std::mutex> lLock(mMutex);
  if (nLast) mTasks.push_back(std::move(nLast));
  mIsFinishing = true;
  mChange.notify_all();
  if (!mChange.wait_for(lLock, nLimit, [this] { return mIsOver; })) return false;
  lLock.unlock();
  mThread.join();
  return true;
}

bool Worker::isFinishing() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mIsFinishing;
}

Worker::Clock::duration Worker::busyFor() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mBusySince == Clock::time_point::max() ? Clock::duration::zero() : Clock::now() - mBusySince;
}

void Worker::run() {
  for (Task lTask = next(); lTask; lTask = next()) lTask();
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsOver = true;
  mChange.notify_all();
}

/// The next task, or the clock's turn; none at the end.
Worker::Task Worker::next() {
  std::unique_lock<std::mutex> lLock(mMutex);
  mBusySince = Clock::time_point::max();
  mChange.wait_until(lLock, mNextTick, [this] { return !mTasks.empty() || mIsFinishing; });
  Task lTask;
  if (!mTasks.empty()) {
    lTask = std::move(mTasks.front());
    mTasks.pop_front();
  } else if (!mIsFinishing) {
    lTask = mOnTick;
    mNextTick = Clock::now() + mTick;
  }
  mBusySince = Clock::now();
  return lTask;
}

}  // namespace drive
