/// @file
/// What every thread has.
#pragma once

namespace utl {

/// A scheduling priority: a value that the platform keeps with the thread. The host decides whether it is applied.
class ThreadPriority {
 public:
  explicit ThreadPriority(int nValue) : mValue(nValue) {}
  int getValue() const { return mValue; }

 private:
  int mValue;
};

/// An optional observer of a thread's watchdog.
class WatchdogTimerListener {
 public:
  virtual ~WatchdogTimerListener() = default;
};

/// What every thread object tells. Any thread may ask.
class Thread {
 public:
  virtual ~Thread() = default;

  virtual bool isRunning() const = 0;
  virtual int getId() const = 0;  ///< positive, unique in the process and never reused; 0 before the first start
  virtual const char* getName() const = 0;  ///< the full name; the kernel sees a shortened one

  static int getCurrentId();                ///< the caller's id, also for a thread that this library did not start
  static void sleep(unsigned int nTimeMs);  ///< 0 yields
};

}  // namespace utl
