#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <future>
#include <thread>

#include "NfwOperationControl.h"
#include "OneInstance.h"
#include "PlatformSeams.h"
#include "SharedThread.h"

namespace {

TEST(OperationControlTest, RefusesUntilEveryProhibitIsTakenBack) {
  nfw::OperationControl lControl;
  lControl.complete();  // nothing runs: no effect
  EXPECT_TRUE(lControl.start());
  lControl.complete();
  EXPECT_TRUE(lControl.prohibit());
  EXPECT_TRUE(lControl.prohibit());
  EXPECT_FALSE(lControl.start());
  lControl.permit();
  EXPECT_FALSE(lControl.start());
  { const nfw::AutoPermitOperation lPermit(lControl); }
  lControl.permit();  // once too often: no effect
  EXPECT_TRUE(lControl.start());
  { const nfw::AutoCompleteOperation lComplete(lControl); }
  EXPECT_TRUE(lControl.prohibit());
}

// No test can count so far: the counters are set where they stand, at the beginning of the object.
TEST(OperationControlTest, ACounterAtItsEndRefusesWithALine) {
  seams::CapturedLog lLog;
  nfw::OperationControl lControl;
  const auto lSet = [&](size_t nAt, uint32_t nValue) { memcpy(reinterpret_cast<char*>(&lControl) + nAt, &nValue, 4); };
  lSet(0, 0xFFFFFFFEu);
  EXPECT_TRUE(lControl.start());
  EXPECT_FALSE(lControl.start());
  lControl.complete();
  EXPECT_TRUE(lControl.start());
  lSet(0, 0);
  lSet(8, 0xFFFFFFFFu);
  EXPECT_FALSE(lControl.prohibit());
  EXPECT_TRUE(lControl.start()) << "it has closed nothing";
  const char* const LINES[] = {"OperationControl::start(): StartCount=MAX",
                               "OperationControl::prohibit(): StopRequestedCount=MAX"};
  ASSERT_EQ(2U, lLog.lines().size());
  for (size_t i = 0; i < 2; ++i) {
    const auto lLine = lLog.lines()[i];
    EXPECT_TRUE(lLine.mType == 10 && lLine.mLevel == 1 && lLine.mText == LINES[i]) << lLine.mText;
  }
}

TEST(OperationControlTest, AShutdownWaitsForEveryOperationAlsoWhenItIsTakenBackMeanwhile) {
  for (const bool lIsTakenBack : {false, true}) {
    nfw::OperationControl lControl;
    std::atomic<bool> lIsOver{false};
    EXPECT_TRUE(lControl.start() && lControl.start());
    std::thread lShutdown([&] {
      EXPECT_TRUE(lControl.prohibit());
      lIsOver = true;
    });
    EXPECT_TRUE(nfwtest::eventually([&] {
      const bool lIsOpen = lControl.start();
      if (lIsOpen) lControl.complete();
      return !lIsOpen;
    }));
    lControl.complete();
    if (lIsTakenBack) {
      lControl.permit();
      EXPECT_TRUE(lControl.start()) << "open again, the shutdown still waits";
      lControl.complete();
    }
    EXPECT_FALSE(lIsOver);
    lControl.complete();
    lShutdown.join();
    EXPECT_EQ(lIsTakenBack, lControl.start());
  }
}

TEST(OneInstanceTest, EndsWhenTheLastUseOfItIsOverAndMayComeAgain) {
  struct Object {
    bool end() { return mIsGone = true; }
    std::atomic<bool>& mIsGone;
  };
  std::atomic<bool> lIsGone{false};
  nfw::OneInstance<Object> lOne("nfw::Test_Instantiation");
  for (int i = 0; i < 2; ++i, lIsGone = false) {
    lOne.get([&] { return new Object{lIsGone}; });
    std::future<void> lEnd;
    lOne.use([&](Object&) {
      lEnd = std::async(std::launch::async, [&] { lOne.destroy(); });
      bool lIsThere = true;
      for (int j = 0; j < 1000 || lIsThere; ++j, std::this_thread::yield()) {
        lIsThere = false;
        lOne.use([&](Object&) { lIsThere = true; });
      }
      EXPECT_FALSE(lIsGone);
    });
    lEnd.get();
    EXPECT_TRUE(lIsGone);
  }
}

}  // namespace
