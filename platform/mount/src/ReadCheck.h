// Whether a medium gives what it holds.
#pragma once

#include <memory>
#include <string>

/// False when the medium does not give what the directory holds. That this process may not look is not the medium's
/// fault. It returns when the medium has answered.
bool directoryIsReadable(const char* npPoint);

/// Asks on a thread of its own, which is left behind while the medium's file system does not answer. Copies share the
/// answer.
class ReadCheck {
 public:
  using IsReadable = bool (*)(const char* npPoint);

  /// Waits for the answer, but not longer than `nLimitMs`: it may still come later.
  void begin(IsReadable npIsReadable, const std::string& nPoint, unsigned int nLimitMs);
  bool isUnderWay() const;  ///< begun, and not answered
  bool isReadable() const;  ///< also before it begins; false while it is under way and where there was no thread

 private:
  struct State;
  static void* enter(void* npState);

  std::shared_ptr<State> mpState;
};
