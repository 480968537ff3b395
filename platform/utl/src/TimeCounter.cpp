#include "Clock.h"
#include "SeamState.h"
#include "utl/Time.h"

namespace utl {

unsigned int TimeCounter::getTickTime() {
  if (seams::fails(seams::TICK)) return FAILURE;
  const unsigned int lTick = static_cast<unsigned int>(Clock::nowMs());
  return lTick == FAILURE ? FAILURE - 1 : lTick;
}

void TimeCounter::start() { mStart = getTickTime(); }

unsigned int TimeCounter::getElapsed() const { return getTickTime() - mStart; }

}  // namespace utl
