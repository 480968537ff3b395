#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <thread>

#include "NfwOperationControl.h"
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

// Operations, and whoever ends them, shuts down or takes that back, let loose at once.
class OperationControlRace : public testing::Test {
 protected:
  static constexpr int ROUNDS = 50;

  static void atOnce(const std::vector<std::function<void()>>& nParts) {
    std::atomic<size_t> lMissing{nParts.size()};
    std::vector<std::thread> lThreads;
    for (const auto& lPart : nParts) {
      lThreads.emplace_back([&lMissing, &lPart] {
        --lMissing;
        EXPECT_TRUE(nfwtest::eventually([&] { return lMissing == 0; }));
        lPart();
      });
    }
    for (std::thread& lThread : lThreads) lThread.join();
  }
  void awaitClosed() {
    EXPECT_TRUE(nfwtest::eventually([this] {
      const bool lIsOpen = mControl.start();
      if (lIsOpen) mControl.complete();
      return !lIsOpen;
    }));
  }

  nfw::OperationControl mControl;
};

TEST_F(OperationControlRace, AShutdownWaitsForEveryOperationAlsoWhenItIsTakenBackMeanwhile) {
  for (int i = 0; i < ROUNDS && !HasFailure(); ++i) {
    std::atomic<int> lUnderWay{2};
    for (int j = 0; j < 2; ++j) EXPECT_TRUE(mControl.start());
    const auto lEnd = [&] {
      std::this_thread::yield();
      --lUnderWay;
      mControl.complete();
    };
    atOnce({[&] {
              EXPECT_TRUE(mControl.prohibit());
              EXPECT_EQ(0, lUnderWay) << i;
              if (i % 2 == 0) mControl.permit();
            },
            [&] {
              awaitClosed();
              lEnd();
              if (i % 2 == 1) {
                mControl.permit();
                EXPECT_TRUE(mControl.start()) << "open again, the shutdown still waits";
                mControl.complete();
              }
              lEnd();
            }});
  }
}

}  // namespace
