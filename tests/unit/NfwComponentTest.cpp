#include <gtest/gtest.h>

#include "NfwComponent.h"
#include "NfwSharedThreadComponent.h"
#include "PlatformSeams.h"
#include "SharedThread.h"

namespace {

class TestComponent : public nfw::SharedThreadComponent {
 public:
  explicit TestComponent(const char* npName) : nfw::SharedThreadComponent(npName) {}
  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) override { nMsg.getMsgId(&mLastMsgId); }

  int mResult = 0;
  bool mWasStopRequested = false;
  int mLastMsgId = 0;

 protected:
  int initializeBeforeQuickBootImp() override { return mResult; }
  int initializeAfterQuickBootImp() override { return mResult; }
  int startImp() override { return mResult; }
  int stopImp() override {
    mWasStopRequested = isStopRequested();
    return mResult;
  }
  int shutdownImp() override { return mResult; }
  int finalizeImp() override { return mResult; }
};

const struct {
  int (nfw::Component::*mpRun)();
  bool (nfw::Component::*mpIsComplete)() const;
  void (nfw::Component::*mpSetComplete)();
  const char* mpName;
} PHASES[] = {
    {&nfw::Component::initializeBeforeQuickBoot, &nfw::Component::isPreQuickBootComplete,
     &nfw::Component::setBeforeQuickBootComplete, "initializeBeforeQuickBoot"},
    {&nfw::Component::initializeAfterQuickBoot, &nfw::Component::isInitializeComplete,
     &nfw::Component::setInitializeComplete, "initializeAfterQuickBoot"},
    {&nfw::Component::start, &nfw::Component::isStartComplete, &nfw::Component::setStartComplete, "start"},
    {&nfw::Component::stop, &nfw::Component::isStopComplete, &nfw::Component::setStopComplete, "stop"},
    {&nfw::Component::shutdown, &nfw::Component::isShutdownComplete, &nfw::Component::setShutdownComplete, "shutdown"},
    {&nfw::Component::finalize, &nfw::Component::isFinalizeComplete, &nfw::Component::setFinalizeComplete, "finalize"},
};

TEST(ComponentTest, EveryPhaseTellsItsResultAndCompletesAsItSays) {
  const struct {
    int mResult;
    bool mIsComplete;
    const char* mpLine;
  } RESULTS[] = {
      {0, true, nullptr},
      {1, true, nullptr},
      {2, true, "() is Failure"},
      {3, false, nullptr},
      {7, true, "() is Unknown Result=7"},
      {-1, true, "() is Unknown Result=-1"},
  };
  for (const auto& lPhase : PHASES) {
    for (const auto& lResult : RESULTS) {
      seams::CapturedLog lLog;
      TestComponent lComponent("Map");
      lComponent.mResult = lResult.mResult;
      EXPECT_EQ(lResult.mResult, (lComponent.*lPhase.mpRun)());
      EXPECT_EQ(lResult.mIsComplete, (lComponent.*lPhase.mpIsComplete)()) << lPhase.mpName << lResult.mResult;
      const std::vector<std::string> lLines = lLog.texts();
      if (lResult.mpLine == nullptr) {
        EXPECT_TRUE(lLines.empty());
      } else {
        EXPECT_EQ(std::vector<std::string>{std::string("[Map] ") + lPhase.mpName + lResult.mpLine}, lLines);
      }
      (lComponent.*lPhase.mpSetComplete)();
      EXPECT_TRUE((lComponent.*lPhase.mpIsComplete)());
    }
  }
}

TEST(ComponentTest, StopIsRequestedBeforeItIsDone) {
  TestComponent lComponent(nullptr);
  EXPECT_STREQ("", lComponent.getComponentName());
  EXPECT_FALSE(lComponent.isStopRequested());
  lComponent.stop();
  EXPECT_TRUE(lComponent.mWasStopRequested);
  EXPECT_TRUE(lComponent.isStopRequested());
}

TEST(SharedThreadComponentTest, BindsOnlyToARunningThread) {
  seams::CapturedLog lLog;
  TestComponent lComponent("Map");
  utl::MsgDrivenSharedThread lStopped(16, 4, 0, "stopped", 0);
  EXPECT_FALSE(lComponent.initializeThread(nullptr));
  EXPECT_TRUE(lLog.lines().empty());
  EXPECT_FALSE(lComponent.initializeThread(&lStopped));
  EXPECT_TRUE(lLog.has("SharedThreadComponent[Map]::initializeThread(): Thread is not running"));
  EXPECT_EQ(nullptr, lComponent.getThread());
  EXPECT_FALSE(lComponent.postMsg(1));
  EXPECT_FALSE(lComponent.sendMsgSync(1));
  EXPECT_FALSE(lComponent.sendMsgInterrupt(utl::Msg(1)));
  EXPECT_EQ(0, lComponent.setTimer(1, 1, 0, 0));
  EXPECT_FALSE(lComponent.killTimer(1, 1));
}

TEST(SharedThreadComponentTest, SendsAndTimesMessagesToItself) {
  seams::ManualClock lClock;
  nfwtest::SharedThread lThread(16);
  TestComponent lComponent("Map");
  ASSERT_TRUE(lComponent.initializeThread(lThread.get()));
  EXPECT_TRUE(lComponent.postMsg(5));
  lThread.settle();
  EXPECT_EQ(5, lComponent.mLastMsgId);
  EXPECT_TRUE(lComponent.sendMsgSync(utl::Msg(6)));
  EXPECT_EQ(6, lComponent.mLastMsgId);
  EXPECT_TRUE(lComponent.sendMsgInterrupt(7));
  EXPECT_EQ(7, lComponent.mLastMsgId);
  EXPECT_GT(lComponent.setTimer(50, 1, 0, 0), 0);
  lClock.advance(50);
  lThread.settle();
  EXPECT_EQ(utl::TimerMsg::MSG_ID, lComponent.mLastMsgId);
}

// It binds anew in a handler, with messages and a timer behind it on the first thread.
TEST(SharedThreadComponentTest, LeavesNothingBehindOnTheThreadBefore) {
  class MovingComponent : public TestComponent {
   public:
    MovingComponent(const char* npName, nfwtest::SharedThread& nNext) : TestComponent(npName), mNext(nNext) {}
    void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override {
      TestComponent::receiveMsg(nThreadId, nMsg);
      mThreadIds.push_back(nThreadId);
      if (mLastMsgId != 5) return;
      EXPECT_TRUE(postMsg(6));
      EXPECT_GT(setTimer(50, 0, 0, 0), 0);
      EXPECT_TRUE(initializeThread(getThread()));  // the same one: everything stays
      EXPECT_TRUE(getThread()->hasMsg(this, 6));
      EXPECT_TRUE(initializeThread(mNext.get()));
      EXPECT_TRUE(postMsg(7));
    }
    std::vector<int> mThreadIds;

   private:
    nfwtest::SharedThread& mNext;
  };
  seams::ManualClock lClock;
  nfwtest::SharedThread lFirst(16), lSecond(16);
  MovingComponent lComponent("Map", lSecond);
  ASSERT_TRUE(lComponent.initializeThread(lFirst.get()));
  EXPECT_TRUE(lComponent.postMsg(5));
  lFirst.settle();
  lClock.advance(100);
  lFirst.settle();
  lSecond.settle();
  EXPECT_EQ((std::vector<int>{lFirst->getId(), lSecond->getId()}), lComponent.mThreadIds);
}

TEST(SharedThreadComponentTest, NothingIsDeliveredToADestroyedComponent) {
  class DroppingComponent : public TestComponent {
   public:
    using TestComponent::TestComponent;
    ~DroppingComponent() override { getThread()->abortMsg(this); }  // before receiveMsg() is gone
  };
  nfwtest::SharedThread lThread(32);
  {
    DroppingComponent lComponent("Map");
    ASSERT_TRUE(lComponent.initializeThread(lThread.get()));
    for (int i = 0; i < 32; ++i) ASSERT_TRUE(lComponent.postMsg(i));
  }
  lThread.settle();
}

}  // namespace
