// The stand-ins of the service SDKs: who is called, in which order, and how a listener goes while it is being called.
#include <atomic>
#include <functional>
#include <future>
#include <string>
#include <thread>

#include "Gps.h"
#include "GpsHost.h"
#include "ThreadSupport.h"
#include "gtest/gtest.h"

namespace {

struct Nmea : GpsNmeaListener {
  explicit Nmea(std::function<void(const std::string&)> nCall) : mCall(nCall) {}
  ~Nmea() override { Gps::GetInstance()->unRegisterGpsNmeaListener(this); }
  bool attach(GeodeticSystem nSystem = WGS_84_GPS) {
    return Gps::GetInstance()->registerGpsNmeaListener(this, nSystem);
  }
  bool detach() { return Gps::GetInstance()->unRegisterGpsNmeaListener(this); }
  void notifyReceiveNmeaSentence(char const* npText, unsigned int nSize) override { mCall(std::string(npText, nSize)); }

  std::function<void(const std::string&)> mCall;
};

void feed(const std::string& nText, GeodeticSystem nSystem = WGS_84_GPS) {
  gpshost::feedSentence(nText.data(), static_cast<unsigned int>(nText.size()), nSystem);
}

TEST(SdkStandIn, CallsTheListenersOfTheSystemInOrder) {
  std::string lCalls;
  Nmea lFirst([&](const std::string& nText) { lCalls += "1" + nText; });
  Nmea lSecond([&](const std::string& nText) { lCalls += "2" + nText; });
  EXPECT_FALSE(Gps::GetInstance()->registerGpsNmeaListener(nullptr, WGS_84_GPS));
  EXPECT_TRUE(lFirst.attach());
  EXPECT_TRUE(lFirst.attach());  // once is enough
  EXPECT_TRUE(lSecond.attach());
  EXPECT_TRUE(lFirst.attach(TOKYO_GPS));
  feed("a");
  feed("b", TOKYO_GPS);
  EXPECT_EQ("1a2a1b", lCalls);
  EXPECT_TRUE(lFirst.detach());
  EXPECT_FALSE(lFirst.detach());
  feed("c");
  feed("d", TOKYO_GPS);
  EXPECT_EQ("1a2a1b2c", lCalls);
}

TEST(SdkStandIn, ListenersComeAndGoDuringACall) {
  std::string lCalls;
  Nmea lLate([&](const std::string&) { lCalls += "late "; });
  Nmea lVictim([&](const std::string&) { lCalls += "victim "; });
  Nmea lActor([&](const std::string& nText) {
    lCalls += "actor ";
    lLate.attach();
    lVictim.detach();
    lActor.detach();
    if (nText == "outer") feed("inner");
  });
  Nmea lLast([&](const std::string&) { lCalls += "last "; });
  for (Nmea* lpListener : {&lActor, &lVictim, &lLast}) lpListener->attach();
  feed("outer");
  EXPECT_EQ("actor last late last ", lCalls);  // the inner round, then the rest of the outer one
}

TEST(SdkStandIn, ARemovalWaitsForTheCallback) {
  std::promise<void> lGo;
  std::atomic<bool> lIsFinished{false};
  std::atomic<unsigned int> lCalls{0};
  Nmea lListener([&](const std::string& nText) {
    ++lCalls;
    if (nText != "wait") return;
    lGo.get_future().wait();
    lIsFinished = true;
  });
  lListener.attach();
  std::thread lFeeder([] { feed("wait"); });
  EXPECT_TRUE(contract::eventually([&] { return lCalls > 0; }));
  std::thread lRemover([&] {
    EXPECT_TRUE(lListener.detach());
    EXPECT_TRUE(lIsFinished);
  });
  EXPECT_TRUE(contract::eventually([&] {  // not called any more: the removal is under way
    const unsigned int lBefore = lCalls;
    feed("pass");
    return lBefore == lCalls;
  }));
  lGo.set_value();
  lRemover.join();
  lFeeder.join();
}

}  // namespace
