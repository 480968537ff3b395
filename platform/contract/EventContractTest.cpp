#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "utl/Event.h"
#include "utl/Thread.h"
#include "utl/Time.h"

namespace {

using std::chrono::milliseconds;
using Steady = std::chrono::steady_clock;

TEST(EventContract, StaysOnUntilItIsSetOff) {
  for (const bool lIsOn : {false, true}) EXPECT_EQ(utl::Event(lIsOn).isOn(), lIsOn);
  utl::Event lEvent(false);
  lEvent.on();
  lEvent.on();
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(lEvent.waitToOn(0));
  lEvent.off();
  EXPECT_FALSE(lEvent.isOn());
}

TEST(EventContract, WaitEndsAtItsTimeOutAndNotBefore) {
  utl::Event lEvent(false);
  const auto lStart = Steady::now();
  EXPECT_FALSE(lEvent.waitToOn(20));
  EXPECT_GE(Steady::now() - lStart, milliseconds(20));
}

TEST(EventContract, SettingItReleasesEveryWaiterWithAndWithoutLimit) {
  utl::Event lEvent(false);
  std::thread lThreads[4];
  for (int i = 0; i < 4; ++i) {
    lThreads[i] = std::thread([&lEvent, i] { EXPECT_TRUE(lEvent.waitToOn(i % 2 == 0 ? 0 : 20000)); });
  }
  lEvent.on();
  for (std::thread& lEach : lThreads) lEach.join();
}

TEST(EventContract, MayGoAsSoonAsItsWaiterIsBack) {
  for (int i = 0; i < 200; ++i) {
    auto lpEvent = std::make_unique<utl::Event>(false);
    std::thread lSetter([&lEvent = *lpEvent] { lEvent.on(); });
    EXPECT_TRUE(lpEvent->waitToOn(0));
    lpEvent.reset();
    lSetter.join();
  }
}

TEST(TimeCounterContract, CountsMillisecondsForward) {
  utl::TimeCounter lCounter;
  lCounter.start();
  const unsigned int lTick = utl::TimeCounter::getTickTime();
  const auto lStart = Steady::now();
  utl::Thread::sleep(0);
  utl::Thread::sleep(5);
  EXPECT_GE(Steady::now() - lStart, milliseconds(5));
  EXPECT_GE(utl::TimeCounter::getTickTime() - lTick, 5u);
  EXPECT_GE(lCounter.getElapsed(), 5u);
  EXPECT_NE(lTick, utl::TimeCounter::FAILURE);
}

}  // namespace
