#include "StandardError.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <ctime>

namespace syslogservice {

namespace {

struct LevelStyle {
  const char* mpTag;
  const char* mpColour;
};

const LevelStyle LEVEL_STYLES[] = {
    {"NO  ", ""}, {"ERR ", "\x1b[31m"}, {"WRN ", "\x1b[33m"}, {"INF ", ""}, {"DTL ", "\x1b[2m"}, {"DBG ", "\x1b[2m"},
};
const char COLOUR_END[] = "\x1b[0m";

const LevelStyle& styleOf(int nLevel) { return LEVEL_STYLES[nLevel < 0 || nLevel > 5 ? 5 : nLevel]; }

// One line as it goes out, after a line end that stands ready for the case that the line before was cut.
class OutputLine {
 public:
  static const unsigned int SIZE = 1536;
  static_assert(SIZE <= PIPE_BUF, "a pipe takes a line whole or not at all");

  OutputLine() { mBytes[0] = '\n'; }

  void add(const char* npText) {
    for (; *npText != '\0' && mSize < SIZE - TAIL_SIZE; ++npText) mBytes[mSize++] = *npText;
  }
  // Control characters would break the line or steer the terminal.
  void addClean(const char* npText) {
    for (; *npText != '\0' && mSize < SIZE - TAIL_SIZE; ++npText) {
      const unsigned char lByte = static_cast<unsigned char>(*npText);
      mBytes[mSize++] = lByte < 0x20 || lByte == 0x7F ? ' ' : *npText;
    }
    if (*npText != '\0') memcpy(mBytes + mSize - 3, "...", 3);
  }
  void end(const char* npTail) {
    while (*npTail != '\0') mBytes[mSize++] = *npTail++;
    mBytes[mSize++] = '\n';
  }

  const char* bytes(bool nWithLineEndBefore) const { return nWithLineEndBefore ? mBytes : mBytes + 1; }
  unsigned int size(bool nWithLineEndBefore) const { return nWithLineEndBefore ? mSize : mSize - 1; }

 private:
  static const unsigned int TAIL_SIZE = sizeof(COLOUR_END);  // with the line end in place of the terminator

  char mBytes[SIZE];
  unsigned int mSize = 1;
};

// A reader that has gone must not end the process: keeps SIGPIPE from this thread while it lives.
class PipeSignalBlock {
 public:
  PipeSignalBlock() {
    sigemptyset(&mSet);
    sigaddset(&mSet, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &mSet, &mBefore);
  }
  ~PipeSignalBlock() { pthread_sigmask(SIG_SETMASK, &mBefore, nullptr); }
  PipeSignalBlock(const PipeSignalBlock&) = delete;
  PipeSignalBlock& operator=(const PipeSignalBlock&) = delete;

  void discard() {  // the signal that our write has raised
    if (sigismember(&mBefore, SIGPIPE) != 0) return;
    const timespec lNoWait = {0, 0};
    while (sigtimedwait(&mSet, nullptr, &lNoWait) == -1 && errno == EINTR) {
    }
  }

 private:
  sigset_t mSet;
  sigset_t mBefore;
};

bool isReady(int nFile) {
  pollfd lPoll = {nFile, POLLOUT, 0};
  return poll(&lPoll, 1, 0) == 1 && lPoll.revents == POLLOUT;
}

}  // namespace

void StandardError::writeLine(int nLevel, const char* npSource, const char* npText) {
  std::lock_guard<std::mutex> lLock(mMutex);
  if (!followLocked()) {
    ++mDropped;
    return;
  }
  const LevelStyle& lStyle = styleOf(nLevel);
  const bool lIsColoured = lStyle.mpColour[0] != '\0' && (mColour == BY_TERMINAL ? mIsTerminal : mColour == COLOURED);
  OutputLine lLine;
  if (lIsColoured) lLine.add(lStyle.mpColour);
  lLine.add(lStyle.mpTag);
  lLine.addClean(npSource);
  lLine.addClean(npText);
  lLine.end(lIsColoured ? COLOUR_END : "");
  if (!putLocked(lLine.bytes(mIsCut), lLine.size(mIsCut))) ++mDropped;
}

void StandardError::setColoured(bool nColoured) {
  std::lock_guard<std::mutex> lLock(mMutex);
  mColour = nColoured ? COLOURED : PLAIN;
}

unsigned long long StandardError::dropped() const {
  std::lock_guard<std::mutex> lLock(mMutex);
  return mDropped;
}

bool StandardError::followLocked() {
  struct stat lStat;
  const bool lIsThere = fstat(STDERR_FILENO, &lStat) == 0;
  if (lIsThere && lStat.st_dev == mDevice && lStat.st_ino == mNode) return true;
  if (mOwn >= 0) ::close(mOwn);
  mOwn = -1;
  mDevice = lIsThere ? lStat.st_dev : 0;
  mNode = lIsThere ? lStat.st_ino : 0;
  mIsCut = false;
  mIsRegular = lIsThere && S_ISREG(lStat.st_mode);
  mIsTerminal = lIsThere && S_ISCHR(lStat.st_mode) && isatty(STDERR_FILENO) == 1;
  if (lIsThere && (mIsTerminal || S_ISFIFO(lStat.st_mode))) {
    mOwn = ::open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  }
  return lIsThere;
}

// A regular file neither waits nor signals. Sockets and what could not be opened again go through descriptor 2, if it
// is ready for a line.
bool StandardError::putLocked(const char* npBytes, unsigned int nSize) {
  if (mIsRegular) return writeLocked(STDERR_FILENO, npBytes, nSize);
  if (mOwn < 0 && !isReady(STDERR_FILENO)) return false;
  PipeSignalBlock lBlock;
  const bool lIsWritten = writeLocked(mOwn >= 0 ? mOwn : STDERR_FILENO, npBytes, nSize);
  if (!lIsWritten && errno == EPIPE) lBlock.discard();
  return lIsWritten;
}

bool StandardError::writeLocked(int nFile, const char* npBytes, unsigned int nSize) {
  errno = 0;
  ssize_t lDone = ::write(nFile, npBytes, nSize);
  while (lDone < 0 && errno == EINTR) lDone = ::write(nFile, npBytes, nSize);
  if (lDone > 0) mIsCut = static_cast<size_t>(lDone) < nSize;
  return lDone == static_cast<ssize_t>(nSize);
}

}  // namespace syslogservice
