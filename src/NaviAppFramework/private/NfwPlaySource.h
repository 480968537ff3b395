// A source of positioning data that a facade switches on and off.
#pragma once

#include <atomic>

namespace nfw {

/// One of the three sources of a facade. Switched by the facade, on any thread; a source looks at its switch when data
/// comes in, on the thread that brings it: what was queued before a source went off is still handed on.
class PlaySource {
 public:
  virtual ~PlaySource() = default;

  virtual bool initialize() = 0;
  virtual void finalize() = 0;

  void on() { isOn = true; }
  void off() { isOn = false; }

 protected:
  std::atomic<bool> isOn{false};
};

}  // namespace nfw
