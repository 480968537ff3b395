#include "TerminalGuard.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>

namespace drive {

namespace {

const int STOPS[] = {SIGTSTP, SIGCONT};
const int DEATHS[] = {SIGQUIT, SIGABRT, SIGSEGV, SIGBUS, SIGILL, SIGFPE};
const size_t DEATH_NUM = sizeof(DEATHS) / sizeof(DEATHS[0]);

std::atomic<Events*> gpEvents{nullptr};
struct sigaction gDeaths[DEATH_NUM];  // what was to be done at these signals before
termios gKept, gOurs;                 // written before gHasSettings
std::atomic<bool> gHasSettings{false};
char gLeave[256];  // written before gLeaveSize
std::atomic<size_t> gLeaveSize{0};

void tell(int nSignal) {
  Events* const lpEvents = gpEvents;
  if (lpEvents != nullptr) lpEvents->notify(nSignal == SIGTSTP ? Events::STOP_ASKED : Events::CONTINUED);
}

// The signal comes again when this has returned, and does what it does.
void die(int nSignal) {
  TerminalGuard::restore();
  const auto* const lpFound = std::find(std::begin(DEATHS), std::end(DEATHS), nSignal);
  ::sigaction(nSignal, &gDeaths[lpFound - std::begin(DEATHS)], nullptr);
  ::raise(nSignal);
}

void handle(int nSignal, void (*npHandler)(int), struct sigaction* npBefore) {
  struct sigaction lAction = {};
  lAction.sa_handler = npHandler;
  lAction.sa_flags = SA_RESTART;
  ::sigaction(nSignal, &lAction, npBefore);
}

bool isIgnored(int nSignal) {
  struct sigaction lAction = {};
  return ::sigaction(nSignal, nullptr, &lAction) == 0 && lAction.sa_handler == SIG_IGN;
}

}  // namespace

TerminalGuard::TerminalGuard(Events& nEvents) {
  gpEvents = &nEvents;
  install();
}

TerminalGuard::~TerminalGuard() {
  release();
  gpEvents = nullptr;
}

// Who started the program may have decided that it cannot be stopped, or not in this way.
void TerminalGuard::install() {
  for (const int lSignal : STOPS) {
    if (!isIgnored(lSignal)) handle(lSignal, tell, nullptr);
  }
  if (mIsInstalled) return;
  for (size_t i = 0; i < DEATH_NUM; ++i) {
    ::sigaction(DEATHS[i], nullptr, &gDeaths[i]);
    if (!isIgnored(DEATHS[i])) handle(DEATHS[i], die, nullptr);
  }
  mIsInstalled = true;
}

void TerminalGuard::release() {
  if (!mIsInstalled) return;
  for (const int lSignal : STOPS) {
    if (!isIgnored(lSignal)) handle(lSignal, SIG_DFL, nullptr);
  }
  for (size_t i = 0; i < DEATH_NUM; ++i) ::sigaction(DEATHS[i], &gDeaths[i], nullptr);
  mIsInstalled = false;
}

void TerminalGuard::stop() {
  if (isIgnored(SIGTSTP)) return;
  handle(SIGTSTP, SIG_DFL, nullptr);
  ::raise(SIGTSTP);
  install();
}

bool TerminalGuard::isForeground(int nFd) {
  const pid_t lGroup = ::tcgetpgrp(nFd);
  return lGroup <= 0 || lGroup == ::getpgrp();
}

bool TerminalGuard::setSettings(const termios& nSettings) {
  if (::tcgetattr(STDIN_FILENO, &gKept) != 0) return false;
  gOurs = nSettings;
  gHasSettings = true;
  return ::tcsetattr(STDIN_FILENO, TCSANOW, &gOurs) == 0;
}

// A signal to go on may still come, and sets nothing any more.
void TerminalGuard::endSettings() {
  restoreSettings();
  gHasSettings = false;
}

// In the background the terminal is another's, who has set it as he likes.
void TerminalGuard::setSettingsAgain() {
  if (gHasSettings && isForeground(STDIN_FILENO)) ::tcsetattr(STDIN_FILENO, TCSANOW, &gOurs);
}

void TerminalGuard::restoreSettings() {
  if (gHasSettings && isForeground(STDIN_FILENO)) ::tcsetattr(STDIN_FILENO, TCSANOW, &gKept);
}

void TerminalGuard::setPicture(std::string_view nLeave) {
  const size_t lSize = std::min(nLeave.size(), sizeof(gLeave));
  nLeave.copy(gLeave, lSize);
  gLeaveSize = lSize;
}

void TerminalGuard::clearPicture() { gLeaveSize = 0; }

// A terminal that takes nothing holds nothing up.
void TerminalGuard::restore() {
  restoreSettings();
  const size_t lSize = gLeaveSize.exchange(0);
  pollfd lFd = {STDOUT_FILENO, POLLOUT, 0};
  if (lSize == 0 || !isForeground(STDOUT_FILENO) || ::poll(&lFd, 1, 0) != 1) return;
  [[maybe_unused]] const ssize_t lWritten = ::write(STDOUT_FILENO, gLeave, lSize);
}

}  // namespace drive
