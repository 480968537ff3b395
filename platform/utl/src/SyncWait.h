// Where the sender of a synchronous message waits for its outcome.
#pragma once

#include "Futex.h"

namespace utl {

/// Lives on the stack of the waiting sender. `finish` touches it for the last time when the sender may return.
class SyncWait {
 public:
  enum Outcome { HANDLED = 2, DISCARDED = 3 };

  bool await();                   ///< on the sender's thread, once: true when handled
  void finish(Outcome nOutcome);  ///< on any other thread, once

 private:
  enum Word { PENDING = 0, SLEEPING = 1 };
  Futex mWord{PENDING};
};

}  // namespace utl
