#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <thread>

#include "LogReport.h"
#include "OutputQueue.h"
#include "Window.h"

namespace {

TEST(OutputQueue, waitsForNoReaderAndCountsWhatIsNotTaken) {
  using std::chrono::milliseconds;
  std::signal(SIGPIPE, SIG_IGN);
  int lPipe[2] = {};
  ASSERT_EQ(::pipe(lPipe), 0);
  drive::OutputQueue lQueue(lPipe[1], 300000);  // more than the pipe takes
  ASSERT_TRUE(lQueue.start());
  const std::string lLines = std::string(999, 'x') + "\n" + std::string(999, 'y') + "\n";
  unsigned int lTaken = 0;
  while (lQueue.write(lLines)) ++lTaken;
  EXPECT_GE(lTaken, 149u);
  EXPECT_EQ(lQueue.lost(), 2u);
  std::thread lHeld([&] { lQueue.awaitRoom(); });
  EXPECT_FALSE(lQueue.drain(milliseconds(50)));
  lQueue.letGo();
  lHeld.join();
  EXPECT_FALSE(lQueue.finish(milliseconds(50)));
  EXPECT_GT(lQueue.lost(), 100u);
  EXPECT_FALSE(lQueue.write(lLines));
  ::close(lPipe[0]);  // lets the thread go
}

TEST(LogReport, speaksAtTheBeginningEveryTenSecondsAndAtTheEnd) {
  drive::LogReport lReport("the log");
  lReport.want("here");
  nfw::LogRecordCounts lCounts;
  std::vector<int> lSpoken;
  const auto lStart = drive::Spell::Clock::now();
  for (int lSecond = 0; lSecond < 60; ++lSecond) {
    ++lCounts.mRecorded;
    if (lSecond >= 5 && lSecond < 30) ++lCounts.mFailed;
    lCounts.mIsFailing = lSecond == 50 || lSecond == 51;
    lCounts.mReason = nfw::LOG_LOSS_WRITE;
    lCounts.mError = ENOSPC;
    if (!lReport.look(lCounts, lStart + std::chrono::seconds(lSecond)).empty()) lSpoken.push_back(lSecond);
  }
  EXPECT_EQ(lSpoken, (std::vector<int>{5, 15, 25, 31, 50, 53}));
  EXPECT_EQ(lReport.getVerdict().find("the log in here: 25 of 85 records are missing (0 refused, 25 failed) since "),
            0u);
  EXPECT_NE(lReport.getVerdict().find(": the file cannot be written: No space left on device"), std::string::npos);
}

TEST(Window, neverHoldsMoreThanItsPlaces) {
  tool::Window lWindow(3);
  EXPECT_TRUE(lWindow.acquire(2));
  std::future<bool> lNext = std::async(std::launch::async, [&] { return lWindow.acquire(2); });
  for (int i = 0; i < 60000 && lWindow.heldBack() == 0; ++i) ::poll(nullptr, 0, 1);
  EXPECT_EQ(lNext.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
  lWindow.release();
  ASSERT_EQ(lNext.wait_for(std::chrono::seconds(60)), std::future_status::ready);
  EXPECT_TRUE(lNext.get());
  EXPECT_EQ(lWindow.heldBack(), 1u);
  lNext = std::async(std::launch::async, [&] { return lWindow.acquire(1); });
  lWindow.close();
  EXPECT_FALSE(lNext.get());
}

}  // namespace
