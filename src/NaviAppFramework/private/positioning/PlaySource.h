// A source of positioning data that a facade switches on and off.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace nfw {

/// One of the three sources of a facade. Switched by the facade, on any thread; a source looks at its switch when data
/// comes in, on the thread that brings it: what was queued before a source went off is still handed on. What a source
/// gathers of several messages begins anew each time it is switched on, and where its replay jumps. The messages tell
/// that by their generation: what is gathered belongs to the thread that handles them.
class PlaySource {
 public:
  virtual ~PlaySource() = default;

  virtual bool initialize() = 0;
  virtual void finalize() = 0;

  /// Under the facade's lock. A source that is on already goes on as it is.
  void on() {
    if (isOn) return;
    ++mGeneration;  // first: what comes in from here on belongs to it
    isOn = true;
  }
  void off() { isOn = false; }
  /// What comes in from here on does not follow what came before.
  void beginAnew() { ++mGeneration; }

 protected:
  std::atomic<bool> isOn{false};
  /// On the thread that gathers, for each message: it is the first since the source was switched on.
  bool isFirstOf(uint32_t nGeneration) { return std::exchange(mGathered, nGeneration) != nGeneration; }

  std::atomic<uint32_t> mGeneration{0};  // counts these beginnings; goes with what comes in

 private:
  uint32_t mGathered = 0;
};

}  // namespace nfw
