/// @file
/// Time of day, and the tick.
#pragma once

namespace utl {

/// A point of local time with milliseconds.
class Time {
 public:
  /// False when the object holds no time.
  bool get(unsigned int* npYear, unsigned int* npMonth, unsigned int* npDay, unsigned int* npHour,
           unsigned int* npMinute, unsigned int* npSecond, unsigned int* npMillisecond) const;

 private:
  friend bool getLocalTime(Time* npTime);
  long long mSeconds = -1;  // since 1970, UTC
  unsigned int mMillisecond = 0;
};

bool getLocalTime(Time* npTime);

/// The monotonic millisecond tick, and a stop watch on it.
class TimeCounter {
 public:
  static constexpr unsigned int FAILURE = 0xFFFFFFFFu;

  /// Milliseconds, low 32 bits. FAILURE when there is no clock; that one value of a running clock reads one less.
  static unsigned int getTickTime();

  void start();
  unsigned int getElapsed() const;  ///< milliseconds since start

 private:
  unsigned int mStart = 0;
};

}  // namespace utl
