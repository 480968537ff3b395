// The threads with the clock in hand, and what only the stand-in promises.
#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <climits>
#include <cstdlib>
#include <future>
#include <new>
#include <thread>

#include "PlatformSeams.h"
#include "ThreadSupport.h"
#include "TimerIds.h"
#include "utl/ThreadHost.h"
#include "utl/Time.h"

namespace {

std::atomic<unsigned int> gNews{0};  // memory that was taken so far

}  // namespace

// Inlined, each would look to the compiler like half of a pair that does not match.
[[gnu::noinline]] void* operator new(size_t nSize) {
  ++gNews;
  void* const lpBytes = malloc(nSize);
  if (lpBytes == nullptr) abort();
  return lpBytes;
}
[[gnu::noinline]] void* operator new(size_t nSize, const std::nothrow_t&) noexcept {
  ++gNews;
  return malloc(nSize);
}
[[gnu::noinline]] void operator delete(void* npBytes) noexcept { free(npBytes); }
[[gnu::noinline]] void operator delete(void* npBytes, size_t) noexcept { free(npBytes); }

namespace {

using namespace contract;
using Ids = std::vector<int>;
const int T = Recorder::TIMER;

class ManualTimers : public testing::Test {
 protected:
  ManualTimers() { EXPECT_EQ(mThread.start(), 0); }
  ~ManualTimers() override { mThread.mThread.stop(1, LIMIT_MS); }

  /// What has arrived since the last call, once the clock is moved on by so much.
  Ids after(unsigned int nMs) {
    mClock.advance(nMs);
    EXPECT_TRUE(mThread.send(0));
    const Ids lAll = mThread.mRecorder.ids();
    const Ids lIds(lAll.begin() + mSeen, lAll.end() - 1);  // without the sent one
    mSeen = static_cast<std::ptrdiff_t>(lAll.size());
    return lIds;
  }

  seams::ManualClock mClock;
  OwnThread mThread{{16, 64, 2}};
  std::ptrdiff_t mSeen = 0;
};

TEST_F(ManualTimers, ExpireAtTheirMillisecondInOrderOfDeadlineThenOfSetting) {
  EXPECT_NE(mThread.timer(30000, 1, 1), -1);
  EXPECT_NE(mThread.timer(20, 1, 2), -1);
  EXPECT_EQ(after(10), Ids{});
  for (unsigned int i = 3; i <= 8; ++i) EXPECT_NE(mThread.timer(10, 1, i), -1);  // due with the second, set later
  EXPECT_NE(mThread.timer(9, 1, 9), -1);
  EXPECT_NE(mThread.timer(0, 1, 10), -1);
  EXPECT_EQ(after(0), Ids{T + 10});
  EXPECT_EQ(after(8), Ids{});
  EXPECT_EQ(after(1), Ids{T + 9});
  EXPECT_EQ(after(1), (Ids{T + 2, T + 3, T + 4, T + 5, T + 6, T + 7, T + 8}));
  EXPECT_EQ(after(29979), Ids{});
  EXPECT_EQ(after(1), Ids{T + 1});
  Ids lExpected;
  for (unsigned int i = 0; i < 60; ++i) EXPECT_NE(mThread.timer(100 - i, 1, i), -1);
  for (int i = 59; i >= 0; --i) lExpected.push_back(T + i);
  EXPECT_EQ(after(1000), lExpected) << "late ones come in one go, by deadline";
}

TEST_F(ManualTimers, CountedOnesStopAndEndlessOnesMergeWhatTheyMissed) {
  const int lEndless = mThread.timer(100, 0, 1), lThrice = mThread.timer(100, 3, 2);
  EXPECT_EQ(after(99), Ids{});
  for (int i = 0; i < 2; ++i) EXPECT_EQ(after(i == 0 ? 1 : 100), (Ids{T + 1, T + 2}));
  EXPECT_EQ(after(950), (Ids{T + 1, T + 2}));  // one message each, and the grid of the setting is kept
  EXPECT_FALSE(mThread.mThread.killTimer(lThrice, 1));
  EXPECT_EQ(after(49), Ids{});
  EXPECT_EQ(after(1), Ids{T + 1});
  EXPECT_TRUE(mThread.mThread.killTimer(lEndless, 1));
  EXPECT_EQ(after(100), Ids{});
}

TEST_F(ManualTimers, StandAmongMessagesByTheTimeOfTheirExpiry) {
  EXPECT_TRUE(mThread.hold());
  EXPECT_NE(mThread.timer(10, 0, 1), -1);
  EXPECT_TRUE(mThread.post(1));
  mClock.advance(10);
  EXPECT_TRUE(mThread.post(2));
  mClock.advance(10);  // its message is queued already
  EXPECT_TRUE(mThread.post(3));
  mThread.mRecorder.release();
  EXPECT_TRUE(mThread.send(4));
  EXPECT_EQ(mThread.mRecorder.ids(), (Ids{1, T + 1, 2, 3, 4}));
}

TEST_F(ManualTimers, TimedWaitsFollowTheClock) {
  utl::Event lNever(false);
  auto lIsMet = std::async(std::launch::async, [&] { return lNever.waitToOn(30000); });
  const auto lIsBack = [&] { return lIsMet.wait_for(std::chrono::seconds(0)) == std::future_status::ready; };
  mClock.advance(29999);
  EXPECT_FALSE(lIsBack());
  EXPECT_TRUE(eventually(lIsBack, [&] { mClock.advance(1000); }));  // the waiter may have begun only now
  EXPECT_FALSE(lIsMet.get());
}

TEST(ManualTicks, SkipTheValueOfFailureAndTimersPassTheWrap) {
  seams::ManualClock lClock(0xFFFFFFFDu);
  OwnThread lThread;
  ASSERT_EQ(lThread.start(), 0);
  EXPECT_NE(lThread.timer(4, 1, 1), -1);
  utl::TimeCounter lCounter;
  lCounter.start();
  for (const unsigned int lTick : {0xFFFFFFFDu, 0xFFFFFFFEu, 0xFFFFFFFEu, 0u}) {
    EXPECT_EQ(utl::TimeCounter::getTickTime(), lTick);
    EXPECT_TRUE(lThread.mRecorder.ids().empty());
    lClock.advance(1);
  }
  EXPECT_EQ(lCounter.getElapsed(), 4u);
  EXPECT_TRUE(lThread.mRecorder.await(1));
  lThread.mThread.stop(1, LIMIT_MS);
}

TEST(Memory, IsTakenNeitherPerMessageNorPerTimer) {
  struct : utl::ThreadMsgListener {
    void receiveMsg(int, utl::ThreadRawMsg&) override {}
  } lListener;
  utl::MsgDrivenThread lThread(16, 8, "nfw::Memory_Thread", 2);
  ASSERT_EQ(start(lThread, &lListener), 0);
  unsigned int lWarm = 0;
  for (int i = 0; i < 200; ++i) {
    if (i == 100) lWarm = gNews;
    EXPECT_TRUE(lThread.postMsg(1) && lThread.sendMsgSync(2) && lThread.sendMsgInterrupt(3));
    EXPECT_TRUE(lThread.killTimer(lThread.setTimer(60000, 1, 0), 1));
  }
  EXPECT_EQ(gNews, lWarm);
  EXPECT_EQ(lThread.stop(1, LIMIT_MS), 0);
}

TEST(Messages, ThatDoNotFitAreRefusedWhateverTheyGoOnToStore) {
  OwnThread lThread({16, 4, 0});
  ASSERT_EQ(lThread.start(), 0);
  lThread.send(StoreBy(1, [](utl::MsgDataBroker& n) {
    const char lBytes[200] = "";
    EXPECT_TRUE(n.write(true));
    EXPECT_FALSE(n.writeChars(lBytes, 200) || n.write(true) || n.writeChars(lBytes, 16));
    return true;
  }));
  EXPECT_TRUE(lThread.send(2));
}

TEST(TimerIds, CountUpPastTheGreatestFromOneWithoutThoseAlive) {
  const struct {
    int mLast, mGiven;
    Ids mTaken;  // mGiven is given back at once
  } ROWS[] = {{INT_MAX - 2, 0, {INT_MAX - 1, INT_MAX, 1}}, {0, 0, {1, 2, 3}}, {INT_MAX - 1, 1, {INT_MAX, 1, 2}}};
  for (const auto& lRow : ROWS) {
    utl::TimerIds lIds(lRow.mLast);
    for (const int lId : lRow.mTaken) {
      EXPECT_EQ(lIds.take(), lId);
      if (lId == lRow.mGiven) lIds.give(lId);
    }
  }
  utl::TimerIds lKept(INT_MAX - 1);
  lKept.reserve(2);
  EXPECT_EQ(lKept.take(), INT_MAX);
  const unsigned int lBefore = gNews;
  for (int i = 1; i <= 100; ++i) {
    EXPECT_EQ(lKept.take(), i);
    lKept.give(i);
  }
  EXPECT_EQ(gNews, lBefore) << "what was given back takes no room";
}

TEST(KernelName, FitsTellsTheThreadsApartAndIsGivenWhetherOrNotTheHostMayHaveRealTime) {
  const std::pair<const char*, const char*> ROWS[] = {
      {"", ""},
      {"nfw::Logger_Thread", "Logger"},
      {"nfw::ComponentManager_Watch_Thread", "Component~Watch"},
      {"nfw::ProcessMsg_sender_Thread", "ProcessMs~ender"},
      {"nfw::ProcessMsg_distributor_Thread", "ProcessMs~butor"},
      {"nfw::Gnss_SharedThread", "Gnss_Shar~hread"},
      {"0000002A_nfw::LogPlayDataDispatcher_Thread", "0000002A_~tcher"},
      {"0000002B_nfw::LogPlayDataDispatcher_Thread", "0000002B_~tcher"},
  };
  for (const auto& [lpName, lpShort] : ROWS) {
    Recorder lRecorder;
    utl::MsgDrivenThread lThread(4, 4, lpName, 1);
    threadhost::setRealTimePriorities(true);
    EXPECT_EQ(start(lThread, &lRecorder), 0);
    threadhost::setRealTimePriorities(false);
    lRecorder.mOnMsg = [lpShort = lpShort](int, utl::ThreadRawMsg&) {
      char lName[16] = "";
      pthread_getname_np(pthread_self(), lName, sizeof lName);
      EXPECT_STREQ(lName, lpShort);
    };
    EXPECT_TRUE(lThread.sendMsgSync(1));
  }
}

TEST(RealTimePriorities, AreOfThreadsOfThisLayerAlone) {
  Recorder lRecorder;
  utl::MsgDrivenThread lThread(4, 4, "rt", 1);
  int lOwn = -1, lOther = -1;
  lRecorder.mOnMsg = [&](int, utl::ThreadRawMsg&) {
    lOwn = sched_getscheduler(0) & ~SCHED_RESET_ON_FORK;
    std::thread([&] { lOther = sched_getscheduler(0); }).join();
  };
  threadhost::setRealTimePriorities(true);
  EXPECT_EQ(start(lThread, &lRecorder), 0);
  threadhost::setRealTimePriorities(false);
  EXPECT_TRUE(lThread.sendMsgSync(1));
  bool lIsPermitted = false;
  std::thread([&] {
    const sched_param lLeast = {1};
    lIsPermitted = sched_setscheduler(0, SCHED_FIFO, &lLeast) == 0;
  }).join();
  if (!lIsPermitted) GTEST_SKIP() << "real-time priorities are not permitted";
  EXPECT_EQ(SCHED_FIFO, lOwn);
  EXPECT_EQ(SCHED_OTHER, lOther);
}

TEST(CallsOutward, AreMadeWithoutTheLock) {
  OwnThread lThread({2000, 8, 0});
  ASSERT_EQ(lThread.start(), 0);
  EXPECT_TRUE(lThread.send(StoreBy(1, [&](utl::MsgDataBroker& n) {
    const std::vector<char> lBytes(2000);
    return n.writeChars(lBytes.data(), 2000) && !lThread.has(77) && lThread.timer(60000, 1, 0) > 0;
  })));
  EXPECT_TRUE(lThread.hold());
  EXPECT_TRUE(lThread.post(1));
  JudgeBy lPosting([&](int nId, utl::ThreadRawMsg&) {
    std::thread([&] { EXPECT_TRUE(lThread.post(2)); }).join();  // others go on meanwhile
    lThread.mRecorder.release();
    EXPECT_EQ(lThread.erase(1), 0u) << "the judging thread itself must not, and is not left waiting";
    return nId == 1;
  });
  EXPECT_EQ(lThread.erase(&lPosting), 1u);
  EXPECT_TRUE(lThread.send(3));
  EXPECT_EQ(lThread.mRecorder.ids(), (Ids{1, 2, 3}));
  lThread.mThread.stop(1, LIMIT_MS);
}

/// Destroys its thread from within.
TEST(Leaving, AHandlerMayDestroyItsOwnThread) {
  Recorder lRecorder;
  utl::Event lIsGone(false);
  auto* const lpThread = new utl::MsgDrivenThread(4, 4, "nfw::Leaving_Thread", 1);
  lRecorder.mOnMsg = [&](int nId, utl::ThreadRawMsg&) {
    EXPECT_EQ(nId, 1);
    EXPECT_TRUE(lpThread->postMsg(2));
    delete lpThread;
    lIsGone.on();
  };
  ASSERT_EQ(start(*lpThread, &lRecorder), 0);
  EXPECT_TRUE(lpThread->postMsg(1));
  EXPECT_TRUE(lIsGone.waitToOn(LIMIT_MS));
  EXPECT_TRUE(lRecorder.await(1));
}

}  // namespace
