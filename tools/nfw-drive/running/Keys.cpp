#include "Keys.h"

#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>

namespace drive {

namespace {

termios gKept, gOurs;  // written before gIsOurs
std::atomic<bool> gIsOurs{false};

void handle(int nSignal, void (*npHandler)(int), int nFlags) {
  struct sigaction lAction = {};
  lAction.sa_handler = npHandler;
  lAction.sa_flags = nFlags;
  ::sigaction(nSignal, &lAction, nullptr);
}

// The signal comes again when this has returned, and does what it does.
void giveBack(int nSignal) {
  if (gIsOurs) ::tcsetattr(STDIN_FILENO, TCSANOW, &gKept);
  ::raise(nSignal);
}

void takeAgain(int) {
  if (!gIsOurs) return;
  handle(SIGTSTP, giveBack, static_cast<int>(SA_RESETHAND));
  if (Keys::isForeground()) ::tcsetattr(STDIN_FILENO, TCSANOW, &gOurs);
}

}  // namespace

bool Keys::isForeground() { return ::tcgetpgrp(STDIN_FILENO) == ::getpgrp(); }

bool Keys::begin() {
  if (::isatty(STDIN_FILENO) != 1 || !isForeground() || ::tcgetattr(STDIN_FILENO, &gKept) != 0) return false;
  gOurs = gKept;
  gOurs.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  gOurs.c_cc[VMIN] = 0;
  gOurs.c_cc[VTIME] = 0;
  gIsOurs = true;
  for (const int lSignal : {SIGTSTP, SIGQUIT, SIGABRT}) handle(lSignal, giveBack, static_cast<int>(SA_RESETHAND));
  handle(SIGCONT, takeAgain, SA_RESTART);
  return ::tcsetattr(STDIN_FILENO, TCSANOW, &gOurs) == 0;
}

// In the background the terminal is another's, who has set it as he likes.
void Keys::restore() {
  if (gIsOurs.exchange(false) && isForeground()) ::tcsetattr(STDIN_FILENO, TCSANOW, &gKept);
}

Keys::Key Keys::next() {
  char lText[32];
  const ssize_t lSize = gIsOurs && isForeground() ? ::read(STDIN_FILENO, lText, sizeof(lText)) : 0;
  if (lSize > 0) mText.append(lText, static_cast<size_t>(lSize));
  if (mText.empty()) return NONE;
  static const struct {
    const char* mpText;
    Key mKey;
  } KEYS[] = {{"\x1b[A", FASTER}, {"\x1b[B", SLOWER}, {"\x1b[C", FORWARD}, {"\x1b[D", BACK},
              {"\x1bOA", FASTER}, {"\x1bOB", SLOWER}, {"\x1bOC", FORWARD}, {"\x1bOD", BACK},
              {" ", PAUSE},       {".", STEP},        {"k", KEEP},         {"q", QUIT}};
  for (const auto& lKey : KEYS) {
    const std::string lWhole = lKey.mpText;
    if (mText.compare(0, lWhole.size(), lWhole) == 0) return take(lWhole.size(), lKey.mKey);
    if (lWhole.compare(0, mText.size(), mText) == 0) return NONE;  // the rest is on its way
  }
  return take(1, OTHER);
}

Keys::Key Keys::take(size_t nSize, Key nKey) {
  mText.erase(0, nSize);
  return nKey;
}

}  // namespace drive
