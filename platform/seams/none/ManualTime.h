// The stand-ins that are installed: time is the system's, and nobody has to know who waits for it.
#pragma once

#include <cstdint>

namespace utl {
class Condition;
class Mutex;
}  // namespace utl

namespace seams {

constexpr int64_t manualMs() { return -1; }

class ClockWaiter {
 public:
  ClockWaiter(utl::Condition&, utl::Mutex&) {}
};

}  // namespace seams
