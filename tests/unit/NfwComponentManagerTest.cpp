#include <gtest/gtest.h>

#include <functional>

#include "NfwComponentManager.h"
#include "NfwSharedThreadComponent.h"
#include "PlatformSeams.h"
#include "SharedThread.h"

namespace {

const char* const PHASE_NAMES[] = {"pre", "initialize", "start", "stop", "shutdown", "finalize"};

/// What was called, in order.
using Notes = std::vector<std::string>;

class NotingComponent : public nfw::Component {
 public:
  NotingComponent(const char* npName, Notes& nNotes, int nResult = nfw::PHASE_DONE)
      : nfw::Component(npName), mNotes(nNotes), mResult(nResult) {}
  ~NotingComponent() override { mNotes.push_back(std::string("~") + getComponentName()); }

 private:
  int note(int nPhase) {
    mNotes.push_back(std::string(getComponentName()) + "." + PHASE_NAMES[nPhase]);
    return mResult;
  }
  int initializeBeforeQuickBootImp() override { return note(0); }
  int initializeAfterQuickBootImp() override { return note(1); }
  int startImp() override { return note(2); }
  int stopImp() override { return note(3); }
  int shutdownImp() override { return note(4); }
  int finalizeImp() override { return note(5); }

  Notes& mNotes;
  const int mResult;
};

class NotingListener : public nfw::ComponentStatusListener {
 public:
  explicit NotingListener(Notes& nNotes) : mNotes(nNotes) {}
  void onPreQuickBootComplete() override { note(0); }
  void onInitializeComplete() override { note(1); }
  void onStartComplete() override { note(2); }
  void onStopComplete() override { note(3); }
  void onShutdownComplete() override { note(4); }
  void onFinalizeComplete() override {
    note(5);
    if (mOnFinalized) mOnFinalized();
  }

  std::function<void()> mOnFinalized;

 private:
  void note(int nPhase) { mNotes.push_back(std::string("all.") + PHASE_NAMES[nPhase]); }
  Notes& mNotes;
};

using Driver = bool (nfw::ComponentManager::*)();
const Driver DRIVERS[] = {&nfw::ComponentManager::initializeBeforeQuickBoot,
                          &nfw::ComponentManager::initializeAfterQuickBoot,
                          &nfw::ComponentManager::start,
                          &nfw::ComponentManager::stop,
                          &nfw::ComponentManager::shutdown,
                          &nfw::ComponentManager::finalize};

class ComponentManagerTest : public testing::Test {
 protected:
  nfw::Component* add(const char* npName, int nResult = nfw::PHASE_DONE) {
    nfw::Component* const lpComponent = new NotingComponent(npName, mNotes, nResult);
    EXPECT_TRUE(mpManager->addComponent(utl::SmartPointer<nfw::Component>(lpComponent)));
    return lpComponent;
  }
  bool drive(int nPhase) {
    const bool lResult = (mpManager.get()->*DRIVERS[nPhase])();
    mThread.settle();  // the phase has run
    mThread.settle();  // the completions that it posted have been handled
    return lResult;
  }
  void passTime(unsigned int nMs, const char* npExpected) {
    mClock.advance(nMs);
    if (npExpected == nullptr) return;
    EXPECT_TRUE(mLog.waitFor(npExpected)) << npExpected;
  }

  seams::ManualClock mClock;
  seams::CapturedLog mLog;
  Notes mNotes;
  NotingListener mListener{mNotes};
  nfwtest::SharedThread mThread{nfw::ComponentManager::getMaxMsgDataSize()};
  std::unique_ptr<nfw::ComponentManager> mpManager{new nfw::ComponentManager(2)};
};

TEST_F(ComponentManagerTest, DrivesEveryPhaseFrontToBackAndReleasesTheComponents) {
  EXPECT_EQ(4U, nfw::ComponentManager::getMaxMsgDataSize());
  EXPECT_TRUE(mpManager->setStatusListener(&mListener));
  add("A");
  add("B");
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  Notes lExpected;
  for (int i = 0; i < 6; ++i) {
    EXPECT_TRUE(drive(i));
    for (const char* lpWho : {"A.", "B.", "all."}) {
      if (i == 5 && *lpWho == 'a') lExpected.insert(lExpected.end(), {"~A", "~B"});
      lExpected.push_back(std::string(lpWho) + PHASE_NAMES[i]);
    }
  }
  std::sort(mNotes.end() - 3, mNotes.end() - 1);  // the order of release says nothing
  EXPECT_EQ(lExpected, mNotes);
  EXPECT_TRUE(mLog.texts().empty());
  for (int i = 0; i < 6; ++i) EXPECT_FALSE(drive(i));
}

TEST_F(ComponentManagerTest, ListenerIsToldAlsoWithoutAnyComponent) {
  mpManager->setStatusListener(&mListener);
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  EXPECT_TRUE(drive(0));
  EXPECT_EQ(Notes{"all.pre"}, mNotes);
}

TEST_F(ComponentManagerTest, DriversKeepTheOrderButStopComesFromAnyPhaseBeforeIt) {
  mpManager->setStatusListener(&mListener);
  EXPECT_FALSE(mpManager->initializeBeforeQuickBoot());  // no thread yet
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  for (const int lPhase : {1, 2, 4, 5}) EXPECT_FALSE(drive(lPhase));
  EXPECT_TRUE(drive(0));
  EXPECT_FALSE(drive(0));
  EXPECT_TRUE(drive(1));
  EXPECT_TRUE(drive(3));
  EXPECT_FALSE(drive(3));
  EXPECT_FALSE(drive(2));
  EXPECT_TRUE(drive(4));
  EXPECT_TRUE(mLog.texts().empty());
}

TEST_F(ComponentManagerTest, IsConfiguredOnlyBeforeItsThread) {
  EXPECT_TRUE(mpManager->setStatusListener(nullptr));
  EXPECT_TRUE(mpManager->addComponent(utl::SmartPointer<nfw::Component>()));
  add("A");
  add("B");
  Notes lNotes;
  EXPECT_FALSE(mpManager->addComponent(utl::SmartPointer<nfw::Component>(new NotingComponent("C", lNotes))));
  EXPECT_EQ(Notes{"ComponentManager::addComponent(): Can't add [C] to ComponentList"}, mLog.texts());

  EXPECT_FALSE(mpManager->initializeThread(nullptr));
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  EXPECT_FALSE(mpManager->addComponent(utl::SmartPointer<nfw::Component>()));
  EXPECT_FALSE(mpManager->setStatusListener(&mListener));
  mLog.clear();
  EXPECT_FALSE(mpManager->initializeThread(mThread.get()));
  EXPECT_EQ(Notes{"Thread Start[nfw::ComponentManager_Watch_Thread]"}, mLog.texts());
}

TEST_F(ComponentManagerTest, NeedsARunningThread) {
  mThread.stop();
  EXPECT_FALSE(mpManager->initializeThread(mThread.get()));
  EXPECT_EQ(Notes{"ComponentManager::initializeThread(): Thread is not running"}, mLog.texts());
}

TEST_F(ComponentManagerTest, FailedPostLeavesThePhaseToBeTriedAgain) {
  const char* const LINES[] = {
      "initializeBeforeQuickBoot", "initializeAfterQuickBoot", "start", "stop", "shutdown", "finalize"};
  mpManager->setStatusListener(&mListener);
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  for (int i = 0; i < 6; ++i) {
    {
      const seams::Failing lFailing(seams::POST);
      EXPECT_FALSE((mpManager.get()->*DRIVERS[i])());
    }
    EXPECT_EQ(Notes{std::string("ComponentManager::") + LINES[i] + "(): Can't post thread"}, mLog.texts());
    mLog.clear();
    EXPECT_TRUE(drive(i));
  }
}

TEST_F(ComponentManagerTest, ReportsEveryPhaseThatIsTooLateOnce) {
  const struct {
    void (nfw::Component::*mpSetComplete)();
    const char* mpOpening;
    size_t mClosingLength;
  } LATE[] = {
      {&nfw::Component::setBeforeQuickBootComplete, "##### Pre QuickBoot of Component is Too Late #####", 37},
      {&nfw::Component::setInitializeComplete, "##### Initialize of Component is Too Late #####", 47},
      {&nfw::Component::setStartComplete, "##### Start of Component is Too Late #####", 42},
      {&nfw::Component::setStopComplete, "##### Stop of Component is Too Late #####", 41},
      {&nfw::Component::setShutdownComplete, "##### Shutdown of Component is Too Late #####", 45},
      {&nfw::Component::setFinalizeComplete, "##### Finalize of Component is Too Late #####", 45},
  };
  mpManager->setStatusListener(&mListener);
  nfw::Component* const lpPending = add("Slow", nfw::PHASE_PENDING);
  add("Quick");
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  for (int i = 0; i < 6; ++i) {
    mLog.clear();
    EXPECT_TRUE(drive(i));
    passTime(29999, nullptr);
    EXPECT_TRUE(mLog.texts().empty());
    passTime(1, std::string(LATE[i].mClosingLength, '#').c_str());
    EXPECT_EQ((Notes{LATE[i].mpOpening, "# [Slow] is not complete", std::string(LATE[i].mClosingLength, '#')}),
              mLog.texts());
    for (const auto& lLine : mLog.lines()) EXPECT_EQ(3, lLine.mLevel);
    mLog.clear();
    passTime(60000, nullptr);
    EXPECT_FALSE(mNotes.back() == std::string("all.") + PHASE_NAMES[i]);
    if (i < 5) (lpPending->*LATE[i].mpSetComplete)();  // once more changes nothing; finalised it is gone
    (lpPending->*LATE[i].mpSetComplete)();
    mThread.settle();
    EXPECT_EQ(std::string("all.") + PHASE_NAMES[i], mNotes.back());
    EXPECT_TRUE(mLog.texts().empty());
  }
}

TEST_F(ComponentManagerTest, PhaseGoesOnWithoutAWatchWhenNoTimerIsToBeHad) {
  mpManager->setStatusListener(&mListener);
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  const seams::Failing lFailing(seams::TIMER);
  EXPECT_TRUE(drive(0));
  EXPECT_EQ(Notes{"ComponentManager::onInitializeBeforQuickBoot(): Can't set timer"}, mLog.texts());
  EXPECT_EQ(Notes{"all.pre"}, mNotes);
}

TEST_F(ComponentManagerTest, LostCompletionIsLogged) {
  nfw::Component* const lpPending = add("Slow", nfw::PHASE_PENDING);
  lpPending->setInitializeComplete();  // no thread yet: nothing to tell
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  const seams::Failing lFailing(seams::POST);
  lpPending->setStartComplete();
  EXPECT_EQ(Notes{"ComponentManager::setStartComplete(): Can't post thread"}, mLog.texts());
}

TEST_F(ComponentManagerTest, UnreadableMessagesAreNamed) {
  nfwtest::RawMsg lNoId;
  nfwtest::RawMsg lUnknown(static_cast<int>(0x80000C0Eu));
  mpManager->receiveMsg(1, lNoId);  // without a thread: ignored
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  const int lId = mThread->getId();
  mpManager->receiveMsg(lId, lNoId);
  mpManager->receiveMsg(lId, lUnknown);
  mpManager->receiveMsg(-1, lNoId);
  EXPECT_EQ((Notes{"ComponentManager::receiveThreadMsg(): Can't get MsgId",
                   "ComponentManager::receiveThreadMsg(): UnknownMsg: MsgId=-2147480562",
                   "ComponentManager::receiveMsg(): Unknown ThreadId: 0xffffffff"}),
            mLog.texts());
}

TEST_F(ComponentManagerTest, MayBeDeletedInItsLastCallback) {
  mListener.mOnFinalized = [this] { mpManager.reset(); };
  mpManager->setStatusListener(&mListener);
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  for (int i = 0; i < 6; ++i) EXPECT_TRUE(drive(i));
  EXPECT_EQ(nullptr, mpManager);
}

TEST_F(ComponentManagerTest, MayBeDeletedWithMessagesUnderWay) {
  for (int i = 0; i < 200; ++i) {
    mpManager.reset(new nfw::ComponentManager(1));
    add("A");
    ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
    mpManager->initializeBeforeQuickBoot();
    mpManager.reset();
  }
  mThread.settle();
  EXPECT_EQ(Notes{}, mLog.texts()) << "a phase is run under its watch or not at all";
}

}  // namespace
