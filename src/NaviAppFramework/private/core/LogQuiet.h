// The data logger at work on this thread: its own log lines must not become records.
#pragma once

namespace nfw {

/// A line of the data logger about itself that were recorded would call the logger from inside the logger, and a
/// failing disk would feed itself. While one of these lives on a thread, Logger::write drops what that thread offers;
/// the lines still go to the system log service.
class LogQuiet {
 public:
  LogQuiet() { ++gDepth; }
  ~LogQuiet() { --gDepth; }
  LogQuiet(const LogQuiet&) = delete;
  LogQuiet& operator=(const LogQuiet&) = delete;

  static bool isQuiet() { return gDepth > 0; }

 private:
  static inline thread_local int gDepth __attribute__((tls_model("initial-exec"))) = 0;
};

}  // namespace nfw
