// Everything at once: meant to be run under the thread sanitizer as well.
#include <array>

#include "ThreadSupport.h"

namespace {

using namespace contract;

const int POSTERS = 3, ROUNDS = 1500, RESTARTS = 15;
enum MsgId { SYNC = POSTERS, INTERRUPT, DOOMED };

/// Checks that every poster's numbers come in the order of their posting, and counts what is handled.
class Checker : public utl::ThreadMsgListener {
 public:
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override {
    EXPECT_EQ(mInside.exchange(true), false) << "one at a time";
    EXPECT_EQ(nThreadId, utl::Thread::getCurrentId());
    int lId = 0;
    EXPECT_TRUE(nMsg.getMsgId(&lId));
    if (lId == utl::TimerMsg::MSG_ID) {
      ++mTimers;
    } else {
      unsigned int lNumber = 0;
      EXPECT_TRUE(nMsg.beginOutput() && nMsg.read(&lNumber));
      const size_t lKind = static_cast<size_t>(lId);
      EXPECT_TRUE(lId >= POSTERS || lNumber > mLast[lKind]) << "kind " << lId;
      mLast[lKind] = lNumber;
      ++mNum[lKind];
    }
    mInside = false;
  }

  std::array<unsigned int, DOOMED + 1> mLast{};
  std::array<std::atomic<unsigned int>, DOOMED + 1> mNum{};
  std::atomic<unsigned int> mTimers{0};

 private:
  std::atomic<bool> mInside{false};
};

/// A number and ballast: small ones, and some that take a slot before they are queued.
class NumberMsg : public utl::Msg {
 public:
  NumberMsg(int nId, unsigned int nNumber) : Msg(nId), mNumber(nNumber) {}
  bool storeDataTo(utl::MsgDataBroker& nBroker) const override {
    static const char BALLAST[1500] = "";
    return nBroker.write(mNumber) && nBroker.writeChars(BALLAST, mNumber % 3 == 0 ? sizeof BALLAST : 4);
  }

 private:
  unsigned int mNumber;
};

class Stress : public testing::Test {
 protected:
  bool start() { return mThread.start(1, LIMIT_MS, nullptr, 1, 0, utl::ThreadPriority(3), 0) == 0; }
  void work(const std::function<void(unsigned int)>& nRound) {
    mWorkers.emplace_back([nRound] {
      for (unsigned int i = 1; i <= ROUNDS; ++i) nRound(i);
    });
  }

  Checker mChecker, mOther;
  utl::MsgDrivenSharedThread mThread{1504, 20, 0, "nfw::Stress_SharedThread", 2};
  std::vector<std::thread> mWorkers;
};

TEST_F(Stress, NothingIsLostDoubledOrMixedUp) {
  ASSERT_TRUE(start());
  std::array<std::atomic<unsigned int>, DOOMED + 1> lTaken{};
  std::atomic<unsigned int> lErased{0};
  const auto lCount = [&lTaken](int nKind, bool nIsTaken) { lTaken[static_cast<size_t>(nKind)] += nIsTaken ? 1 : 0; };
  for (int i = 0; i < POSTERS; ++i) {
    work([&, i](unsigned int n) { lCount(i, mThread.postMsg(&mChecker, NumberMsg(i, n))); });
  }
  work([&](unsigned int n) { lCount(SYNC, mThread.sendMsgSync(&mChecker, NumberMsg(SYNC, n))); });
  work([&](unsigned int n) { lCount(INTERRUPT, mThread.sendMsgInterrupt(&mChecker, NumberMsg(INTERRUPT, n))); });
  work([&](unsigned int n) { lCount(DOOMED, mThread.postMsg(&mOther, NumberMsg(DOOMED, n))); });
  work([&](unsigned int n) {
    JudgeBy lJudge([](int nId, utl::ThreadRawMsg&) { return nId == DOOMED; });
    lErased += n % 2 == 0 ? mThread.eraseMsg(&mOther, DOOMED) : mThread.eraseMsgInternal(&mOther, &lJudge);
    mThread.hasMsg(&mChecker, SYNC);
    mThread.getFirstMsgId();
  });
  work([&](unsigned int n) {
    const int lIds[] = {mThread.setTimer(&mChecker, n % 3, 2, n), mThread.setTimer(&mOther, n % 2, 0, n)};
    mThread.killTimer(lIds[n % 2], 1);
    if (n % 50 == 0) mThread.abortMsg(&mOther);
  });
  for (int i = 0; i < RESTARTS; ++i) {
    EXPECT_EQ(mThread.stop(1, LIMIT_MS), 0);
    EXPECT_TRUE(start());
    const bool lIsHandled = mThread.sendMsgSync(&mChecker, NumberMsg(SYNC, 1));
    lCount(SYNC, lIsHandled);
    EXPECT_TRUE(lIsHandled);
  }
  for (std::thread& lEach : mWorkers) lEach.join();
  EXPECT_EQ(mThread.stop(1, LIMIT_MS), 0);
  for (size_t i = 0; i < DOOMED; ++i) EXPECT_EQ(mChecker.mNum[i], lTaken[i]) << i;
  EXPECT_GE(lTaken[DOOMED], mOther.mNum[DOOMED] + lErased) << "the rest was dropped by abort";
}

}  // namespace
