#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <thread>

#include "NfwSharedThreadComponent.h"
#include "PlatformSeams.h"
#include "SharedThread.h"

namespace {

using Ids = std::vector<int>;
const int TIMER = 1000;  // noted for a timer, plus its parameter

class TestComponent : public nfw::SharedThreadComponent {
 public:
  TestComponent() : nfw::SharedThreadComponent("Map") {}
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override {
    int lId = 0;
    EXPECT_TRUE(nMsg.getMsgId(&lId));
    utl::TimerMsg lTimer;
    if (lId == utl::TimerMsg::MSG_ID && lTimer.restoreFrom(nMsg)) lId = TIMER + static_cast<int>(lTimer.getParam());
    mIds.push_back(lId);
    mThreadIds.push_back(nThreadId);
    if (mOnMsg) mOnMsg(lId);
  }

  Ids mIds, mThreadIds;
  std::function<void(int)> mOnMsg;

 private:
  int initializeBeforeQuickBootImp() override { return 0; }
  int initializeAfterQuickBootImp() override { return 0; }
  int startImp() override { return 0; }
  int stopImp() override { return 0; }
  int shutdownImp() override { return 0; }
};

TEST(SharedThreadComponentTest, BindsOnlyToARunningThread) {
  seams::CapturedLog lLog;
  TestComponent lComponent;
  utl::MsgDrivenSharedThread lStopped(16, 4, 0, "stopped", 0);
  EXPECT_FALSE(lComponent.initializeThread(nullptr));
  EXPECT_TRUE(lLog.lines().empty());
  EXPECT_FALSE(lComponent.initializeThread(&lStopped));
  EXPECT_TRUE(lLog.has("SharedThreadComponent[Map]::initializeThread(): Thread is not running"));
  EXPECT_EQ(1, lLog.lines().at(0).mLevel);
  EXPECT_EQ(nullptr, lComponent.getThread());
  const utl::Msg lMsg(1);
  EXPECT_FALSE(lComponent.postMsg(1) || lComponent.sendMsgSync(1) || lComponent.sendMsgInterrupt(1));
  EXPECT_FALSE(lComponent.postMsg(lMsg) || lComponent.sendMsgSync(lMsg) || lComponent.sendMsgInterrupt(lMsg));
  EXPECT_EQ(0, lComponent.setTimer(1, 1, 0, 0));
  EXPECT_FALSE(lComponent.killTimer(1, 1));
  EXPECT_EQ(1U, lLog.lines().size());
}

TEST(SharedThreadComponentTest, SendsAndTimesMessagesToItselfAsTheThreadWould) {
  seams::ManualClock lClock;
  nfwtest::SharedThread lThread(16);
  TestComponent lComponent;
  std::promise<void> lGo;
  lComponent.mOnMsg = [&](int nId) {
    if (nId == 1) lGo.get_future().wait();
  };
  ASSERT_TRUE(lComponent.initializeThread(lThread.get()));
  EXPECT_EQ(lThread.get(), lComponent.getThread());
  EXPECT_TRUE(lComponent.postMsg(1));
  EXPECT_TRUE(nfwtest::eventually([&] { return !lThread->hasMsg(&lComponent, 1); }));
  EXPECT_TRUE(lComponent.postMsg(utl::Msg(2)));
  std::thread lSender([&] { EXPECT_TRUE(lComponent.sendMsgInterrupt(3) && lComponent.sendMsgInterrupt(utl::Msg(4))); });
  EXPECT_TRUE(nfwtest::eventually([&] { return lThread->hasMsg(&lComponent, 3); }));
  lGo.set_value();
  lSender.join();
  EXPECT_TRUE(lComponent.sendMsgSync(5) && lComponent.sendMsgSync(utl::Msg(6)));
  EXPECT_EQ((Ids{1, 3}), Ids(lComponent.mIds.begin(), lComponent.mIds.begin() + 2)) << "interrupts go first";
  EXPECT_EQ(6U, lComponent.mIds.size());
  lComponent.mIds.clear();
  EXPECT_GT(lComponent.setTimer(50, 2, 7, 0), 0);
  const int lEndless = lComponent.setTimer(70, 0, 8, 0);
  for (const unsigned int lMs : {49U, 1U, 20U, 30U, 40U}) lClock.advance(lMs), lThread.settle();
  EXPECT_EQ((Ids{TIMER + 7, TIMER + 8, TIMER + 7, TIMER + 8}), lComponent.mIds);
  EXPECT_TRUE(lComponent.killTimer(lEndless, 1));
  EXPECT_FALSE(lComponent.killTimer(lEndless, 1));
}

// It binds anew in a handler, with messages and a timer behind it on the first thread.
TEST(SharedThreadComponentTest, LeavesNothingBehindOnTheThreadBefore) {
  seams::ManualClock lClock;
  nfwtest::SharedThread lFirst(16), lSecond(16);
  TestComponent lComponent;
  lComponent.mOnMsg = [&](int nId) {
    if (nId != 5) return;
    EXPECT_TRUE(lComponent.postMsg(6));
    EXPECT_GT(lComponent.setTimer(50, 0, 0, 0), 0);
    EXPECT_TRUE(lComponent.initializeThread(lFirst.get()));  // the same one: everything stays
    EXPECT_TRUE(lFirst->hasMsg(&lComponent, 6));
    EXPECT_TRUE(lComponent.initializeThread(lSecond.get()));
    EXPECT_TRUE(lComponent.postMsg(7));
  };
  ASSERT_TRUE(lComponent.initializeThread(lFirst.get()));
  EXPECT_TRUE(lComponent.postMsg(5));
  lFirst.settle();
  lClock.advance(100);
  lFirst.settle();
  lSecond.settle();
  EXPECT_EQ((Ids{lFirst->getId(), lSecond->getId()}), lComponent.mThreadIds);
}

TEST(SharedThreadComponentTest, NothingIsDeliveredToADestroyedComponent) {
  std::promise<void> lGo;
  nfwtest::SharedThread lThread(32);
  TestComponent lHolding;
  lHolding.mOnMsg = [&](int) { lGo.get_future().wait(); };
  ASSERT_TRUE(lHolding.initializeThread(lThread.get()) && lHolding.postMsg(1));
  EXPECT_TRUE(nfwtest::eventually([&] { return lThread->getFirstMsgId() == 0; }));
  {
    TestComponent lComponent;
    ASSERT_TRUE(lComponent.initializeThread(lThread.get()));
    for (int i = 0; i < 32; ++i) ASSERT_TRUE(lComponent.postMsg(i));
    ASSERT_TRUE(lThread->hasMsg(&lComponent, 31));
  }
  EXPECT_EQ(0, lThread->getFirstMsgId());
  lGo.set_value();
  lThread.settle();
}

}  // namespace
