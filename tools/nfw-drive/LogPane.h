#pragma once

#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "SysLogServiceHost.h"

namespace drive {

/// Keeps the last log lines for a view that fills the terminal. While it is installed they do not go to standard error.
class LogPane : public syslogservice::Sink {
 public:
  explicit LogPane(size_t nLines) : mMaxLines(nLines) {}
  ~LogPane() override { remove(); }
  LogPane(const LogPane&) = delete;
  LogPane& operator=(const LogPane&) = delete;

  void install();
  void remove();

  void writeLine(int nType, int nLevel, const char* npText) override;
  std::vector<std::string> lines() const;

 private:
  const size_t mMaxLines;
  mutable std::mutex mMutex;
  std::deque<std::string> mLines;
  syslogservice::Sink* mpBefore = nullptr;
  bool mIsInstalled = false;
};

}  // namespace drive
