#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>

#include <csignal>

#include "LogRecords.h"
#include "TempDir.h"

// The keys of the live view, on a terminal of the program's own.

namespace {

class Terminal {
 public:
  explicit Terminal(const std::string& nArguments) {
    const winsize lSize = {40, 100, 0, 0};
    mPid = ::forkpty(&mFd, nullptr, nullptr, &lSize);
    if (mPid != 0) return;
    ::execl("/bin/sh", "sh", "-c", ("exec " NFW_EMULATOR " " NFW_DRIVE_PROGRAM " " + nArguments).c_str(), nullptr);
    ::_exit(127);
  }
  ~Terminal() {
    ::kill(mPid, SIGKILL);
    ::waitpid(mPid, nullptr, 0);
    ::close(mFd);
  }
  void type(const char* npKeys) const { EXPECT_GT(::write(mFd, npKeys, strlen(npKeys)), 0); }
  void signal(int nSignal) const { ::kill(mPid, nSignal); }

  // Whether the program shows it next. What came before is forgotten.
  bool shows(const std::string& nText) {
    for (size_t lAt = std::string::npos; (lAt = mText.find(nText)) == std::string::npos;) {
      if (!readMore()) return false;
    }
    mText.erase(0, mText.find(nText) + nText.size());
    return true;
  }
  bool hasItsSettings() const {
    termios lNow = {};
    return ::tcgetattr(mFd, &lNow) == 0 && (lNow.c_lflag & (ICANON | ECHO)) == (ICANON | ECHO);
  }
  int wait() {
    while (readMore()) {
    }
    int lStatus = 0;
    ::waitpid(mPid, &lStatus, 0);
    return WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -WTERMSIG(lStatus);
  }

 private:
  bool readMore() {
    pollfd lFd = {mFd, POLLIN, 0};
    char lText[4096];
    const ssize_t lSize = ::poll(&lFd, 1, 60000) == 1 ? ::read(mFd, lText, sizeof(lText)) : -1;
    if (lSize > 0) mText.append(lText, static_cast<size_t>(lSize));
    return lSize > 0;
  }

  int mFd = -1;
  pid_t mPid = -1;
  std::string mText;
};

class KeyTest : public testing::Test {
 protected:
  KeyTest() {
    std::string lBytes;
    for (uint32_t i = 0; i < 60; ++i) lBytes += nfwtest::logRecord(20, i * 1000, "$GPXXX," + std::to_string(i));
    nfwtest::writeFile(mDirectory / "log", lBytes);
  }
  std::string replay() const { return "--log-level 0 --replay " + (mDirectory / "log") + " "; }

  nfwtest::TempDir mDirectory;
};

TEST_F(KeyTest, stepJumpAndChangeTheRateOfAPausedReplay) {
  Terminal lTerminal(replay() + "--paused");
  const struct {
    const char *mpKeys, *mpShown;
  } CASES[] = {
      {".", "0:00:00.0 of 0:00:59.0   rate 1   paused"},
      {".", "0:00:01.0 of 0:00:59.0   rate 1   paused"},
      {"\x1b[C", "0:00:10.9 of 0:00:59.0   rate 1   paused"},
      {".", "0:00:11.0 of 0:00:59.0   rate 1   paused"},
      {"\x1b[D", "0:00:00.9 of 0:00:59.0   rate 1   paused"},
      {"\x1b[A\x1b[A\x1b[A\x1b[A\x1b[A\x1b[A\x1b[A", "rate 100   p"},
      {"\x1b[B", "rate 50   paused"},
  };
  ASSERT_TRUE(lTerminal.shows("paused"));
  EXPECT_FALSE(lTerminal.hasItsSettings());
  for (const auto& lCase : CASES) {
    lTerminal.type(lCase.mpKeys);
    EXPECT_TRUE(lTerminal.shows(lCase.mpShown)) << lCase.mpShown;
  }
  lTerminal.type(" ");
  EXPECT_TRUE(lTerminal.shows("sought in: not compared"));
  EXPECT_EQ(lTerminal.wait(), 0);
  EXPECT_TRUE(lTerminal.hasItsSettings());
}

TEST_F(KeyTest, theTerminalHasItsSettingsBackAtEveryEnd) {
  const struct {
    const char* mpKeys;
    int mSignal, mExit;
  } CASES[] = {{"q", 0, 0}, {nullptr, SIGTERM, 0}, {"\x03", 0, 0}, {"\x1c", 0, -SIGQUIT}, {nullptr, SIGABRT, -SIGABRT}};
  for (const auto& lCase : CASES) {
    Terminal lTerminal(replay() + "--paused");
    ASSERT_TRUE(lTerminal.shows("paused"));
    ASSERT_FALSE(lTerminal.hasItsSettings());
    lCase.mpKeys != nullptr ? lTerminal.type(lCase.mpKeys) : lTerminal.signal(lCase.mSignal);
    EXPECT_EQ(lTerminal.wait(), lCase.mExit);
    EXPECT_TRUE(lTerminal.hasItsSettings()) << lCase.mExit;
  }
}

}  // namespace
