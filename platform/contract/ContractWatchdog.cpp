// A platform that keeps a caller for ever must fail the suite and not only stop it: each case has a limit.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <string>

namespace {

const unsigned int CASE_LIMIT_S = 120;

// What the signal's handler writes, ready made, and where to: a case may have redirected its standard error.
char gVerdict[256];
size_t gVerdictSize = 0;
int gError = -1;

void onAlarm(int) {
  const ssize_t lWritten = write(gError, gVerdict, gVerdictSize);
  _exit(lWritten > 0 ? 1 : 2);
}

// A timer of the kernel and no thread: what hangs may be the threads.
void setAlarm(unsigned int nLimitMs) {
  const itimerval lTimer = {{0, 0}, {nLimitMs / 1000, static_cast<suseconds_t>(nLimitMs % 1000 * 1000)}};
  signal(SIGALRM, onAlarm);
  setitimer(ITIMER_REAL, &lTimer, nullptr);
}

void watch(const std::string& nCase, unsigned int nLimitMs) {
  const int lSize = snprintf(gVerdict, sizeof gVerdict, "%s hangs: no end after %u ms\n", nCase.c_str(), nLimitMs);
  gVerdictSize = std::min(sizeof gVerdict - 1, static_cast<size_t>(lSize));
  gError = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
  setAlarm(nLimitMs);
}

class Watchdog : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo& nTest) override {
    watch(std::string(nTest.test_suite_name()) + "." + nTest.name(), CASE_LIMIT_S * 1000);
  }
  void OnTestEnd(const testing::TestInfo&) override {
    setAlarm(0);
    close(gError);
  }
};

[[maybe_unused]] const bool gIsWatching = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new Watchdog);
  return true;
}();

}  // namespace
