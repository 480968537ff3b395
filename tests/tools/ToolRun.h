#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// One run of nfw-drive as a process of its own.
class ToolRun {
 public:
  using Words = std::vector<std::string>;
  static const int TERMINAL = -1;

  /// Starts it. What it writes to the one descriptor is read, or what it writes to a terminal of 100 columns; standard
  /// error else is kept.
  explicit ToolRun(const Words& nArguments, int nRead = STDOUT_FILENO);
  ~ToolRun();
  ToolRun(const ToolRun&) = delete;
  ToolRun& operator=(const ToolRun&) = delete;

  std::string readLine();  ///< of its output, without the line end; empty at the end
  std::string readAll();   ///< what is left of its output
  void signal(int nSignal) const;
  int wait();                  ///< its exit code, negative when a signal killed it
  std::string errors() const;  ///< what it has said on standard error

 private:
  pid_t mPid = -1;
  int mFd = -1;
  const int mErrorFd;
  std::string mUnread;
};

/// What a run to its end gave.
struct Outcome {
  int mExit;
  std::string mOutput, mErrors;
  nlohmann::json mSummary;  ///< with --format json
};
Outcome run(const ToolRun::Words& nArguments);
/// Of runs at the same time.
std::vector<Outcome> runAll(const std::vector<ToolRun::Words>& nRuns);
/// Likewise, without the log's lines.
Outcome runQuietly(ToolRun::Words nArguments);
