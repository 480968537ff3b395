#include "RealTime.h"

#include <sched.h>

#include "utl/ThreadHost.h"

namespace drive {

namespace {

const int HIGHEST_PRIORITY = 6;  // that a thread of the framework has: the one that brings records to the medium

}  // namespace

bool RealTime::begin() {
  const bool lIsPermitted = isPermitted();
  threadhost::setRealTimePriorities(lIsPermitted);
  return lIsPermitted;
}

// Tried on the calling thread, which then is as before: a limit may permit some priorities and not others.
bool RealTime::isPermitted() {
  const int lPolicy = sched_getscheduler(0);
  sched_param lBefore = {}, lWanted = {};
  lWanted.sched_priority = HIGHEST_PRIORITY;
  return lPolicy >= 0 && sched_getparam(0, &lBefore) == 0 && sched_setscheduler(0, SCHED_FIFO, &lWanted) == 0 &&
         sched_setscheduler(0, lPolicy, &lBefore) == 0;
}

}  // namespace drive
