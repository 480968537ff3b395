#include "Futex.h"

#include <errno.h>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace utl {

namespace {

// The layout of struct timespec that the system call takes on this processor, whatever width the library's has.
struct KernelTime {
  long mSeconds;
  long mNanoseconds;
};

}  // namespace

bool Futex::wait(int nExpected, int64_t nDeadlineNs) {
  const KernelTime lDeadline = {static_cast<long>(nDeadlineNs / 1000000000),
                                static_cast<long>(nDeadlineNs % 1000000000)};
  const long lResult = syscall(SYS_futex, &mWord, FUTEX_WAIT_BITSET_PRIVATE, nExpected,
                               nDeadlineNs < 0 ? nullptr : &lDeadline, nullptr, FUTEX_BITSET_MATCH_ANY);
  return lResult == 0 || errno != ETIMEDOUT;
}

void Futex::wake(std::atomic<int>* npWord, int nNum) { syscall(SYS_futex, npWord, FUTEX_WAKE_PRIVATE, nNum); }

}  // namespace utl
