#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "NfwOperationControl.h"

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

TEST(OperationControlTest, ProhibitWaitsForEveryOperationUnderWay) {
  nfw::OperationControl lControl;
  ASSERT_TRUE(lControl.start());
  ASSERT_TRUE(lControl.start());
  std::atomic<bool> lIsClosed{false};
  std::thread lShutdown([&] {
    lControl.prohibit();
    lIsClosed = true;
  });
  while (lControl.start()) {  // until the gate is closed
    lControl.complete();
    std::this_thread::yield();
  }
  lControl.complete();
  EXPECT_FALSE(lIsClosed);
  lControl.complete();
  lShutdown.join();
}

// An operation, and whoever ends it, shuts down or takes that back, let loose at once.
class OperationControlRace : public testing::Test {
 protected:
  static constexpr int ROUNDS = 200;

  static void atOnce(const std::vector<std::function<void()>>& nParts) {
    std::atomic<size_t> lMissing{nParts.size()};
    std::vector<std::thread> lThreads;
    for (const auto& lPart : nParts) {
      lThreads.emplace_back([&lMissing, &lPart] {
        --lMissing;
        while (lMissing > 0) std::this_thread::yield();
        lPart();
      });
    }
    for (std::thread& lThread : lThreads) lThread.join();
  }

  void awaitClosed() {
    for (; mControl.start(); std::this_thread::yield()) mControl.complete();
  }

  nfw::OperationControl mControl;
};

TEST_F(OperationControlRace, OneOperationIsCompletedOnce) {
  const std::function<void()> lComplete = [this] { mControl.complete(); };
  for (int i = 0; i < ROUNDS; ++i) {
    ASSERT_TRUE(mControl.start()) << i;
    std::thread lShutdown([this] { mControl.prohibit(); });
    awaitClosed();
    atOnce({lComplete, lComplete, lComplete});
    lShutdown.join();
    mControl.permit();
  }
}

TEST_F(OperationControlRace, APermitDoesNotEndTheWaitForAnOperation) {
  for (int i = 0; i < ROUNDS && !HasFailure(); ++i) {
    ASSERT_TRUE(mControl.start());
    std::atomic<bool> lIsUnderWay{true};
    atOnce({[&] {
              EXPECT_TRUE(mControl.prohibit());
              EXPECT_FALSE(lIsUnderWay) << i;
            },
            [&] {
              awaitClosed();
              mControl.permit();
              EXPECT_TRUE(mControl.start());  // open again, the shutdown still waits
              mControl.complete();
              std::this_thread::yield();
              lIsUnderWay = false;
              mControl.complete();
            }});
  }
}

}  // namespace
