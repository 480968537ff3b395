#pragma once

#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "LogKinds.h"
#include "SysLogServiceHost.h"

namespace drive {

/// Keeps the last log lines for a view that fills the terminal. While it is installed they do not go to standard error.
class LogPane : public syslogservice::Sink {
 public:
  /// @param nKinds not owned, outlives it
  LogPane(size_t nLines, LogKinds& nKinds) : mMaxLines(nLines), mKinds(nKinds) {}
  ~LogPane() override { remove(); }
  LogPane(const LogPane&) = delete;
  LogPane& operator=(const LogPane&) = delete;

  void install();
  void remove();

  void writeLine(int nType, int nLevel, const char* npText) override;
  std::vector<std::string> lines() const;

 private:
  struct Line {
    std::string mText;
    int mKind;
  };

  const size_t mMaxLines;
  LogKinds& mKinds;
  mutable std::mutex mMutex;
  std::deque<Line> mLines;
  syslogservice::Sink* mpBefore = nullptr;
  bool mIsInstalled = false;
};

}  // namespace drive
