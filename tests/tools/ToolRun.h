#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <string>
#include <vector>

/// One run of nfw-drive as a process of its own.
class ToolRun {
 public:
  /// Starts it. What it writes to the one descriptor is read; standard error else goes to the test's own, or into a
  /// file.
  explicit ToolRun(const std::vector<std::string>& nArguments, int nRead = STDOUT_FILENO,
                   const std::string& nErrorFile = {});
  ~ToolRun();
  ToolRun(const ToolRun&) = delete;
  ToolRun& operator=(const ToolRun&) = delete;

  std::string readLine();  ///< of its output, without the line end; empty at the end
  std::string readAll();   ///< what is left of its output
  void closeOutput();      ///< as a reader that goes away
  void signal(int nSignal) const;
  int wait();  ///< its exit code, negative when a signal killed it

  /// Runs it to its end.
  static std::string output(const std::vector<std::string>& nArguments, int* npExit);
  /// Likewise: what it says on standard error.
  static std::string errors(const std::vector<std::string>& nArguments, int* npExit);

 private:
  pid_t mPid = -1;
  int mFd = -1;
  std::string mUnread;
};
