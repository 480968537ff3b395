// What the slots of a thread's queue have to hold, and how a service's thread comes and goes.
#include <gtest/gtest.h>

#include <functional>
#include <future>

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
  nfw::ThreadMsgSizeCalculator lCalculator;
  int8_t l8 = 1;
  bool lBool = true;
  uint16_t l16 = 2;
  uint32_t l32 = 3;
  int64_t l64 = 4;
  float lFloat = 5;
  double lDouble = 6;
  const int* lpPointer = nullptr;
  wchar_t lWide[3] = L"ab";
  char lChars[5] = "abcd";
  const std::pair<unsigned int, std::function<bool()>> READS[] = {
      {1, [&] { return lCalculator.read(&lBool); }},
      {1, [&] { return lCalculator.read(&l8); }},
      {2, [&] { return lCalculator.read(&l16); }},
      {4, [&] { return lCalculator.read(&l32); }},
      {8, [&] { return lCalculator.read(&l64); }},
      {4, [&] { return lCalculator.read(&lFloat); }},
      {8, [&] { return lCalculator.read(&lDouble); }},
      {4, [&] { return lCalculator.read(&lpPointer); }},
      {5, [&] { return lCalculator.readBytes(lChars, 5); }},
      {5, [&] { return lCalculator.readChars(lChars, 5); }},
      {12, [&] { return lCalculator.readWideChars(lWide, 3); }}};
  for (const auto& [lSize, lRead] : READS) {
    EXPECT_TRUE(lCalculator.beginInput());
    EXPECT_FALSE(lRead());
    EXPECT_TRUE(lCalculator.beginOutput());
    for (unsigned int i = 1; i <= 2; ++i) {
      EXPECT_TRUE(lRead());
      EXPECT_EQ(i * lSize, lCalculator.getSize());
    }
    EXPECT_FALSE(lCalculator.write(1)) << "it stores nothing";
  }
  EXPECT_TRUE(lBool && l8 == 1 && l64 == 4 && lDouble == 6 && lChars[0] == 'a') << "the fields keep their values";
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
    EXPECT_FALSE(nfw::stopThread(l.mThread, "TIMEOUT"));
  }
  l.mGo.set_value();
  EXPECT_TRUE(nfwtest::eventually([&] { return !l.mThread.isRunning(); }));
  const char* const LINES[] = {"Thread Start[name]", "Thread Stop NG [name]", "Thread Stop Timeout [name]",
                               "Thread Stop TIMEOUT [name]"};
  ASSERT_EQ(4U, lLog.lines().size());
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(LINES[i], lLog.texts()[i]);
    EXPECT_EQ(1, lLog.lines()[i].mLevel);
  }
}

}  // namespace
