#include "utl/Thread.h"

#include <sched.h>

#include "ThreadId.h"
#include "utl/Event.h"

namespace utl {

int Thread::getCurrentId() { return ThreadId::current(); }

void Thread::sleep(unsigned int nTimeMs) {
  if (nTimeMs == 0) {
    sched_yield();
  } else {
    Event(false).waitToOn(nTimeMs);
  }
}

}  // namespace utl
