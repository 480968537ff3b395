#pragma once

#include "LogKinds.h"
#include "SysLogServiceHost.h"

namespace drive {

/// Takes the lines of the log while it lives, and lets those that are shown go on to standard error.
class LogFold : public syslogservice::Sink {
 public:
  /// @param nKinds not owned, outlives it
  explicit LogFold(LogKinds& nKinds) : mKinds(nKinds), mpBefore(syslogservice::setSink(this)) {}
  ~LogFold() override { syslogservice::setSink(mpBefore); }
  LogFold(const LogFold&) = delete;
  LogFold& operator=(const LogFold&) = delete;

  void writeLine(int nType, int nLevel, const char* npText) override {
    if (mKinds.judge(nType, nLevel, npText).mIsShown) syslogservice::writeToStandardError(nType, nLevel, npText);
  }

  /// Tells how often what was shown once has come.
  void tellRepeats() const;

 private:
  LogKinds& mKinds;
  syslogservice::Sink* const mpBefore;
};

}  // namespace drive
