/// @file
/// An event that threads wait for.
#pragma once

#include <memory>

namespace utl {

/// A manual-reset event: on until it is set off. It is what a thread without messages of its own, such as that of
/// main(), waits on for what happens on another.
///
/// @code
/// utl::Event lIsUp(false);
/// ... // a listener on another thread: lIsUp.on();
/// if (!lIsUp.waitToOn(10000)) return 1;  // 10 s
/// @endcode
///
/// Threads: any thread may call, several may wait. It may be destroyed as soon as its waiters are back, also while on()
/// is on its way back. Do not wait on the thread that is to set it on: a message thread does nothing else meanwhile.
class Event {
 public:
  explicit Event(bool nOn);
  ~Event();
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  void on();  ///< releases every waiter; later ones do not wait until it is off
  void off();
  bool isOn() const;
  /// Waits until the event is on, by the monotonic clock.
  /// @param nTimeoutMs milliseconds; 0 waits without limit
  /// @return true when it is on, false when the time is over
  bool waitToOn(unsigned int nTimeoutMs);

 private:
  struct State;
  std::unique_ptr<State> mpState;
};

}  // namespace utl
