#include "FullQueues.h"

namespace utl {

namespace {

thread_local unsigned int gMet = 0;

}  // namespace

unsigned int FullQueues::met() { return gMet; }

void FullQueues::note() { ++gMet; }

}  // namespace utl
