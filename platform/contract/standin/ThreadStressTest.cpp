// Everything at once: meant to be run under the thread sanitizer as well.
#include <array>

#include "ThreadSupport.h"

namespace {

using namespace contract;

const int POSTERS = 3, ROUNDS = 1500, RESTARTS = 15;
enum MsgId { SYNC = POSTERS, INTERRUPT, DOOMED, KIND_NUM };
using Counts = std::array<std::atomic<unsigned int>, KIND_NUM>;

/// Checks that every poster's numbers come in the order of their posting, and counts what is handled.
class Checker : public utl::ThreadMsgListener {
 public:
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override {
    EXPECT_EQ(mInside.exchange(true), false) << "one at a time";
    EXPECT_EQ(nThreadId, utl::Thread::getCurrentId());
    int lId = 0;
    unsigned int lNumber = 0;
    EXPECT_TRUE(nMsg.getMsgId(&lId));
    if (lId != utl::TimerMsg::MSG_ID) {
      EXPECT_TRUE(nMsg.beginOutput() && nMsg.read(&lNumber));
      const size_t lKind = static_cast<size_t>(lId);
      EXPECT_TRUE(lId >= POSTERS || lNumber > mLast[lKind]) << "kind " << lId;
      mLast[lKind] = lNumber;
      ++mNum[lKind];
    }
    mInside = false;
  }

  Counts mNum{};

 private:
  std::array<unsigned int, KIND_NUM> mLast{};
  std::atomic<bool> mInside{false};
};

/// A number and ballast: small ones, and some that take a slot before they are queued.
StoreBy numberMsg(int nId, unsigned int nNumber) {
  static const char BALLAST[1500] = "";
  return {nId, [nNumber](utl::MsgDataBroker& n) {
            return n.write(nNumber) && n.writeChars(BALLAST, nNumber % 3 == 0 ? sizeof BALLAST : 4);
          }};
}

TEST(Stress, NothingIsLostDoubledOrMixedUp) {
  Checker lChecker, lOther;
  utl::MsgDrivenSharedThread lThread(1504, 20, 0, "nfw::Stress_SharedThread", 2);
  ASSERT_EQ(start(lThread), 0);
  Counts lTaken{};
  std::atomic<unsigned int> lErased{0};
  std::vector<std::thread> lWorkers;
  const auto lWork = [&lWorkers](const std::function<void(unsigned int)>& nRound) {
    lWorkers.emplace_back([nRound] {
      for (unsigned int i = 1; i <= ROUNDS; ++i) nRound(i);
    });
  };
  const auto lCount = [&lTaken](int nKind, bool nIsTaken) { lTaken[static_cast<size_t>(nKind)] += nIsTaken ? 1 : 0; };
  for (int i = 0; i < POSTERS; ++i) {
    lWork([&, i](unsigned int n) { lCount(i, lThread.postMsg(&lChecker, numberMsg(i, n))); });
  }
  lWork([&](unsigned int n) { lCount(SYNC, lThread.sendMsgSync(&lChecker, numberMsg(SYNC, n))); });
  lWork([&](unsigned int n) { lCount(INTERRUPT, lThread.sendMsgInterrupt(&lChecker, numberMsg(INTERRUPT, n))); });
  lWork([&](unsigned int n) { lCount(DOOMED, lThread.postMsg(&lOther, numberMsg(DOOMED, n))); });
  lWork([&](unsigned int n) {
    JudgeBy lJudge([](int nId, utl::ThreadRawMsg&) { return nId == DOOMED; });
    lErased += n % 2 == 0 ? lThread.eraseMsg(&lOther, DOOMED) : lThread.eraseMsgInternal(&lOther, &lJudge);
    lThread.hasMsg(&lChecker, SYNC);
    lThread.getFirstMsgId();
  });
  lWork([&](unsigned int n) {
    const int lIds[] = {lThread.setTimer(&lChecker, n % 3, 2, n), lThread.setTimer(&lOther, n % 2, 0, n)};
    lThread.killTimer(lIds[n % 2], 1);
    if (n % 50 == 0) lThread.abortMsg(&lOther);
  });
  for (int i = 0; i < RESTARTS; ++i) {
    EXPECT_EQ(lThread.stop(1, LIMIT_MS), 0);
    EXPECT_EQ(start(lThread), 0);
    const bool lIsHandled = lThread.sendMsgSync(&lChecker, numberMsg(SYNC, 1));
    lCount(SYNC, lIsHandled);
    EXPECT_TRUE(lIsHandled);
  }
  for (std::thread& lEach : lWorkers) lEach.join();
  EXPECT_EQ(lThread.stop(1, LIMIT_MS), 0);
  for (size_t i = 0; i < DOOMED; ++i) EXPECT_EQ(lChecker.mNum[i], lTaken[i]) << i;
  EXPECT_GE(lTaken[DOOMED], lOther.mNum[DOOMED] + lErased) << "the rest was dropped by abort";
}

}  // namespace
