#include <gtest/gtest.h>

#include <atomic>
#include <thread>

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

}  // namespace
