#pragma once

#include <atomic>
#include <chrono>
#include <optional>

namespace drive {

/// What the main thread waits for. Any thread may notify; one waits. Signals come as events: they are blocked in the
/// whole process while this exists, so it is built before any thread.
class Events {
 public:
  using Clock = std::chrono::steady_clock;
  enum Event : unsigned int {
    PHASE_COMPLETE = 1,
    SOURCE_ENDED = 2,
    OUTPUT_LOST = 4,  ///< nobody reads the output any more, or it cannot be written
    SIGNALLED = 8,    ///< SIGINT, SIGTERM or SIGHUP
    TIME_UP = 16,
    FAILED = 32,        ///< something that the run cannot do without
    REPLAY_ENDED = 64,  ///< nothing is left to play
    KEEP_ASKED = 128,   ///< SIGUSR1
    STOP_ASKED = 256,   ///< SIGTSTP, where a TerminalGuard heeds it
    CONTINUED = 512,    ///< SIGCONT, likewise
  };

  Events();
  ~Events();
  Events(const Events&) = delete;
  Events& operator=(const Events&) = delete;

  void notify(Event nEvent);                                          ///< also in a signal's handler
  void putBack(unsigned int nEvents) { mPending.fetch_or(nEvents); }  ///< what wait() took; by who waits
  void discard(Event nEvent) { mPending.fetch_and(~nEvent); }

  /// Waits for events and takes them; TIME_UP when the deadline passes before any.
  unsigned int wait(const std::optional<Clock::time_point>& nDeadline);

 private:
  int timeout(const std::optional<Clock::time_point>& nDeadline) const;
  void takeSignals();

  std::atomic<unsigned int> mPending{0};
  int mFd;        // readable while there is a notice
  int mSignalFd;  // readable while there is a signal
};

}  // namespace drive
