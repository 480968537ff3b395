#include <cerrno>
#include <climits>
#include <cwchar>
#include <memory>
#include <tuple>

#include "ThreadSupport.h"
#include "utl/ThreadManager.h"
#include "utl/Time.h"

namespace {

using namespace contract;
using Ids = std::vector<int>;

template <class T>
class ThreadContract : public testing::Test {
 protected:
  void start(const Sizes& nSizes = {}) {
    mpThread = std::make_unique<T>(nSizes);
    ASSERT_EQ(mpThread->start(), 0);
  }
  /// From here on messages stay in the queue until drain().
  void hold(const Sizes& nSizes = {}) {
    start(nSizes);
    ASSERT_TRUE(mpThread->hold());
  }
  Ids drain() {
    recorder().release();
    EXPECT_EQ(mpThread->mThread.stop(1, LIMIT_MS), 0);
    return recorder().ids();
  }
  Recorder& recorder() { return mpThread->mRecorder; }

  std::unique_ptr<T> mpThread;
};

using Classes = testing::Types<OwnThread, SharedThread>;
TYPED_TEST_SUITE(ThreadContract, Classes);

struct EveryField : utl::Msg {
  explicit EveryField(int nId) : Msg(nId) {}
  bool storeDataTo(utl::MsgDataBroker& n) const override {
    const auto lWrite = [&n](auto... nField) { return (n.write(nField) && ...); };
    return std::apply(lWrite, mFields) && n.writeChars(mText, sizeof mText) && n.writeWideChars(mWide, 3) &&
           n.writeBytes(nullptr, 0);
  }
  bool restoreDataFrom(utl::MsgDataBroker& n) override {
    const auto lRead = [&n](auto&... nField) { return (n.read(&nField) && ...); };
    return std::apply(lRead, mFields) && n.readChars(mText, sizeof mText) && n.readWideChars(mWide, 3) &&
           n.readBytes(nullptr, 0);
  }
  static const unsigned int COUNTED = 1 + 1 + 2 + 4 + 8 + 4 + 8 + 4 + 5 + 12;

  std::tuple<bool, uint8_t, int16_t, uint32_t, int64_t, float, double, const int*> mFields{};
  char mText[5] = "";
  wchar_t mWide[3] = L"";
};

TYPED_TEST(ThreadContract, FieldsArriveAsStoredHoweverOftenTheyAreRestored) {
  this->start({EveryField::COUNTED, 4, 0});
  static const int OBJECT = 7;
  EveryField lSent(5);
  lSent.mFields = {true, uint8_t{255}, int16_t{SHRT_MIN}, 0xFFFFFFFEu, INT64_MIN, 1.5f, 0.1, &OBJECT};
  std::snprintf(lSent.mText, sizeof lSent.mText, "a\xFF%%c");
  std::wcscpy(lSent.mWide, L"\x3042z");
  this->recorder().mOnMsg = [&](int, utl::ThreadRawMsg& nMsg) {
    for (int i = 0; i < 2; ++i) {
      EveryField lGot(0);
      ASSERT_TRUE(lGot.restoreFrom(nMsg));
      EXPECT_EQ(lGot.mFields, lSent.mFields);
      EXPECT_STREQ(lGot.mText, lSent.mText);
      EXPECT_EQ(std::wcscmp(lGot.mWide, lSent.mWide), 0);
    }
    BytesMsg lLonger(0, 1000);
    EXPECT_FALSE(lLonger.restoreFrom(nMsg)) << "data is short";
    EXPECT_FALSE(nMsg.write(1)) << "a queued message is only read";
  };
  EXPECT_TRUE(this->mpThread->send(lSent));
}

TYPED_TEST(ThreadContract, SizesUpToTheStatedOneArePassedOnWhole) {
  for (const unsigned int lMax : {0u, 1u, 8u, 256u, 257u, 260u, 512u, 513u, 1024u, 1025u, 2074u, 10408u}) {
    this->start({lMax, 4, 0});
    std::atomic<int> lWhole{0};
    for (const unsigned int lSize : {lMax, lMax / 2}) {
      this->recorder().mOnMsg = [&lWhole, lSize](int, utl::ThreadRawMsg& nMsg) {
        BytesMsg lGot(0, lSize);
        lWhole += lGot.restoreFrom(nMsg) && lGot.isWhole() ? 1 : 0;
      };
      EXPECT_TRUE(this->mpThread->send(BytesMsg(1, lSize, lSize))) << lSize << " of " << lMax;
    }
    EXPECT_EQ(lWhole, 2) << lMax;
    const unsigned int lOver =
        lMax * unsigned{sizeof(void*) / 4} + 1;  // only pointers may make a message larger than counted
    EXPECT_FALSE(this->mpThread->post(BytesMsg(1, lOver))) << lMax;
    EXPECT_FALSE(this->mpThread->send(BytesMsg(1, lOver))) << lMax;
    EXPECT_TRUE(this->mpThread->send(2)) << "a refused message costs no place";
  }
}

TYPED_TEST(ThreadContract, PostedMessagesAreHandledInOrderUpToTheLengthOfTheQueueAndSynchronousOnesBeyondIt) {
  for (const unsigned int lSize : {16u, 300u, 2000u}) {
    this->hold({lSize, 5, 0});
    for (int i = 1; i <= 5; ++i) EXPECT_TRUE(this->mpThread->post(BytesMsg(i, i == 5 ? 1 : lSize)));
    for (const unsigned int lAnother : {1u, lSize}) EXPECT_FALSE(this->mpThread->post(BytesMsg(7, lAnother))) << "full";
    std::thread lSender([&] { EXPECT_TRUE(this->mpThread->send(BytesMsg(6, lSize))); });
    EXPECT_TRUE(eventually([&] { return this->mpThread->has(6); }));
    EXPECT_FALSE(this->mpThread->post(7));
    EXPECT_EQ(this->drain(), (Ids{1, 2, 3, 4, 5, 6}));
    lSender.join();
  }
}

TYPED_TEST(ThreadContract, InterruptsOvertakeAllMessagesButNotEachOther) {
  this->hold();
  Ids lExpected{1001, 1002};
  for (int i = 1; i <= 200; ++i) {
    lExpected.push_back(i);
    EXPECT_TRUE(this->mpThread->post(i));
  }
  std::vector<std::thread> lSenders;
  for (int i = 1001; i <= 1002; ++i) {
    lSenders.emplace_back([&, i] { EXPECT_TRUE(this->mpThread->interrupt(i)); });
    EXPECT_TRUE(eventually([&] { return this->mpThread->has(i); }));
  }
  EXPECT_EQ(this->mpThread->mThread.getFirstMsgId(), 1001);
  this->recorder().release();
  for (std::thread& lSender : lSenders) lSender.join();
  EXPECT_EQ(this->drain(), lExpected);
}

TYPED_TEST(ThreadContract, ErasingReleasesSendersAndKeepsTheOrderOfTheRest) {
  this->hold();
  for (const int lId : {1, 2, 1, 2, 3}) EXPECT_TRUE(this->mpThread->post(lId));
  std::thread lSender([&] { EXPECT_FALSE(this->mpThread->send(4)); });
  std::thread lInterrupter([&] { EXPECT_FALSE(this->mpThread->interrupt(5)); });
  EXPECT_TRUE(eventually([&] { return this->mpThread->has(4) && this->mpThread->has(5); }));
  EXPECT_FALSE(this->mpThread->has(Recorder::HOLD)) << "what is handled is not queued";
  EXPECT_EQ(this->mpThread->mThread.getFirstMsgId(), 5);
  for (const auto& [lId, lNum] : {std::pair{2, 2u}, {2, 0u}, {4, 1u}, {5, 1u}, {9, 0u}}) {
    EXPECT_EQ(this->mpThread->erase(lId), lNum) << lId;
    EXPECT_FALSE(this->mpThread->has(lId));
  }
  lSender.join();
  lInterrupter.join();
  EXPECT_EQ(this->mpThread->mThread.getFirstMsgId(), 1);
  EXPECT_EQ(this->drain(), (Ids{1, 1, 3}));
  EXPECT_EQ(this->mpThread->mThread.getFirstMsgId(), 0);
}

TYPED_TEST(ThreadContract, JudgementsReadMessagesWithoutUsingThemUp) {
  this->hold();
  for (unsigned int i = 0; i < 6; ++i) EXPECT_TRUE(this->mpThread->post(BytesMsg(static_cast<int>(i), 8, i)));
  JudgeBy lOdd([](int nId, utl::ThreadRawMsg& nMsg) {
    BytesMsg lMsg(0, 8);
    EXPECT_TRUE(lMsg.restoreFrom(nMsg) && lMsg.mBytes[0] == nId);
    return nId % 2 == 1;
  });
  EXPECT_EQ(this->mpThread->erase(&lOdd), 3u);
  EXPECT_EQ(this->mpThread->erase(nullptr), 0u);
  int lWhole = 0;
  this->recorder().mOnMsg = [&lWhole](int, utl::ThreadRawMsg& nMsg) {
    BytesMsg lMsg(0, 8);
    lWhole += lMsg.restoreFrom(nMsg) && lMsg.isWhole() ? 1 : 0;
  };
  EXPECT_EQ(this->drain(), (Ids{0, 2, 4}));
  EXPECT_EQ(lWhole, 3);
}

TYPED_TEST(ThreadContract, AThreadThatDoesNotRunRefusesAtOnce) {
  TypeParam lThread;
  EXPECT_EQ(lThread.mThread.getId(), 0);
  for (int lRound = 0; lRound < 2; ++lRound) {
    EXPECT_FALSE(lThread.mThread.isRunning());
    EXPECT_FALSE(lThread.post(1) || lThread.send(1) || lThread.interrupt(1));
    EXPECT_EQ(lThread.timer(1, 1, 0), -1);
    EXPECT_FALSE(lThread.mThread.killTimer(1, 1));
    EXPECT_FALSE(lThread.has(1) || lThread.erase(1) != 0);
    EXPECT_EQ(lThread.mThread.getFirstMsgId(), 0);
    EXPECT_EQ(lThread.mThread.stop(1, LIMIT_MS), -1);
    EXPECT_STREQ(lThread.mThread.getName(), "nfw::Contract_Thread");
    const int lLastId = lThread.mThread.getId();
    EXPECT_EQ(lThread.start(), 0) << "also again";
    EXPECT_NE(lThread.start(), 0) << "runs already";
    EXPECT_TRUE(lThread.mThread.isRunning());
    EXPECT_GT(lThread.mThread.getId(), lLastId);
    EXPECT_TRUE(lThread.send(1));
    EXPECT_EQ(lThread.mThread.stop(1, LIMIT_MS), 0);
  }
  EXPECT_EQ(lThread.mRecorder.ids(), (Ids{1, 1}));
}

TYPED_TEST(ThreadContract, AHandlerCanNeitherWaitForItsThreadNorStopIt) {
  this->start();
  TypeParam& lThread = *this->mpThread;
  this->recorder().mOnMsg = [&](int nId, utl::ThreadRawMsg&) {
    if (nId != 1) return;
    EXPECT_FALSE(lThread.send(2) || lThread.interrupt(2));
    EXPECT_EQ(lThread.mThread.stop(1, LIMIT_MS), -1);
    EXPECT_TRUE(lThread.post(3));
    EXPECT_EQ(lThread.erase(3), 1u);
    EXPECT_TRUE(lThread.post(4));
  };
  EXPECT_TRUE(lThread.send(1));
  EXPECT_EQ(this->drain(), (Ids{1, 4}));
}

TYPED_TEST(ThreadContract, StopHandlesWhatWasQueuedAndDropsTimers) {
  this->hold();
  this->recorder().mOnMsg = [](int, utl::ThreadRawMsg&) {  // whoever waits sees the end of each
    for (int i = 0; i < 1000; ++i) std::this_thread::yield();
  };
  EXPECT_TRUE(this->mpThread->post(1));
  EXPECT_NE(this->mpThread->timer(0, 0, 9), -1);
  EXPECT_TRUE(this->mpThread->post(2));
  std::thread lSender([&] { EXPECT_TRUE(this->mpThread->send(3)); });
  EXPECT_TRUE(eventually([&] { return this->mpThread->has(3); }));
  std::thread lStopper([&] {
    errno = ETIMEDOUT;  // of something else
    EXPECT_EQ(this->mpThread->mThread.stop(1, LIMIT_MS), 0);
  });
  EXPECT_TRUE(eventually([&] {  // nothing new: refused while there is room
    const bool lIsPosted = this->mpThread->post(4);
    this->mpThread->erase(4);
    return !lIsPosted;
  }));
  EXPECT_TRUE(this->mpThread->mThread.isRunning());
  EXPECT_NE(this->mpThread->start(), 0) << "not before it has ended";
  this->recorder().release();
  lStopper.join();
  lSender.join();
  EXPECT_EQ(this->recorder().ids(), (Ids{1, 2, 3}));
  EXPECT_FALSE(this->mpThread->mThread.isRunning());
}

TYPED_TEST(ThreadContract, TimersAreDeliveredAsOftenAsAskedAndNeverEarly) {
  this->start({0, 1, 0});  // timers need neither room for messages nor a reservation
  const auto lStart = std::chrono::steady_clock::now();
  std::atomic<int> lEarly{0};
  this->recorder().mOnMsg = [&](int, utl::ThreadRawMsg& nMsg) {
    utl::TimerMsg lTimer;
    EXPECT_TRUE(lTimer.restoreFrom(nMsg));
    if (std::chrono::steady_clock::now() - lStart < std::chrono::milliseconds(lTimer.getParam() - 1)) ++lEarly;
  };
  const int lOnce = this->mpThread->timer(4, 1, 4);
  EXPECT_GE(lOnce, 1);
  EXPECT_EQ(this->mpThread->timer(20, 3, 20), lOnce + 1);
  EXPECT_TRUE(this->recorder().await(4));
  EXPECT_EQ(lEarly, 0);
  EXPECT_GE(std::chrono::steady_clock::now() - lStart, std::chrono::milliseconds(59)) << "20 ms, three times";
  EXPECT_FALSE(this->mpThread->mThread.killTimer(lOnce, 1)) << "expired for the last time";
  const int T = Recorder::TIMER;
  EXPECT_EQ(this->drain(), (Ids{T + 4, T + 20, T + 20, T + 20}));
}

TYPED_TEST(ThreadContract, AKilledTimerLeavesNoMessageBehind) {
  this->hold();
  const int lOnce = this->mpThread->timer(0, 1, 1), lEndless = this->mpThread->timer(0, 0, 2);
  EXPECT_TRUE(this->mpThread->post(1));  // both have expired before it
  EXPECT_TRUE(this->mpThread->mThread.killTimer(lOnce, 1));
  for (const int lGone : {lOnce, -1}) EXPECT_FALSE(this->mpThread->mThread.killTimer(lGone, 1));
  EXPECT_TRUE(this->mpThread->mThread.killTimer(lEndless, 1));
  EXPECT_EQ(this->drain(), Ids{1});
}

TYPED_TEST(ThreadContract, ExpiredTimersAreFoundAndErasedAsMessagesAre) {
  const int TIMER_MSG = utl::TimerMsg::MSG_ID;
  this->hold();
  EXPECT_FALSE(this->mpThread->has(TIMER_MSG));
  for (unsigned int i = 1; i <= 3; ++i) EXPECT_NE(this->mpThread->timer(0, 1, i), -1);
  EXPECT_EQ(this->mpThread->mThread.getFirstMsgId(), TIMER_MSG);
  EXPECT_TRUE(this->mpThread->post(1));
  JudgeBy lSecond([](int nId, utl::ThreadRawMsg& nMsg) {
    utl::TimerMsg lTimer;
    return nId == utl::TimerMsg::MSG_ID && lTimer.restoreFrom(nMsg) && lTimer.getParam() == 2;
  });
  EXPECT_EQ(this->mpThread->erase(&lSecond), 1u);
  EXPECT_EQ(this->mpThread->erase(&lSecond), 0u);
  EXPECT_EQ(this->mpThread->erase(TIMER_MSG), 2u);
  EXPECT_FALSE(this->mpThread->has(TIMER_MSG));
  const int lEndless = this->mpThread->timer(1, 0, 4);
  EXPECT_TRUE(eventually([&] { return this->mpThread->erase(TIMER_MSG) == 1; }));
  EXPECT_TRUE(eventually([&] { return this->mpThread->has(TIMER_MSG); })) << "that expiry was erased, not the timer";
  EXPECT_TRUE(this->mpThread->mThread.killTimer(lEndless, 1));
  EXPECT_EQ(this->drain(), Ids{1});
}

TYPED_TEST(ThreadContract, AFloodOfTimersDoesNotStarveMessages) {
  this->start();
  for (unsigned int i = 0; i < 20; ++i) EXPECT_NE(this->mpThread->timer(0, 0, i), -1);
  for (int i = 0; i < 50; ++i) EXPECT_TRUE(this->mpThread->send(i));
}

TEST(MsgDrivenThreadContract, AStartWithoutAListenerFailsAndOneThatTimedOutMayBeRepeated) {
  Recorder lRecorder;
  auto lpThread = std::make_unique<utl::MsgDrivenThread>(4, 4, "nfw::Contract_Thread", 1);
  utl::MsgDrivenThread& lThread = *lpThread;
  EXPECT_NE(start(lThread, nullptr), 0);
  EXPECT_FALSE(lThread.isRunning());
  for (int i = 0; i < 20; ++i) {
    const int lResult = start(lThread, &lRecorder, 0);
    EXPECT_EQ(lThread.isRunning(), lResult == 0);
    EXPECT_TRUE(lResult != 0 || lThread.stop(1, LIMIT_MS) == 0);
  }
  EXPECT_EQ(start(lThread, &lRecorder), 0);
  for (int i = 1; i <= 3; ++i) EXPECT_TRUE(lThread.postMsg(i));
  lpThread.reset();  // what was queued is handled
  EXPECT_EQ(lRecorder.ids(), (Ids{1, 2, 3}));
}

TEST(MsgDrivenThreadContract, AfterAStopThatTimedOutTheObjectMayGoBeforeItsThread) {
  Recorder lRecorder;
  auto lpThread = std::make_unique<utl::MsgDrivenThread>(4, 4, "nfw::Contract_Thread", 1);
  for (const bool lIsLast : {false, true}) {
    ASSERT_EQ(start(*lpThread, &lRecorder), 0);
    utl::Event lIsHeld(false), lRelease(false), lIsOver(false);
    lRecorder.mOnMsg = [&](int nId, utl::ThreadRawMsg&) {
      if (nId != 1) return;
      lIsHeld.on();
      lRelease.waitToOn(0);
      lIsOver.on();
    };
    EXPECT_TRUE(lpThread->postMsg(1));
    EXPECT_TRUE(lIsHeld.waitToOn(LIMIT_MS));
    EXPECT_TRUE(lpThread->postMsg(2));
    EXPECT_EQ(lpThread->stop(1, 1), -2);
    if (lIsLast) lpThread.reset();
    lRelease.on();
    EXPECT_TRUE(lIsOver.waitToOn(LIMIT_MS));
    EXPECT_TRUE(lIsLast || eventually([&] { return !lpThread->isRunning(); }));
  }
  EXPECT_TRUE(lRecorder.await(3));
  EXPECT_EQ(lRecorder.ids(), (Ids{1, 2, 1})) << "no listener is called for what was queued when the object went";
}

/// Two listeners on one thread.
class SharedContract : public testing::Test {
 protected:
  SharedContract() { EXPECT_EQ(start(mThread), 0); }
  ~SharedContract() override { mThread.stop(1, LIMIT_MS); }

  Recorder mFirst, mSecond, mIdle;
  utl::MsgDrivenSharedThread mThread{16, 16, 0, "nfw::Contract_SharedThread", 0};
};

TEST_F(SharedContract, DeliversToTheListenerGivenAndNeverToNone) {
  EXPECT_TRUE(mThread.postMsg(&mFirst, 1) && mThread.postMsg(&mSecond, 2));
  EXPECT_NE(mThread.setTimer(&mFirst, 0, 1, 3), -1);
  EXPECT_TRUE(mThread.sendMsgSync(&mSecond, 4));
  EXPECT_EQ(mFirst.ids(), (Ids{1, Recorder::TIMER + 3}));
  EXPECT_EQ(mSecond.ids(), (Ids{2, 4}));
  EXPECT_FALSE(mThread.postMsg(nullptr, 1) || mThread.sendMsgSync(nullptr, 1) || mThread.sendMsgInterrupt(nullptr, 1));
  EXPECT_EQ(mThread.setTimer(nullptr, 0, 1, 3), -1);
  EXPECT_FALSE(mThread.hasMsg(nullptr, 1) || mThread.eraseMsg(nullptr, 1) != 0);
  mThread.abortMsg(nullptr);
}

TEST_F(SharedContract, QueriesAndErasingSeeOneListenersMessages) {
  ASSERT_TRUE(mThread.postMsg(&mFirst, Recorder::HOLD) && mFirst.awaitHeld());
  for (Recorder* lpEach : {&mFirst, &mSecond}) EXPECT_TRUE(mThread.postMsg(lpEach, 1) && mThread.postMsg(lpEach, 2));
  JudgeBy lAll([](int nId, utl::ThreadRawMsg&) { return nId == 2; });
  EXPECT_EQ(mThread.eraseMsg(&mFirst, 1), 1u);
  EXPECT_EQ(mThread.eraseMsgInternal(&mSecond, &lAll), 1u);
  EXPECT_TRUE(mThread.hasMsg(&mSecond, 1) && mThread.hasMsg(&mFirst, 2));
  EXPECT_FALSE(mThread.hasMsg(&mFirst, 1) || mThread.hasMsg(&mSecond, 2));
  mFirst.release();
  EXPECT_EQ(mThread.stop(1, LIMIT_MS), 0);
  EXPECT_EQ(mFirst.ids(), Ids{2});
  EXPECT_EQ(mSecond.ids(), Ids{1});
}

TEST_F(SharedContract, AbortDropsMessagesAndTimersAndWaitsForTheRunningHandler) {
  ASSERT_TRUE(mThread.postMsg(&mFirst, Recorder::HOLD) && mFirst.awaitHeld());
  EXPECT_TRUE(mThread.postMsg(&mFirst, 1) && mThread.postMsg(&mSecond, 2));
  EXPECT_NE(mThread.setTimer(&mFirst, 0, 0, 1), -1);
  std::thread lSender([&] { EXPECT_FALSE(mThread.sendMsgSync(&mFirst, 3)); });
  EXPECT_TRUE(eventually([&] { return mThread.hasMsg(&mFirst, 3); }));
  std::atomic<bool> lIsBack{false};
  std::thread lAborter([&] {
    mThread.abortMsg(&mFirst);
    lIsBack = true;
  });
  lSender.join();
  mThread.abortMsg(&mIdle);  // another one has no handler to wait for
  EXPECT_FALSE(lIsBack);
  mFirst.release();
  lAborter.join();
  EXPECT_TRUE(mThread.sendMsgSync(&mSecond, 4));
  EXPECT_EQ(mFirst.ids(), Ids{});
  EXPECT_EQ(mSecond.ids(), (Ids{2, 4}));
}

TEST_F(SharedContract, AbortDropsAlsoWhatTheRunningHandlerPosts) {
  for (int i = 0; i < 200; ++i) {
    std::atomic<bool> lIsGone{false};
    mFirst.mOnMsg = [&](int, utl::ThreadRawMsg&) {
      EXPECT_FALSE(lIsGone);
      mThread.postMsg(&mFirst, 1);
    };
    EXPECT_TRUE(mThread.postMsg(&mFirst, 1));
    mThread.abortMsg(&mFirst);
    lIsGone = true;
    EXPECT_TRUE(mThread.sendMsgSync(&mSecond, 2));
    mFirst.mOnMsg = nullptr;
  }
}

TEST_F(SharedContract, AbortFromTheHandlerItselfDoesNotWait) {
  mFirst.mOnMsg = [&](int nId, utl::ThreadRawMsg&) {
    if (nId != 1) return;
    EXPECT_TRUE(mThread.postMsg(&mFirst, 2));
    mThread.abortMsg(&mFirst);
  };
  EXPECT_TRUE(mThread.sendMsgSync(&mFirst, 1));
  EXPECT_TRUE(mThread.sendMsgSync(&mSecond, 1));
  EXPECT_EQ(mFirst.ids(), Ids{1});
}

TEST(ThreadContractBase, EveryThreadHasAnIdOfItsOwn) {
  const int lOwn = utl::Thread::getCurrentId();
  EXPECT_GT(lOwn, 0);
  EXPECT_EQ(utl::Thread::getCurrentId(), lOwn);
  int lOther = 0, lThird = 0;
  std::thread([&] { lOther = utl::Thread::getCurrentId(); }).join();
  std::thread([&] { lThird = utl::Thread::getCurrentId(); }).join();
  EXPECT_TRUE(lOther > 0 && lOther != lOwn && lThird > 0 && lThird != lOther && lThird != lOwn);
}

TEST(ThreadContractBase, KeepAliveNoticesAreTheThreadsOwn) {
  std::thread([] {
    EXPECT_EQ(utl::ThreadManager::lastStatement(), nullptr);
    utl::ThreadManager::keepAliveWatchdog(utl::StatementInfo("NfwFile.cpp", "f()", 7, 1));
    utl::ThreadManager::keepAliveWatchdog(utl::StatementInfo("NfwFile.cpp", "f()", 8, 2));
    const utl::StatementInfo* const lpLast = utl::ThreadManager::lastStatement();
    ASSERT_NE(lpLast, nullptr);
    EXPECT_STREQ(lpLast->getFile(), "NfwFile.cpp");
    EXPECT_STREQ(lpLast->getFunction(), "f()");
    EXPECT_EQ(lpLast->getLine(), 8);
    EXPECT_EQ(lpLast->getPhase(), 2);
  }).join();
}

}  // namespace
