#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace drive {

/// A thread for what may never return, such as calls that touch a medium. It does one task after the other, and turns a
/// clock between them. Who waits for its end waits for a limited time, and then leaves it behind.
class Worker {
 public:
  using Clock = std::chrono::steady_clock;
  using Task = std::function<void()>;

  Worker() = default;
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  /// @param nOnTick called every nTick
  /// False where the system gives no thread.
  bool start(const char* npName, Clock::duration nTick, Task nOnTick);
  void post(Task nTask);

  /// Does what is posted, then the last task, and ends the thread. False when that takes longer than the limit: the
  /// thread is left behind, and this object and whatever the tasks use must outlive it.
  bool finish(Task nLast, Clock::duration nLimit);
  bool isFinishing() const;  ///< for long tasks
  /// How long the task under way has taken so far.
  Clock::duration busyFor() const;

 private:
  void run();
  Task next();

  Clock::duration mTick{};
  Task mOnTick;
  std::thread mThread;
  mutable std::mutex mMutex;
  std::condition_variable mChange;
  std::deque<Task> mTasks;  // guarded by mMutex, as what follows
  Clock::time_point mNextTick;
  Clock::time_point mBusySince = Clock::time_point::max();
  bool mIsFinishing = false;
  bool mIsOver = false;
};

}  // namespace drive
