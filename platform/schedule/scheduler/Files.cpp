// Calls of the file system: points, and in some runs they take their time.
#undef _FORTIFY_SOURCE  // it has bodies for these functions

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

#include "Real.h"
#include "Scheduler.h"

namespace schedule {

namespace {

const unsigned int SLOW = 32;  // one call of so many
const int64_t SLOWEST_NS = 400 * NS_PER_MS;

void file(const char* npOperation) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return;
  lpScheduler->point(npOperation, nullptr);
  Strategy& lStrategy = lpScheduler->strategy();
  if (!lStrategy.mHasSlowFiles || lStrategy.random().below(SLOW) != 0) return;
  lpScheduler->wait("waits for the disk", nullptr, lpScheduler->nowNs() + lStrategy.random().below(SLOWEST_NS));
}

}  // namespace
}  // namespace schedule

using schedule::file;
using schedule::Scheduler;

extern "C" {

int open64(const char* npPath, int nFlags, ...) {
  va_list lList;
  va_start(lList, nFlags);
  const mode_t lMode = (nFlags & O_CREAT) != 0 ? va_arg(lList, mode_t) : 0;
  va_end(lList);
  return file("opens"), REAL(open64)(npPath, nFlags, lMode);
}
int close(int nFile) { return file("closes"), REAL(close)(nFile); }
ssize_t read(int nFile, void* npTo, size_t nSize) { return file("reads"), REAL(read)(nFile, npTo, nSize); }
ssize_t pread64(int nFile, void* npTo, size_t nSize, off64_t nAt) {
  return file("reads"), REAL(pread64)(nFile, npTo, nSize, nAt);
}
ssize_t write(int nFile, const void* npFrom, size_t nSize) { return file("writes"), REAL(write)(nFile, npFrom, nSize); }
ssize_t pwritev64(int nFile, const iovec* npParts, int nNum, off64_t nAt) {
  return file("writes"), REAL(pwritev64)(nFile, npParts, nNum, nAt);
}
ssize_t writev(int nFile, const iovec* npParts, int nNum) { return file("writes"), REAL(writev)(nFile, npParts, nNum); }
int fsync(int nFile) { return file("syncs"), REAL(fsync)(nFile); }
int fdatasync(int nFile) { return file("syncs"), REAL(fdatasync)(nFile); }
// Another saver's lock is waited for here, not in the kernel.
int flock(int nFile, int nOperation) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (lpScheduler == nullptr) return REAL(flock)(nFile, nOperation);
  file("locks a file");
  int lResult = REAL(flock)(nFile, nOperation | LOCK_NB);
  for (; lResult != 0 && errno == EWOULDBLOCK && (nOperation & LOCK_NB) == 0;) {
    lpScheduler->yield();
    lResult = REAL(flock)(nFile, nOperation | LOCK_NB);
  }
  return lResult;
}
int unlink(const char* npPath) { return file("removes"), REAL(unlink)(npPath); }
int rename(const char* npFrom, const char* npTo) { return file("renames"), REAL(rename)(npFrom, npTo); }

}  // extern "C"
