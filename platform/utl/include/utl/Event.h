#pragma once

#include <memory>

namespace utl {

/// A manual-reset event: on until it is set off. Any thread may call.
class Event {
 public:
  explicit Event(bool nOn);
  ~Event();
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  void on();
  void off();
  bool isOn() const;
  /// Waits until the event is on: true. False after `nTimeoutMs`; 0 waits without limit.
  bool waitToOn(unsigned int nTimeoutMs);

 private:
  struct State;
  std::unique_ptr<State> mpState;
};

}  // namespace utl
