// The end of a log service under threads that do not let go of it.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "PlatformSeams.h"
#include "Replays.h"
#include "StuckCall.h"

namespace {

using nfw::Logger;
using nfwtest::Notes;

struct DataLog {
  using Service = Logger;
  using Player = nfwtest::Player;
  static constexpr const char* THREAD = "nfw::Logger_Thread";
  static constexpr unsigned int OTHER_THREADS = 1;  // stopped before it
  static Player makePlayer(Notes& nNotes) { return Player(nNotes, "player"); }
  static void write() { Logger::write(1, "data", 4); }
};

struct SensorLog {
  using Service = nfw::SensorSysLoggerManager;
  using Player = nfwtest::SysPlayer;
  static constexpr const char* THREAD = "Sensor_SysLogger_Thread";
  static constexpr unsigned int OTHER_THREADS = 0;
  static Player makePlayer(Notes& nNotes) { return Player(nNotes); }
  static void write() { Service::write(1, 1, const_cast<char*>("data"), 4); }
};

template <class Log>
class ServiceEndTest : public testing::Test {
 protected:
  ServiceEndTest() {
    Logger::initializeMaxPlayerNum(2);
    Logger::initializeMaxLogTypeNum(1);
    Logger::initializeMaxLogFieldSize(100);
    Logger::initializeLogBufferSize(1000);
    Logger::initializeMaxLogFileSize(1000);
  }
  ~ServiceEndTest() override { Log::Service::destroy(); }

  seams::CapturedLog mLog;
};

using Logs = testing::Types<DataLog, SensorLog>;
TYPED_TEST_SUITE(ServiceEndTest, Logs);

TYPED_TEST(ServiceEndTest, AServiceThatIsStuckInAPlayerIsLeftBehindWhole) {
  using Service = typename TypeParam::Service;
  const std::string lLine = std::string("Thread Stop Timeout [") + TypeParam::THREAD + "]";
  for (const bool lIsShutDown : {true, false}) {
    nfwtest::StuckCall lStuck;
    Notes lNotes;
    auto lOther = TypeParam::makePlayer(lNotes), lFirst = TypeParam::makePlayer(lNotes);
    lFirst.mOnStart = [&lStuck] { lStuck.enter(); };
    Service* const lpService = Service::get();
    ASSERT_TRUE(lpService->initialize() && lpService->attachPlayer(&lOther) && lpService->attachPlayer(&lFirst));
    ASSERT_TRUE(lpService->startPlay("/nowhere"));
    lStuck.awaitEntry();
    this->mLog.clear();
    {
      const seams::Failing lNoTime(seams::THREAD_STOP, TypeParam::OTHER_THREADS);
      if (lIsShutDown) lpService->shutdown();
      Service::destroy();
      EXPECT_EQ(1U, lNoTime.hits()) << "waited for once";
    }
    EXPECT_EQ((std::vector<std::string>{lLine}), this->mLog.texts());
    EXPECT_NE(lpService, Service::get());
    EXPECT_TRUE(Service::get()->initialize());
    EXPECT_TRUE(lStuck.leave());
    EXPECT_EQ(1U, lNotes.count()) << "nobody is called any more";
    Service::destroy();
  }
}

TYPED_TEST(ServiceEndTest, ThreadsThatWriteAllTheTimeDoNotHoldUpItsEnd) {
  using Service = typename TypeParam::Service;
  std::atomic<bool> lIsOver{false};
  std::vector<std::thread> lWriters;
  for (int i = 0; i < 16; ++i) {
    lWriters.emplace_back([&lIsOver] {
      while (!lIsOver) TypeParam::write();
    });
  }
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(Service::get()->initialize());
    const auto lEnd = std::async(std::launch::async, [] { Service::destroy(); });
    if (lEnd.wait_for(std::chrono::seconds(20)) == std::future_status::ready) continue;
    ADD_FAILURE() << "not over";
    lIsOver = true;
  }
  lIsOver = true;
  for (std::thread& lWriter : lWriters) lWriter.join();
}

}  // namespace
