// Both recording services with a player that does not let go of them.
#include <gtest/gtest.h>
#include <malloc.h>

#include "NfwAppLog.h"
#include "NfwLogPlayDataDispatcher.h"
#include "NfwLogWriter.h"
#include "NfwLogger.h"
#include "NfwMountManager.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwSysLogPlayDataDispatcher.h"
#include "PlatformSeams.h"
#include "Replays.h"
#include "SharedThread.h"
#include "StuckCall.h"
#include "SysLogServiceHost.h"
#include "TempDir.h"

namespace {

using nfw::Logger;
using nfw::SensorSysLoggerManager;
using nfwtest::Notes;

struct DataLog {
  using Service = Logger;
  using Player = nfwtest::Player;
  static constexpr const char* THREAD = "nfw::Logger_Thread";
  static constexpr unsigned int OTHER_THREADS = 1;  // stopped before it
  static Player makePlayer(Notes& nNotes) { return Player(nNotes, "player"); }
};

struct SensorLog {
  using Service = nfw::SensorSysLoggerManager;
  using Player = nfwtest::SysPlayer;
  static constexpr const char* THREAD = "Sensor_SysLogger_Thread";
  static constexpr unsigned int OTHER_THREADS = 0;
  static Player makePlayer(Notes& nNotes) { return Player(nNotes); }
};

template <class Log>
class ServiceEndTest : public testing::Test {
 protected:
  ServiceEndTest() {
    Logger::initializeMaxPlayerNum(2);
    Logger::initializeMaxLogTypeNum(3);
    Logger::initializeMaxLogFieldSize(100);
    Logger::initializeLogBufferSize(1000);
    Logger::initializeMaxLogFileSize(20000);
    EXPECT_TRUE(syslogservice::setBinaryLogFile((mDir / "binary").c_str()));
  }
  ~ServiceEndTest() override {
    Log::Service::destroy();
    syslogservice::setBinaryLogFile(nullptr);
  }

  nfwtest::TempDir mDir;
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

TEST(UnknownMessageTest, IsNamedByWhoeverGetsIt) {
  const seams::CapturedLog lLog;
  nfw::LogWriter lWriter(1000, 1000);
  nfw::LogPlayDataDispatcher lReplay(20, nullptr, Logger::get(), 10);
  nfw::SysLogPlayDataDispatcher lSysReplay(4, nullptr, SensorSysLoggerManager::get());
  const struct {
    utl::ThreadMsgListener* mpReceiver;
    std::string mName;
  } CASES[] = {{&lWriter, "LogWriter"},
               {&lReplay, "LogPlayDataDispatcher"},
               {&lSysReplay, "SysLogPlayDataDispatcher"},
               {Logger::get(), "Logger"},
               {SensorSysLoggerManager::get(), "SensorSysLoggerManager"},
               {nfw::MountManager::get(), "MountManager"}};
  std::vector<std::string> lExpected;
  for (const auto& lCase : CASES) {
    nfwtest::RawMsg lNone, lUnknown(static_cast<int>(0x80000C0Fu));
    lCase.mpReceiver->receiveMsg(0, lNone);
    lCase.mpReceiver->receiveMsg(0, lUnknown);
    lExpected.push_back(lCase.mName + "::receiveMsg(): Can't get MsgId");
    lExpected.push_back(lCase.mName + "::receiveMsg(): UnknownMsg: MsgId=-2147480561");
  }
  EXPECT_EQ(lExpected, lLog.texts());
  size_t lUsed = 0;  // of memory: what is destroyed gives it back
  for (int i = 0; i < 20; ++i) {
    Logger::get(), SensorSysLoggerManager::get(), nfw::MountManager::get();
    Logger::destroy(), SensorSysLoggerManager::destroy(), nfw::MountManager::destroy();
    if (i == 0) lUsed = mallinfo2().uordblks;
  }
  EXPECT_GT(lUsed + 50000, mallinfo2().uordblks);
}

}  // namespace
