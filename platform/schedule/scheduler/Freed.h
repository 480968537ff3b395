// Memory that has been given back in a run, and must not be used any more.
#pragma once

#include <cstddef>

namespace schedule {

/// In a run nothing is really given back: no address is used again, so a use of it is seen, and an object's number in
/// the trace is its own.
class Freed {
 public:
  static void add(void* npMemory);
  static bool holds(const volatile void* npAddress);
};

}  // namespace schedule
