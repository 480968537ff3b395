// Hands for tests on the stand-ins: a clock moved by hand, a captured system log, failures on demand. Not part of what
// the unit's libraries give, never included by the framework; they are in a build of the stand-ins of their own, which
// tests link instead of the one that is installed.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "SeamPoint.h"

namespace seams {

/// While it lives, ticks, timers and timed waits follow it and not the system's clock. One at a time.
class ManualClock {
 public:
  explicit ManualClock(unsigned int nTickMs = 100000);
  ~ManualClock();
  ManualClock(const ManualClock&) = delete;
  ManualClock& operator=(const ManualClock&) = delete;

  /// Moves the clock and wakes every timed wait. Timers that came due are handed out by their own threads: to see them
  /// handled, send a synchronous message to the thread.
  void advance(unsigned int nMs);
  unsigned int tick() const;
};

/// While it lives, getLocalTime returns this time.
class FixedLocalTime {
 public:
  FixedLocalTime(unsigned int nYear, unsigned int nMonth, unsigned int nDay, unsigned int nHour, unsigned int nMinute,
                 unsigned int nSecond, unsigned int nMillisecond);
  ~FixedLocalTime();
  FixedLocalTime(const FixedLocalTime&) = delete;
  FixedLocalTime& operator=(const FixedLocalTime&) = delete;
};

/// While it lives, the point fails: after `nAfter` successes, `nCount` times (0: always). One per point at a time.
class Failing {
 public:
  explicit Failing(Point nPoint, unsigned int nAfter = 0, unsigned int nCount = 0);
  ~Failing();
  Failing(const Failing&) = delete;
  Failing& operator=(const Failing&) = delete;

  unsigned int hits() const;  ///< failures made so far

 private:
  Point mPoint;
};

/// While it lives, lines of the system log are kept here and not written. Any thread may log meanwhile.
class CapturedLog {
 public:
  struct Line {
    int mType;
    int mLevel;
    std::string mText;
  };

  CapturedLog();
  ~CapturedLog();
  CapturedLog(const CapturedLog&) = delete;
  CapturedLog& operator=(const CapturedLog&) = delete;

  std::vector<Line> lines() const;
  std::vector<std::string> texts() const;    ///< the texts alone
  bool has(const std::string& nText) const;  ///< a line with exactly this text
  unsigned int count(const std::string& nText) const;
  bool waitFor(const std::string& nText, unsigned int nTimeoutMs = 10000) const;  ///< real time
  void clear();

 private:
  class Store;
  std::unique_ptr<Store> mpStore;
};

}  // namespace seams
