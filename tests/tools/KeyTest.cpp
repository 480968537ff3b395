#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>

#include <chrono>
#include <csignal>

#include "LogRecords.h"
#include "TempDir.h"
#include "TerminalScreen.h"

// The keys of the live view, on a terminal of the program's own.

namespace {

class Terminal {
 public:
  // @param nMore commands of the shell whose job it then is
  explicit Terminal(const std::string& nArguments, const std::string& nMore = "") {
    const winsize lSize = {24, 80, 0, 0};
    mPid = ::forkpty(&mFd, nullptr, nullptr, &lSize);
    if (mPid != 0) return;
    for (const int lSignal : {SIGINT, SIGQUIT}) ::signal(lSignal, SIG_DFL);  // ignored in the background of a script
    ::setenv("TERM", "vt100", 1);
    ::setenv("LC_ALL", "C", 1);  // a column is a byte
    ::execl("/bin/sh", "sh", "-c",
            ((nMore.empty() ? "exec " : "set -m; ") + std::string(NFW_EMULATOR " " NFW_DRIVE_PROGRAM " ") + nArguments +
             nMore)
                .c_str(),
            nullptr);
    ::_exit(127);
  }
  ~Terminal() {
    ::kill(mPid, SIGKILL);
    ::waitpid(mPid, nullptr, 0);
    ::close(mFd);
  }
  void type(const char* npKeys) const { EXPECT_GT(::write(mFd, npKeys, strlen(npKeys)), 0); }
  void signal(int nSignal) const { ::kill(mPid, nSignal); }

  // Whether the program comes to show it.
  bool shows(const std::string& nText) {
    const auto lLimit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (mScreen.text().find(nText) == std::string::npos) {
      if (std::chrono::steady_clock::now() > lLimit || !readMore()) return false;
    }
    return true;
  }
  void clear() { mScreen = TerminalScreen(80, 24); }
  bool hasItsSettings() const {
    termios lNow = {};
    return ::tcgetattr(mFd, &lNow) == 0 && (lNow.c_lflag & (ICANON | ECHO)) == (ICANON | ECHO);
  }
  int wait(bool nReads = true) {
    while (nReads && readMore()) {
    }
    int lStatus = 0;
    for (int i = 0; i < 60000 && ::waitpid(mPid, &lStatus, WNOHANG) == 0; ++i) ::poll(nullptr, 0, 1);
    return WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -WTERMSIG(lStatus);
  }

 private:
  bool readMore() {
    pollfd lFd = {mFd, POLLIN, 0};
    char lText[4096];
    const ssize_t lSize = ::poll(&lFd, 1, 60000) == 1 ? ::read(mFd, lText, sizeof(lText)) : -1;
    if (lSize > 0) mText.append(lText, static_cast<size_t>(lSize));
    mText.erase(0, mScreen.take(mText));
    return lSize > 0;
  }

  int mFd = -1;
  pid_t mPid = -1;
  std::string mText;  // the beginning of a sequence
  TerminalScreen mScreen{80, 24};
};

class KeyTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!NFW_HAS_LIVE_VIEW) GTEST_SKIP() << "nfw-drive was built without ncurses";
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

TEST_F(KeyTest, showAPageAndTheOverviewAgain) {
  Terminal lTerminal("sim --tunnel 3-100");
  const struct {
    const char *mpKeys, *mpShown;
  } CASES[] = {
      {"", "5 more: s shows them"}, {"s", "Galileo 322"}, {"l", "INF source sim is open"}, {"l", "Rejected     0"}};
  for (const auto& lCase : CASES) {
    if (*lCase.mpKeys != '\0') lTerminal.type(lCase.mpKeys);
    EXPECT_TRUE(lTerminal.shows(lCase.mpShown)) << lCase.mpShown;
  }
  EXPECT_TRUE(lTerminal.shows("Fix          reckoned"));
}

// The job of a shell: what it has drawn is off the terminal while it is stopped, and drawn anew when it goes on.
TEST_F(KeyTest, aStoppedViewLeavesTheTerminalToTheShell) {
  Terminal lTerminal(replay() + "--paused", "; echo stopped; read x; fg");
  ASSERT_TRUE(lTerminal.shows("paused"));
  ASSERT_FALSE(lTerminal.hasItsSettings());
  lTerminal.type("\x1a");
  ASSERT_TRUE(lTerminal.shows("stopped"));
  EXPECT_TRUE(lTerminal.hasItsSettings());
  lTerminal.clear();
  lTerminal.type("\n");
  ASSERT_TRUE(lTerminal.shows("rate 1   paused"));
  lTerminal.type("q");
  EXPECT_EQ(lTerminal.wait(), 0);
  EXPECT_TRUE(lTerminal.hasItsSettings());
}

// What is recorded waits for no terminal. What that has not taken is told by the exit status.
TEST_F(KeyTest, aTerminalThatTakesNothingHoldsUpNoRecording) {
  Terminal lTerminal("sim --speed 100 --for 200 --record " + mDirectory.path());
  lTerminal.type("\x13");
  EXPECT_EQ(lTerminal.wait(false), 1);
  size_t lCount = 0;
  for (const std::string& lFile : mDirectory.files()) {
    const std::string lBytes = nfwtest::readFile(lFile);
    for (size_t i = 0; (i = lBytes.find("$GNZDA", i)) != std::string::npos; ++i) ++lCount;
  }
  EXPECT_EQ(lCount, 200u);
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
