// The time of a clock that a test moves by hand, and the conditions that it wakes.
#pragma once

#include <cstdint>

namespace utl {
class Condition;
class Mutex;
}  // namespace utl

namespace seams {

int64_t manualMs();                ///< negative: the system's clock
void setManualMs(int64_t nNowMs);  ///< wakes every timed wait; negative: back to the system's clock

/// A condition whose time-outs follow the clock. It is known here for life, so that moving the clock wakes it.
class ClockWaiter {
 public:
  ClockWaiter(utl::Condition& nCondition, utl::Mutex& nMutex);
  ~ClockWaiter();
  ClockWaiter(const ClockWaiter&) = delete;
  ClockWaiter& operator=(const ClockWaiter&) = delete;

 private:
  friend void setManualMs(int64_t nNowMs);
  utl::Condition& mCondition;
  utl::Mutex& mMutex;  // the condition's
  ClockWaiter* mpPrevious = nullptr;
  ClockWaiter* mpNext = nullptr;
};

}  // namespace seams
