#pragma once

namespace drive {

/// Real-time priorities of the framework's threads: what waits to be heard goes before other programs, and a listener
/// is called when a sentence comes, not when the processor is free.
class RealTime {
 public:
  /// Before the first thread of the framework starts. False where the system does not permit it: threads stay ordinary.
  static bool begin();

 private:
  static bool isPermitted();
};

}  // namespace drive
