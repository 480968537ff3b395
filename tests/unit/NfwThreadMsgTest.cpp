// What the slots of a thread's queue have to hold, and how a service's thread comes and goes.
#include <gtest/gtest.h>

#include <future>
#include <string>
#include <tuple>
#include <vector>

#include "NfwThreadMsgProfilerManager.h"
#include "NfwThreadMsgSizeCalculator.h"
#include "PlatformSeams.h"
#include "ServiceThread.h"
#include "SharedThread.h"

namespace {

class SizedMsg : public utl::Msg {
 public:
  explicit SizedMsg(unsigned int nSize) : utl::Msg(1), mSize(nSize) {}
  bool restoreDataFrom(utl::MsgDataBroker& nBroker) override { return nBroker.readBytes(nullptr, mSize); }

 private:
  unsigned int mSize;
};

TEST(ThreadMsgSizeTest, CountsWhatEachReadAsksForOnTheUnit) {
  std::tuple<bool, char, uint16_t, uint32_t, int64_t, float, double, const int*> lFields{true, 'a', 2, 3,
                                                                                         4,    5,   6, nullptr};
  const auto lBefore = lFields;
  wchar_t lWide[3] = L"ab";
  char lChars[5] = "abcd";
  std::vector<unsigned int> lSizes;
  nfw::ThreadMsgSizeCalculator lCalculator;
  const auto lCount = [&](const auto& nRead) {
    EXPECT_TRUE(lCalculator.beginInput());
    EXPECT_FALSE(nRead());
    EXPECT_TRUE(lCalculator.beginOutput());
    EXPECT_TRUE(nRead() && !lCalculator.write(1) && nRead());
    lSizes.push_back(lCalculator.getSize() / 2);
  };
  std::apply([&](auto&... nField) { (lCount([&] { return lCalculator.read(&nField); }), ...); }, lFields);
  lCount([&] { return lCalculator.readBytes(lChars, 5); });
  lCount([&] { return lCalculator.readChars(lChars, 4); });
  lCount([&] { return lCalculator.readWideChars(lWide, 3); });
  EXPECT_EQ((std::vector<unsigned int>{1, 1, 2, 4, 8, 4, 8, 4, 5, 4, 12}), lSizes);
  EXPECT_TRUE(lFields == lBefore && std::string("abcd") == lChars) << "the fields keep their values";
}

TEST(ThreadMsgSizeTest, AThreadsSlotsHoldTheLargestMessageOfItsKind) {
  using Manager = nfw::ThreadMsgProfilerManager;
  SizedMsg lSmall(3), lMiddle(20), lLarge(100);
  const nfw::ThreadMsgProfiler::Sample lSamples[] = {{"small", &lSmall}, {"large", &lLarge}, {"middle", &lMiddle}};
  for (const int lKind : {0, 9, 15}) {
    const unsigned int lBefore = Manager::profiledSize(lKind);
    {
      const nfw::ThreadMsgProfiler lFirst(lKind, &lSamples[2], 1);
      const nfw::ThreadMsgProfiler lOther(14, lSamples, 2);
      {
        const nfw::ThreadMsgProfiler lLast(lKind, lSamples, 2);
        EXPECT_EQ(100U, Manager::profiledSize(lKind));
      }
      EXPECT_EQ(20U, Manager::profiledSize(lKind));
    }
    EXPECT_EQ(20U, Manager::getMaxMsgDataSize(lKind)) << "measured when it was asked for";
    EXPECT_EQ(lBefore, Manager::profiledSize(lKind));
  }
  for (const int lKind : {-1, 16}) {
    const nfw::ThreadMsgProfiler lNone(lKind, lSamples, 2);
    EXPECT_EQ(0U, Manager::profiledSize(lKind));
  }
}

TEST(ServiceThreadTest, SaysWhatKeepsAThreadFromComingAndGoing) {
  struct Listener : utl::ThreadMsgListener {
    void receiveMsg(int, utl::ThreadRawMsg& nMsg) override {
      int lId = 0;
      nMsg.getMsgId(&lId);
      EXPECT_TRUE(lId != 1 || nfw::stopThread(mThread)) << "NG: it ends by itself";
      if (lId == 2) mGo.get_future().wait();
    }
    utl::MsgDrivenThread mThread{4, 4, "name", 1};
    std::promise<void> mGo;
  } l;
  seams::CapturedLog lLog;
  {
    const seams::Failing lFailing(seams::THREAD_START);
    EXPECT_FALSE(nfw::startThread(l.mThread, &l));
  }
  EXPECT_TRUE(nfw::stopThread(l.mThread)) << "it does not run";
  EXPECT_TRUE(nfw::startThread(l.mThread, &l));
  EXPECT_TRUE(l.mThread.sendMsgSync(1));
  EXPECT_TRUE(l.mThread.postMsg(2));
  EXPECT_TRUE(nfwtest::eventually([&] { return !l.mThread.hasMsg(2); }));
  {
    const seams::Failing lFailing(seams::THREAD_STOP);
    EXPECT_FALSE(nfw::stopThread(l.mThread));
    EXPECT_FALSE(nfw::stopThread(l.mThread, nfw::Here::now(), "TIMEOUT"));
  }
  l.mGo.set_value();
  EXPECT_TRUE(nfwtest::eventually([&] { return !l.mThread.isRunning(); }));
  EXPECT_EQ((std::vector<std::string>{"Thread Start[name]", "Thread Stop NG [name]", "Thread Stop Timeout [name]",
                                      "Thread Stop TIMEOUT [name]"}),
            lLog.texts());
  for (const auto& lLine : lLog.lines()) EXPECT_EQ(1, lLine.mLevel);
}

}  // namespace
