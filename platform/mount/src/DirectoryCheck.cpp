#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "ReadCheck.h"

namespace {

const int MAX_DESCRIPTORS = 4096;

bool answers(const char* npPoint) {
  alignas(8) char lEntries[1024];
  const int lDirectory = ::open(npPoint, O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC);
  if (lDirectory < 0) return errno == EACCES || errno == EPERM || errno == ENOENT;
  return ::syscall(SYS_getdents64, lDirectory, lEntries, sizeof(lEntries)) >= 0;
}

// In the child of a process with threads: nothing but system calls. It keeps nothing of the parent's open, so that
// nobody waits for the end of a pipe that it holds.
[[noreturn]] void answerTo(int nResult, const char* npPoint) {
  for (int i = 0; i < MAX_DESCRIPTORS; ++i) {
    if (i != nResult) ::close(i);
  }
  const char lAnswer = answers(npPoint) ? 1 : 0;
  const ssize_t lSize = ::write(nResult, &lAnswer, 1);
  ::_exit(lSize == 1 ? 0 : 1);
}

}  // namespace

// A thread that waits for a medium cannot be killed, and keeps its process from ending. A child process can be left.
bool directoryIsReadable(const char* npPoint) {
  int lPipe[2] = {-1, -1};
  if (::pipe2(lPipe, O_CLOEXEC) != 0) return answers(npPoint);
  const pid_t lChild = ::fork();
  if (lChild == 0) answerTo(lPipe[1], npPoint);
  ::close(lPipe[1]);
  char lAnswer = 0;
  ssize_t lSize = -1;
  do {
    lSize = ::read(lPipe[0], &lAnswer, 1);
  } while (lSize < 0 && errno == EINTR);
  ::close(lPipe[0]);
  if (lChild > 0) ::waitpid(lChild, nullptr, 0);
  return lSize == 1 && lAnswer == 1;
}
