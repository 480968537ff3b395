#include "ThreadId.h"

#include <atomic>

namespace utl {

namespace {

std::atomic<int> gLast{0};
thread_local int gCurrent = 0;

}  // namespace

int ThreadId::next() { return gLast.fetch_add(1, std::memory_order_relaxed) + 1; }

int ThreadId::current() {
  if (gCurrent == 0) gCurrent = next();
  return gCurrent;
}

void ThreadId::setCurrent(int nId) { gCurrent = nId; }

}  // namespace utl
