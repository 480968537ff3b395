#include "Scheduling.h"

#include <pthread.h>
#include <sched.h>
#include <sys/prctl.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "utl/ThreadHost.h"

namespace {

std::atomic<bool> gIsRealTime{false};
std::atomic<bool> gIsRefusalTold{false};

void takePriority(int nPriority) {
  sched_param lParam = {};
  lParam.sched_priority = std::clamp(nPriority, sched_get_priority_min(SCHED_FIFO), sched_get_priority_max(SCHED_FIFO));
  const int lPolicy = SCHED_FIFO | SCHED_RESET_ON_FORK;  // a thread that this one starts is ordinary until it asks
  if (sched_setscheduler(0, lPolicy, &lParam) != 0 && !gIsRefusalTold.exchange(true)) {
    std::fprintf(stderr, "utl: real-time priorities are not permitted, threads stay ordinary: %s\n",
                 std::strerror(errno));
  }
}

}  // namespace

void threadhost::setRealTimePriorities(bool nEnabled) { gIsRealTime = nEnabled; }

void utl::introduceToKernel(const char* npKernelName, int nPriority) {
  pthread_setname_np(pthread_self(), npKernelName);
  prctl(PR_SET_TIMERSLACK, 1UL);  // by default the kernel may round wake-ups up by 50 us
  if (gIsRealTime) takePriority(nPriority);
}
