#pragma once

#include <array>
#include <atomic>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "LogKinds.h"
#include "SysLogServiceHost.h"

namespace drive {

/// Counts log lines, and keeps the last of them, for a view that fills the terminal. While it is installed they do not
/// go to standard error, unless that is something else than a terminal.
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
  std::vector<std::string> lines(size_t nMost) const;  ///< the last ones
  uint64_t errors() const { return mCounts[0]; }
  uint64_t warnings() const { return mCounts[1]; }
  uint64_t others() const { return mCounts[2]; }

 private:
  struct Line {
    std::string mText;
    int mKind;
  };

  void count(int nLevel);

  const size_t mMaxLines;
  LogKinds& mKinds;
  mutable std::mutex mMutex;
  std::deque<Line> mLines;
  std::array<std::atomic<uint64_t>, 3> mCounts{};
  syslogservice::Sink* mpBefore = nullptr;
  bool mPassesOn = false;
  bool mIsInstalled = false;
};

}  // namespace drive
