#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "NfwComponentManager.h"
#include "PlatformSeams.h"
#include "SharedThread.h"

namespace {

/// What was called, in order.
using Notes = std::vector<std::string>;

struct PhaseRow {
  const char* mpName;
  int (nfw::Component::*mpRun)();
  bool (nfw::Component::*mpIsComplete)() const;
  bool (nfw::ComponentManager::*mpDrive)();
  void (nfw::Component::*mpSetComplete)();
  void (nfw::ComponentManager::*mpReport)(nfw::Component*);
  const char *mpDriver, *mpHandler, *mpEntry, *mpLate;
};

using M = nfw::ComponentManager;
using C = nfw::Component;
const PhaseRow ROWS[] = {
    {"pre", &C::initializeBeforeQuickBoot, &C::isPreQuickBootComplete, &M::initializeBeforeQuickBoot,
     &C::setBeforeQuickBootComplete, &M::setBeforeQuickBootComplete, "initializeBeforeQuickBoot",
     "onInitializeBeforQuickBoot", "setBeforeQuickBootComplete", "Pre QuickBoot"},
    {"initialize", &C::initializeAfterQuickBoot, &C::isInitializeComplete, &M::initializeAfterQuickBoot,
     &C::setInitializeComplete, &M::setInitializeComplete, "initializeAfterQuickBoot", "onInitializeAfterQuickBoot",
     "setInitializeComplete", "Initialize"},
    {"start", &C::start, &C::isStartComplete, &M::start, &C::setStartComplete, &M::setStartComplete, "start", "onStart",
     "setStartComplete", "Start"},
    {"stop", &C::stop, &C::isStopComplete, &M::stop, &C::setStopComplete, &M::setStopComplete, "stop", "onStop",
     "setStopComplete", "Stop"},
    {"shutdown", &C::shutdown, &C::isShutdownComplete, &M::shutdown, &C::setShutdownComplete, &M::setShutdownComplete,
     "shutdown", "onShutdown", "setShutdownComplete", "Shutdown"},
    {"finalize", &C::finalize, &C::isFinalizeComplete, &M::finalize, &C::setFinalizeComplete, &M::setFinalizeComplete,
     "finalize", "onFinalize", "setFinalizeComplete", "Finalize"},
};

class ComponentManagerTest : public testing::Test {
 protected:
  /// Whoever is called notes it, and that no lock is held: another thread can use the manager meanwhile.
  void note(const std::string& nNote) {
    mNotes.push_back(nNote);
    nfw::ComponentManager* const lpManager = mpAsked;
    if (lpManager == nullptr) return;
    const auto lOther = std::async(std::launch::async, [=] { lpManager->setStatusListener(nullptr); });
    EXPECT_EQ(std::future_status::ready, lOther.wait_for(std::chrono::seconds(20))) << nNote;
  }

  ~ComponentManagerTest() override { remove(); }

  class NotingComponent : public nfw::Component {
   public:
    NotingComponent(const char* npName, ComponentManagerTest& nTest, int nResult)
        : nfw::Component(npName), mTest(nTest), mResult(nResult) {}
    ~NotingComponent() override { mTest.note(std::string("~") + getComponentName()); }

    bool mWasStopRequested = false;

   private:
    int call(int nPhase) {
      mTest.note(std::string(getComponentName()) + "." + ROWS[nPhase].mpName);
      mWasStopRequested = isStopRequested();
      return mResult;
    }
    int initializeBeforeQuickBootImp() override { return call(0); }
    int initializeAfterQuickBootImp() override { return call(1); }
    int startImp() override { return call(2); }
    int stopImp() override { return call(3); }
    int shutdownImp() override { return call(4); }
    int finalizeImp() override { return call(5); }

    ComponentManagerTest& mTest;
    const int mResult;
  };

  struct NotingListener : nfw::ComponentStatusListener {
    explicit NotingListener(ComponentManagerTest& nTest) : mTest(nTest) {}
    void onPreQuickBootComplete() override { mTest.note("all.pre"); }
    void onInitializeComplete() override { mTest.note("all.initialize"); }
    void onStartComplete() override { mTest.note("all.start"); }
    void onStopComplete() override { mTest.note("all.stop"); }
    void onShutdownComplete() override { mTest.note("all.shutdown"); }
    void onFinalizeComplete() override {
      mTest.note("all.finalize");
      if (mOnFinalized) mOnFinalized();
    }

    ComponentManagerTest& mTest;
    std::function<void()> mOnFinalized;
  };

  nfw::Component* add(const char* npName, int nResult = nfw::PHASE_DONE) {
    nfw::Component* const lpComponent = new NotingComponent(npName, *this, nResult);
    EXPECT_TRUE(mpManager->addComponent(utl::SmartPointer<nfw::Component>(lpComponent)));
    return lpComponent;
  }
  void begin() {
    EXPECT_TRUE(mpManager->setStatusListener(&mListener));
    ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  }
  void remove() {
    mpAsked = nullptr;
    mpManager.reset();
  }
  void renew() {
    remove();
    mpManager.reset(new nfw::ComponentManager(2));
    mpAsked = mpManager.get();
    mNotes.clear();
  }
  bool start(int nPhase) { return (mpManager.get()->*ROWS[nPhase].mpDrive)(); }
  bool drive(int nPhase) {
    const bool lResult = start(nPhase);
    settle();
    return lResult;
  }
  void settle() {
    mThread.settle();  // the phase has run
    mThread.settle();  // the completions that it posted have been handled
  }
  Notes takeNotes() { return std::exchange(mNotes, {}); }
  /// The log's texts since the last call, every line of level 1.
  Notes errors() {
    Notes lTexts;
    for (const auto& l : mLog.lines()) lTexts.push_back(l.mText + (l.mLevel == 1 ? "" : " - not an error"));
    mLog.clear();
    return lTexts;
  }

  seams::ManualClock mClock;
  seams::CapturedLog mLog;
  Notes mNotes;
  NotingListener mListener{*this};
  nfwtest::SharedThread mThread{nfw::ComponentManager::getMaxMsgDataSize()};
  std::unique_ptr<nfw::ComponentManager> mpManager{new nfw::ComponentManager(2)};
  std::atomic<nfw::ComponentManager*> mpAsked{mpManager.get()};  // null before it goes
};

TEST_F(ComponentManagerTest, EveryPhaseOfAComponentTellsItsResultAndCompletesAsItSays) {
  const std::tuple<int, bool, std::string> RESULTS[] = {{0, true, ""},
                                                        {1, true, ""},
                                                        {3, false, ""},
                                                        {2, true, "() is Failure"},
                                                        {7, true, "() is Unknown Result=7"},
                                                        {-1, true, "() is Unknown Result=-1"}};
  for (int i = 0; i < 6; ++i) {
    for (const auto& [lResult, lIsComplete, lWords] : RESULTS) {
      NotingComponent lComponent("Map", *this, lResult);
      mNotes.clear();
      EXPECT_EQ(lResult, (lComponent.*ROWS[i].mpRun)());
      EXPECT_EQ(Notes{std::string("Map.") + ROWS[i].mpName}, mNotes);
      EXPECT_EQ(i == 3, lComponent.mWasStopRequested) << "before the phase is done";
      EXPECT_EQ(lIsComplete, (lComponent.*ROWS[i].mpIsComplete)()) << ROWS[i].mpName << lResult;
      EXPECT_EQ(lWords.empty() ? Notes() : Notes{std::string("[Map] ") + ROWS[i].mpDriver + lWords}, errors());
      (lComponent.*ROWS[i].mpSetComplete)();
      for (int j = 0; j < 6; ++j) EXPECT_EQ(i == j, (lComponent.*ROWS[j].mpIsComplete)());
    }
  }
  EXPECT_STREQ("", NotingComponent(nullptr, *this, 0).getComponentName());
}

TEST_F(ComponentManagerTest, DrivesEveryPhaseFrontToBackAndReleasesTheComponents) {
  EXPECT_EQ(4U, nfw::ComponentManager::getMaxMsgDataSize());
  EXPECT_FALSE(start(0)) << "no thread yet";
  add("A");
  add("B");
  begin();
  for (int i = 0; i < 6; ++i) {
    for (int j = 0; j < 6; ++j) EXPECT_TRUE(j == i || j == 3 || !drive(j)) << i << j;
    EXPECT_TRUE(drive(i));
    EXPECT_FALSE(drive(i));
    const std::string lPhase = std::string(".") + ROWS[i].mpName;
    Notes lExpected{"A" + lPhase, "B" + lPhase};
    if (i == 5) lExpected.insert(lExpected.end(), {"~A", "~B"});
    lExpected.push_back("all" + lPhase);
    if (i == 5) std::sort(mNotes.begin() + 2, mNotes.begin() + 4);  // the order of release says nothing
    EXPECT_EQ(lExpected, takeNotes());
  }
  EXPECT_FALSE(drive(3));
  EXPECT_EQ(Notes(), errors());
}

TEST_F(ComponentManagerTest, APhaseIsCompleteWhenEveryComponentIs) {
  begin();
  EXPECT_TRUE(drive(0));
  EXPECT_EQ(Notes{"all.pre"}, takeNotes()) << "also without any component";
  renew();
  nfw::Component* const COMPONENTS[] = {add("A", nfw::PHASE_PENDING), add("B", nfw::PHASE_PENDING)};
  begin();
  for (int i = 0; i < 6; ++i) {
    EXPECT_TRUE(drive(i));
    takeNotes();
    for (int lTwice = 0; lTwice < 2; ++lTwice) (COMPONENTS[0]->*ROWS[i].mpSetComplete)();
    settle();
    EXPECT_EQ(Notes(), mNotes) << "one has completed, and said so twice";
    (COMPONENTS[1]->*ROWS[i].mpSetComplete)();
    settle();
    EXPECT_EQ(std::string("all.") + ROWS[i].mpName, mNotes.at(i == 5 ? 2 : 0));
  }
}

// States 0 to 6: before the first phase, in it and behind it, and so on.
TEST_F(ComponentManagerTest, StopComesFromAnyPhaseBeforeIt) {
  for (int lState = 0; lState <= 7; ++lState) {
    SCOPED_TRACE(lState);
    renew();
    nfw::Component* const lpComponent = add("A", nfw::PHASE_PENDING);
    begin();
    for (int i = 0; 2 * i + 1 <= lState; ++i) {
      EXPECT_TRUE(drive(i));
      if (2 * i + 2 <= lState) (lpComponent->*ROWS[i].mpSetComplete)();
      settle();
    }
    takeNotes();
    if (lState < 7) {
      const seams::Failing lFailing(seams::POST);
      EXPECT_FALSE(start(3));
      EXPECT_EQ(Notes{"ComponentManager::stop(): Can't post thread"}, errors());
    }
    EXPECT_TRUE(lState % 2 == 1 || drive(lState / 2)) << "it is where it was";
    EXPECT_EQ(lState < 6, drive(3));
    takeNotes();
    for (int i = 0; i < 3; ++i) (lpComponent->*ROWS[i].mpSetComplete)();  // too late
    settle();
    EXPECT_EQ(Notes(), mNotes);
    lpComponent->setStopComplete();
    settle();
    EXPECT_EQ(Notes{"all.stop"}, mNotes);
  }
}

TEST_F(ComponentManagerTest, IsConfiguredOnlyBeforeItsThread) {
  EXPECT_TRUE(mpManager->setStatusListener(nullptr));
  EXPECT_TRUE(mpManager->addComponent(utl::SmartPointer<nfw::Component>()));
  add("A");
  add("B");
  EXPECT_FALSE(
      mpManager->addComponent(utl::SmartPointer<nfw::Component>(new NotingComponent("C", *this, nfw::PHASE_DONE))));
  EXPECT_EQ(Notes{"ComponentManager::addComponent(): Can't add [C] to ComponentList"}, errors());
  EXPECT_FALSE(mpManager->initializeThread(nullptr));
  mThread.stop();
  EXPECT_FALSE(mpManager->initializeThread(mThread.get()));
  EXPECT_EQ(Notes{"ComponentManager::initializeThread(): Thread is not running"}, errors());
  mThread.start();
  ASSERT_TRUE(mpManager->initializeThread(mThread.get()));
  EXPECT_FALSE(mpManager->addComponent(utl::SmartPointer<nfw::Component>()));
  EXPECT_FALSE(mpManager->setStatusListener(&mListener));
  EXPECT_FALSE(mpManager->initializeThread(mThread.get()));
  EXPECT_EQ(Notes{"Thread Start[nfw::ComponentManager_Watch_Thread]"}, errors());
  EXPECT_TRUE(drive(0));
  EXPECT_FALSE(mpManager->initializeThread(mThread.get()));
  EXPECT_EQ(Notes(), errors()) << "in another state it does not even try";
}

TEST_F(ComponentManagerTest, WhatCannotBePostedOrTimedIsNamed) {
  nfw::Component* const lpPending = add("Slow", nfw::PHASE_PENDING);
  const auto lLine = [](const char* npOperation, const char* npWhat) {
    return Notes{std::string("ComponentManager::") + npOperation + "(): Can't " + npWhat};
  };
  for (int lHasThread = 0; lHasThread < 2; ++lHasThread) {
    for (const PhaseRow& lPhase : ROWS) {
      const seams::Failing lFailing(seams::POST);
      (mpManager.get()->*lPhase.mpReport)(lpPending);
      EXPECT_EQ(lHasThread != 0 ? lLine(lPhase.mpEntry, "post thread") : Notes(), errors());
    }
    if (lHasThread == 0) begin();
  }
  for (int i = 0; i < 6; ++i) {
    {
      const seams::Failing lFailing(seams::POST);
      EXPECT_FALSE(start(i));
    }
    EXPECT_EQ(lLine(ROWS[i].mpDriver, "post thread"), errors());
    const seams::Failing lFailing(seams::TIMER);
    EXPECT_TRUE(drive(i)) << "it is still to come, and goes on without a watch";
    EXPECT_EQ(lLine(ROWS[i].mpHandler, "set timer"), errors());
    (lpPending->*ROWS[i].mpSetComplete)();
    settle();
  }
  EXPECT_EQ("all.finalize", mNotes.back());
}

TEST_F(ComponentManagerTest, ReportsEveryPhaseThatIsTooLateOnce) {
  nfw::Component* const lpPending = add("Slow", nfw::PHASE_PENDING);
  add("Quick");
  begin();
  for (int i = 0; i < 6; ++i) {
    EXPECT_TRUE(drive(i));
    nfwtest::RawMsg lEarlier(utl::TimerMsg::MSG_ID);  // of a timer that was killed
    mpManager->receiveMsg(mThread->getId() + 1, lEarlier);
    mClock.advance(29999);
    EXPECT_EQ(Notes(), errors());
    mClock.advance(1);
    const std::string lOpening = std::string("##### ") + ROWS[i].mpLate + " of Component is Too Late #####";
    const std::string lClosing(i == 0 ? 37 : lOpening.size(), '#');
    EXPECT_TRUE(mLog.waitFor(lClosing));
    EXPECT_EQ((Notes{lOpening, "# [Slow] is not complete", lClosing}), mLog.texts());
    for (const auto& lLine : mLog.lines()) EXPECT_EQ(3, lLine.mLevel);
    mLog.clear();
    mClock.advance(60000);
    (lpPending->*ROWS[i].mpSetComplete)();
    settle();
    EXPECT_EQ(std::string("all.") + ROWS[i].mpName, mNotes.back());
    mClock.advance(60000);
  }
  remove();  // the watch has ended
  EXPECT_EQ(Notes(), errors());
}

// Nothing of the watch's thread is left, and what it was asked before it ended is not handled by anybody.
TEST_F(ComponentManagerTest, TheWatchEndsWithTheLastPhase) {
  const auto lTasks = [] {  // one that was joined may still stand there
    std::set<std::string> lNames;
    for (const auto& lTask : std::filesystem::directory_iterator("/proc/self/task")) lNames.insert(lTask.path());
    return lNames;
  };
  const auto lBefore = lTasks();
  begin();
  auto lNew = lTasks();
  for (const std::string& lTask : lBefore) lNew.erase(lTask);
  ASSERT_EQ(1u, lNew.size());
  const unsigned int lId = static_cast<unsigned int>(mThread->getId());
  for (int i = 0; i < 6; ++i) EXPECT_TRUE(drive(i));
  EXPECT_TRUE(nfwtest::eventually([&] { return lTasks().count(*lNew.begin()) == 0; }));
  nfwtest::RawMsg lUnknown(1);
  mpManager->receiveMsg(static_cast<int>(lId), lUnknown);  // its thread is forgotten
  EXPECT_EQ(Notes(), errors());
}

TEST_F(ComponentManagerTest, TheThreadMayGoBehindTheLastPhase) {
  alignas(nfwtest::SharedThread) char lPlace[sizeof(nfwtest::SharedThread)];
  auto* const lpThread = new (lPlace) nfwtest::SharedThread(4);
  ASSERT_TRUE(mpManager->initializeThread(lpThread->get()));
  for (int i = 0; i < 6; ++i) start(i), lpThread->settle(), lpThread->settle();
  lpThread->~SharedThread();
  std::fill(std::begin(lPlace), std::end(lPlace), '\0');  // whoever asks it now will not get far
  remove();
}

TEST_F(ComponentManagerTest, UnreadableMessagesAreNamed) {
  nfwtest::RawMsg lNoId, lBelow(static_cast<int>(0x80000C01u)), lAbove(static_cast<int>(0x80000C0Eu));
  mpManager->receiveMsg(1, lNoId);  // without a thread: ignored
  begin();
  const int lId = mThread->getId();
  for (nfwtest::RawMsg* lpMsg : {&lNoId, &lBelow, &lAbove}) {
    for (const int lThread : {lId, lId + 1, 0}) mpManager->receiveMsg(lThread, *lpMsg);  // its own, the watch's, none
  }
  const std::string lNone = "ComponentManager::receiveMsg(): Unknown ThreadId: 0x0000";
  const std::string lOwn = "ComponentManager::receiveThreadMsg(): ";
  const std::string lWatch = "ComponentManager::receiveWatchThreadMsg(): ";
  EXPECT_EQ((Notes{lOwn + "Can't get MsgId", lWatch + "Can't get MsgId", lNone, lOwn + "UnknownMsg: MsgId=-2147480575",
                   lWatch + "UnknownMsg: MsgId=-2147480575", lNone, lOwn + "UnknownMsg: MsgId=-2147480562",
                   lWatch + "UnknownMsg: MsgId=-2147480562", lNone}),
            errors());
}

TEST_F(ComponentManagerTest, MayBeDeletedInItsLastCallback) {
  mListener.mOnFinalized = [this] { remove(); };
  begin();
  for (int i = 0; i < 6; ++i) EXPECT_TRUE(drive(i));
  EXPECT_EQ(nullptr, mpManager);
}

TEST_F(ComponentManagerTest, MayBeDeletedWithMessagesUnderWay) {
  for (int i = 0; i < 50; ++i) {
    renew();
    add("A");
    begin();
    start(0);
    remove();
  }
  mThread.settle();
  EXPECT_EQ(Notes(), errors()) << "a phase is run under its watch or not at all";
}

}  // namespace
