// The stand-in of the system log service: where lines and records go, and what becomes of those that cannot.

#include <atomic>
#include <cerrno>
#include <csignal>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "../syslog/src/LogTypes.h"
#include "ContractSupport.h"
#include "SysLogService.h"
#include "SysLogServiceHost.h"
#include "ThreadSupport.h"

namespace {

using contract::Pipe;
using contract::RedirectedError;

// What one line looks like on standard error.
std::string written(int nType, int nLevel, const char* npText) {
  Pipe lPipe;
  RedirectedError lError(lPipe.writeEnd());
  applog(nType, nLevel, npText);
  return lPipe.drain();
}

TEST(SysLogStandIn, WritesOneLineEach) {
  registerLogType(20, "<NAVI>NFW    ", 4);
  registerLogType(21, "MAP", 4);
  registerLogType(22, nullptr, 4);
  registerLogType(23, "A name of thirty-two characters.", 4);
  const struct {
    int mType, mLevel;
    const char* mpText;
    const char* mpLine;
  } CASES[] = {
      {20, 1, "LogWriter::open()", "ERR <NAVI>NFW    LogWriter::open()\n"},
      {21, 2, "100% of %s", "WRN MAP 100% of %s\n"},
      {22, 3, "no name", "INF [22] no name\n"},
      {-1, 4, "", "DTL [-1] \n"},
      {23, 5, "x", "DBG A name of thirty-two characters x\n"},
      {-2147483647 - 1, 0, "x", "NO  [-2147483648] x\n"},
      {21, 77, "a\nb\r\tc\x1b[2J\x7f\xC3\xA4", "DBG MAP a b  c [2J \xC3\xA4\n"},
  };
  for (const auto& lCase : CASES) EXPECT_EQ(lCase.mpLine, written(lCase.mType, lCase.mLevel, lCase.mpText));
}

TEST(SysLogStandIn, CutsAnEndlessTextAndColoursByLevelWhenTold) {
  const std::string lEndless(100000, 'x'), lMost(1023, 'x');
  for (const bool lIsColoured : {false, true}) {
    syslogservice::setColoured(lIsColoured);
    const std::string lOn = lIsColoured ? "\x1b[31m" : "", lEnd = lIsColoured ? "\x1b[0m\n" : "\n";
    const std::string lLine = written(20, 1, lEndless.c_str());
    ASSERT_GT(lLine.size(), 1023u);
    EXPECT_LT(lLine.size(), 1600u);
    EXPECT_EQ("xxx..." + lEnd, lLine.substr(lLine.size() - 6 - lEnd.size()));
    EXPECT_EQ(lOn + "ERR [30] " + lMost + lEnd, written(30, 1, lMost.c_str()));
    EXPECT_EQ("INF [30] text\n", written(30, 3, "text"));
  }
  syslogservice::setColoured(false);
}

TEST(SysLogStandIn, DropsWhatNobodyReadsAndGoesOn) {
  Pipe lPipe;
  lPipe.fill();
  RedirectedError lError(lPipe.writeEnd());
  const unsigned long long lBefore = syslogservice::droppedLines();
  errno = 7;
  for (int i = 0; i < 3; ++i) applog(30, 1, "lost");
  EXPECT_EQ(7, errno);
  EXPECT_EQ(lBefore + 3, syslogservice::droppedLines());
  EXPECT_EQ(0, fcntl(STDERR_FILENO, F_GETFL) & O_NONBLOCK);  // others share the descriptor
  lPipe.drain();
  applog(30, 1, "read again");
  EXPECT_EQ("ERR [30] read again\n", lPipe.drain());
  lPipe.closeReadEnd();
  applog(30, 1, "lost");
  ::close(STDERR_FILENO);
  applog(30, 1, "lost");
  EXPECT_EQ(lBefore + 5, syslogservice::droppedLines());
  sigset_t lPending;
  EXPECT_EQ(0, sigpending(&lPending));
  EXPECT_EQ(0, sigismember(&lPending, SIGPIPE));
}

TEST(SysLogStandIn, KeepsLevelsOfRegisteredTypes) {
  const auto lLevels = [] {
    std::string lAll;
    for (const int lType : {40, 41, 42}) lAll += std::to_string(syslogservice::registeredLevel(lType)) + " ";
    return lAll;
  };
  registerLogType(40, "A", 3);
  registerLogType(41, "B", 4);
  for (const int lType : {40, 42}) setFilterLevel(lType, 5);
  EXPECT_EQ("5 4 -1 ", lLevels());
  setAllFilterLevel(2);
  EXPECT_EQ("2 2 -1 ", lLevels());
  auto lpTypes = std::make_unique<syslogservice::LogTypes>();
  for (int i = 0; i < 256; ++i) ASSERT_TRUE(lpTypes->set(i, "x", 4));
  EXPECT_FALSE(lpTypes->set(256, "x", 4));
  EXPECT_TRUE(lpTypes->set(255, "y", 5));
}

TEST(SysLogStandIn, ASinkIsLeftBeforeItIsReplaced) {
  struct Sink : syslogservice::Sink {
    void writeLine(int nType, int nLevel, const char* npText) override {
      EXPECT_TRUE(nType == 30 && nLevel == 1 && std::string("a line") == npText);
      if (++mCalls > 1) return;
      mGo.get_future().wait();
      mIsOver = true;
    }
    std::atomic<int> mCalls{0};
    std::promise<void> mGo;
    std::atomic<bool> mIsOver{false};
  } lOuter, lInner;
  lInner.mCalls = 1;
  syslogservice::Sink* const lpBefore = syslogservice::setSink(&lOuter);
  std::thread lWriter([] { applog(30, 1, "a line"); });
  EXPECT_TRUE(contract::eventually([&] { return lOuter.mCalls == 1; }));
  std::thread lReplacer([&] {
    EXPECT_EQ(&lOuter, syslogservice::setSink(&lInner));
    EXPECT_TRUE(lOuter.mIsOver);
  });
  const auto lWriteOn = [] { applog(30, 1, "a line"); };  // lines of others go on
  EXPECT_TRUE(contract::eventually([&] { return lInner.mCalls > 1; }, lWriteOn));
  lOuter.mGo.set_value();
  lWriter.join();
  lReplacer.join();
  EXPECT_EQ(&lInner, syslogservice::setSink(lpBefore));
}

}  // namespace
