// What both positioning services do alike: one source at a time, and a life that may be cut short anywhere.
#include <future>

#include "LogRecords.h"
#include "Positioning.h"
#include "StuckCall.h"

namespace {

using namespace nfwtest;

/// The satellite service. A source is known by the kind of its sentences.
struct GnssFacade {
  using Service = nfw::Gnss;
  static constexpr int LOGGER_ID = GNSS_LOGGER_ID, SENSOR_ID = 0;
  static constexpr const char *NAME = "Gnss", *THREAD = "nfw::Gnss_SharedThread", *LOG_PLAYER = "nfw::GnssLogger",
                              *SENSOR_PLAYER = "nfw::GnssSensorSysLoggerPlayer:", *ATTACH = "nfw::NmeaDataDispatcher";

  explicit GnssFacade(Notes& nNotes) : mListener(nNotes) {}
  static void shutdown() { nfw::Gnss::get()->shutdown(); }
  static void setLoggerId(int nId) { nfw::Gnss::initializeLoggerId(nId); }
  bool attach() { return nfw::Gnss::get()->attachNmeaDataListener(&mListener); }
  void detach() { nfw::Gnss::get()->detachNmeaDataListener(&mListener); }
  static void feed() { feedText(GGA_TEXT); }
  static Strings logTexts() { return {VTG_TEXT}; }
  static std::string sensorRecordData() { return sensorData(RMC_TEXT); }
  static char sourceOf(const std::string& nNote) {
    return nNote == GGA_TEXT ? 'l' : nNote == VTG_TEXT ? 'L' : nNote == RMC_TEXT ? 'S' : '?';
  }

  GnssListener mListener;
};

/// The dead-reckoning service. A source is known by the day in its RMC; the other sentences are all alike.
struct DeadReckoningFacade {
  using Service = nfw::DeadReckoning;
  static constexpr int LOGGER_ID = DEAD_RECKONING_LOGGER_ID, SENSOR_ID = 1;
  static constexpr const char *NAME = "DeadReckoning", *THREAD = "nfw::DeadReckoning_SharedThread",
                              *LOG_PLAYER = "nfw::DeadReckoningLoggerPlayer:",
                              *SENSOR_PLAYER = "nfw::DeadReckoningSensorSysLoggerPlayer:",
                              *ATTACH = "nfw::DeadReckoningNmeaDataDispatcher";

  explicit DeadReckoningFacade(Notes& nNotes) : mListener(nNotes) {}
  static void shutdown() { nfw::DeadReckoning::get()->finalize(); }
  static void setLoggerId(int nId) { nfw::DeadReckoning::initializeLoggerId(nId); }
  bool attach() { return nfw::DeadReckoning::get()->attachDeadReckoningNmeaDataListener(&mListener); }
  void detach() { nfw::DeadReckoning::get()->detachDeadReckoningNmeaDataListener(&mListener); }
  static void feed() { deadreckoninghost::feed(makeReport(1, 1)); }
  static Strings logTexts() {
    return {"$GPRMC,083559.000,A,4717.1,N,00833.9,E,0.0,7.5,240394,3.1,W,A*1c\r\n", PUBX_TEXT};
  }
  static std::string sensorRecordData() {
    auto lReport = makeReport(0, 0);
    lReport.rmc.day = 25;
    return sensorData(lReport);
  }
  static char sourceOf(const std::string& nNote) {
    const auto lHas = [&](const char* npDate) { return nNote.find(npDate) != std::string::npos; };
    return lHas(",230394,") ? 'l' : lHas(",240394,") ? 'L' : lHas(",250394,") ? 'S' : '?';
  }

  DeadReckoningListener mListener;
};

const unsigned int RECORD_MS = 20, LEAD_STEP_MS = 200;

template <class Facade>
class SourcesTest : public testing::Test {
 protected:
  SourcesTest() {
    std::string lLog, lSensor;
    for (unsigned int lTime = 0; lTime < 60000; lTime += RECORD_MS) {
      for (const std::string& lText : Facade::logTexts()) lLog += logRecord(Facade::LOGGER_ID, lTime, lText);
      lSensor += sensorRecord(Facade::SENSOR_ID, 1, lTime, Facade::sensorRecordData());
    }
    writeFile(mLogPath, lLog);
    writeFile(mSensorPath, lSensor);
  }
  void begin() {
    ASSERT_TRUE(Facade::Service::get()->initialize());
    ASSERT_TRUE(mFacade.attach());
  }
  size_t heard(char nSource) const {
    size_t lCount = 0;
    for (const std::string& lNote : mNotes.all()) lCount += Facade::sourceOf(lNote) == nSource;
    return lCount;
  }
  /// Moves the clock only as fast as data comes: what is due is waited for, and so no recording comes to its end.
  bool pumpTo(char nSource, size_t nCount, bool nIsLive = true) {
    const auto lEnd = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    size_t lHeard = 0;
    for (unsigned int lStep = LEAD_STEP_MS; (lHeard = heard(nSource)) < nCount;
         lStep = lHeard > 0 ? RECORD_MS : lStep) {
      if (std::chrono::steady_clock::now() > lEnd) return false;
      if (nIsLive) Facade::feed();
      mClock.advance(lStep);
      mNotes.waitFor([&] { return heard(nSource) > lHeard; }, std::chrono::milliseconds(10));
    }
    return true;
  }
  /// All sources bring data: which of them arrives, behind what was queued at the switch? A thread that was just about
  /// to bring data then brings one more.
  std::string sources(char nExpected) {
    EXPECT_TRUE(pumpTo(nExpected, 1)) << nExpected;
    mFacade.detach();
    EXPECT_TRUE(mFacade.attach());
    mNotes.clear();
    EXPECT_TRUE(pumpTo(nExpected, 5)) << nExpected;
    std::string lHeard;
    for (const char lSource : {'l', 'L', 'S'}) {
      if (heard(lSource) > 1) lHeard += lSource;
    }
    return lHeard;
  }
  std::string line(const char* npText) const { return std::string(Facade::NAME) + "::initialize(): Can't " + npText; }
  static std::string sourceName(const char* npSource) { return std::string(Facade::NAME) + npSource + "::initialize"; }

  seams::CapturedLog mLog;
  seams::ManualClock mClock;
  TempDir mDir;
  const std::string mLogPath = mDir / "log", mSensorPath = mDir / "sensor";
  Notes mNotes;
  Facade mFacade{mNotes};
  LogServices mLogs;  // goes first, for it calls the others
};

using Facades = testing::Types<GnssFacade, DeadReckoningFacade>;
TYPED_TEST_SUITE(SourcesTest, Facades);

TYPED_TEST(SourcesTest, ALogReplayWinsOverASensorLogReplayWhichWinsOverLiveData) {
  this->begin();
  EXPECT_EQ("l", this->sources('l'));
  nfw::Logger& lLog = *nfw::Logger::get();
  nfw::SensorSysLoggerManager& lSensor = *nfw::SensorSysLoggerManager::get();
  const std::function<bool()> startLog = [&] { return lLog.startPlay(this->mLogPath.c_str()); };
  const std::function<bool()> stopLog = [&] { return lLog.stopPlay(); };
  const std::function<bool()> startSensor = [&] { return lSensor.startPlay(this->mSensorPath.c_str()); };
  const std::function<bool()> stopSensor = [&] { return lSensor.stopPlay(); };
  const struct {
    const char* mpName;
    std::function<bool()> mStep;
    char mSource;
  } STEPS[] = {
      {"a log replay", startLog, 'L'},
      {"its stop", stopLog, 'l'},
      {"a sensor log replay", startSensor, 'S'},
      {"its stop", stopSensor, 'l'},
      {"a sensor log replay", startSensor, 'S'},
      {"a log replay upon it", startLog, 'L'},
      {"the sensor log's stop below", stopSensor, 'L'},
      {"the log's stop", stopLog, 'l'},
      {"a log replay", startLog, 'L'},
      {"a sensor log replay below", startSensor, 'L'},
      {"the log's stop leaves the other", stopLog, 'S'},
      {"a log replay again", startLog, 'L'},
      {"its stop", stopLog, 'S'},
      {"the last stop", stopSensor, 'l'},
  };
  for (const auto& lStep : STEPS) {
    ASSERT_TRUE(lStep.mStep()) << lStep.mpName;
    EXPECT_EQ(std::string(1, lStep.mSource), this->sources(lStep.mSource)) << lStep.mpName;
  }
}

TYPED_TEST(SourcesTest, TheEndOfAReplayDoesNotGoBackToLiveData) {
  this->begin();
  writeFile(this->mLogPath, "");
  writeFile(this->mSensorPath, "");
  TypeParam::feed();
  ASSERT_TRUE(pump(this->mClock, [this] { return this->heard('l') == 1; }));  // and nothing more is on its way
  nfwtest::Player lPlayer(this->mNotes, "player");
  ASSERT_TRUE(nfw::Logger::get()->attachPlayer(&lPlayer));
  ASSERT_TRUE(nfw::Logger::get()->startPlay(this->mLogPath.c_str()));
  const auto lIsEnded = [this] {
    for (const std::string& lNote : this->mNotes.all()) {
      if (lNote.compare(0, 10, "player end") == 0) return true;
    }
    return false;
  };
  ASSERT_TRUE(pump(this->mClock, lIsEnded));
  TypeParam::Service::get()->receiveLogPlayEnd(0);
  TypeParam::Service::get()->receiveSysLogPlayEnd();
  this->mNotes.clear();
  TypeParam::feed();
  TypeParam::shutdown();  // hands on what is queued
  EXPECT_EQ(0U, this->heard('l'));
  nfw::Logger::get()->stopPlay();
  nfw::Logger::get()->detachPlayer(&lPlayer);
}

TYPED_TEST(SourcesTest, LivesFromInitializeToShutdownAndAgain) {
  using Service = typename TypeParam::Service;
  Service* const lpService = Service::get();
  EXPECT_EQ(lpService, Service::get());
  const std::string lAttachFails = std::string(TypeParam::ATTACH) + "::attachListener(): Can't send thread";
  EXPECT_FALSE(this->mFacade.attach());
  EXPECT_EQ(Strings{lAttachFails}, errors(this->mLog));
  TypeParam::shutdown();  // of what has not begun
  TypeParam::feed();
  this->mLog.clear();
  this->begin();
  EXPECT_FALSE(lpService->initialize());
  const std::string lNotStarted = std::string("Thread Start[") + TypeParam::THREAD + "]";
  EXPECT_EQ(Strings{lNotStarted}, errors(this->mLog));
  EXPECT_EQ("l", this->sources('l'));
  lpService->startLogPlay();
  lpService->startSysLogPlay();
  TypeParam::shutdown();
  lpService->startLogPlay();  // a late one
  TypeParam::shutdown();
  EXPECT_FALSE(this->mFacade.attach());
  this->mLog.clear();
  ASSERT_TRUE(lpService->initialize());  // its listeners are still there
  EXPECT_EQ("l", this->sources('l'));
  EXPECT_EQ(Strings{}, errors(this->mLog));
  Service::destroy();  // shuts down first
  TypeParam::feed();
  Service::destroy();
  this->begin();
  EXPECT_EQ("l", this->sources('l'));
}

TYPED_TEST(SourcesTest, SaysWhichStepFailsAndBeginsAnewAfterShutdown) {
  using Service = typename TypeParam::Service;
  using nfw::Logger;
  using nfw::SensorSysLoggerManager;
  const auto lPlayerFails = [](const char* npPlayer) {
    return std::string(npPlayer) + "initialize() nfw::attachPlayListener() false";
  };
  const struct {
    const char* mpName;
    std::function<void()> mBreak;
    Strings mLines;
  } CASES[] = {
      {"sensor player",
       [] { SensorSysLoggerManager::destroy(); },
       {lPlayerFails(TypeParam::SENSOR_PLAYER), this->line(this->sourceName("SysLogPlayer").c_str())}},
      {"log player",
       [] {
         Logger::destroy();
         SensorSysLoggerManager::get()->initialize();
       },
       {lPlayerFails(TypeParam::LOG_PLAYER), this->line(this->sourceName("LogPlayer").c_str())}},
      {"player of the logger",
       [] {
         Logger::destroy();
         Logger::initializeMaxPlayerNum(0);
         Logger::get()->initialize();
       },
       {this->line("Logger::attachPlayer")}},
      {"player of the sensor log",
       [] {
         SensorSysLoggerManager::destroy();
         SensorSysLoggerManager::get()->initialize();  // no room for players either
         Logger::destroy();
         Logger::initializeMaxPlayerNum(2);
         Logger::get()->initialize();
       },
       {this->line("SensorSysLoggerManager::attachPlayer")}},
  };
  for (const auto& lCase : CASES) {
    lCase.mBreak();
    this->mLog.clear();
    EXPECT_FALSE(Service::get()->initialize()) << lCase.mpName;
    EXPECT_EQ(lCase.mLines, errors(this->mLog)) << lCase.mpName;
    TypeParam::feed();  // its thread runs and its SDK calls, but no source is on
    TypeParam::shutdown();
  }
  {
    const seams::Failing lFailing(seams::THREAD_START);
    this->mLog.clear();
    EXPECT_FALSE(Service::get()->initialize());
    EXPECT_EQ(Strings{std::string("Thread Start[") + TypeParam::THREAD + "]"}, errors(this->mLog));
  }
  SensorSysLoggerManager::destroy();
  SensorSysLoggerManager::get()->initialize();
  this->mNotes.clear();
  this->begin();
  EXPECT_EQ("l", this->sources('l'));
}

TYPED_TEST(SourcesTest, WithoutALoggerIdOnlyTheSensorLogIsRecordedAndPlayed) {
  TypeParam::setLoggerId(nfw::NO_LOGGER_ID);
  TypeParam::Service::destroy();
  this->begin();
  this->mLogs.startRecord();
  TypeParam::feed();
  TypeParam::shutdown();
  this->mLogs.stopRecord();
  EXPECT_EQ(0U, parseLogRecords(readFile(this->mLogs.textFile())).size());
  EXPECT_NE("", readFile(this->mLogs.sensorFile()));
  ASSERT_TRUE(TypeParam::Service::get()->initialize());
  ASSERT_TRUE(nfw::SensorSysLoggerManager::get()->startPlay(this->mLogs.sensorFile().c_str()));
  EXPECT_EQ(1U, this->heard('l'));
  this->mNotes.clear();
  EXPECT_TRUE(this->pumpTo('l', 1, false)) << "as recorded";
  EXPECT_EQ(Strings{}, errors(this->mLog));
}

TYPED_TEST(SourcesTest, AThreadDoesNotStopItself) {
  this->begin();
  std::promise<void> lTried;
  bool lIsFirst = true;
  this->mFacade.mListener.mOnCall = [&] {
    if (!lIsFirst) return;
    lIsFirst = false;
    TypeParam::shutdown();
    lTried.set_value();
  };
  TypeParam::feed();
  lTried.get_future().wait();
  EXPECT_EQ(Strings{std::string("Thread Stop NG [") + TypeParam::THREAD + "]"}, errors(this->mLog));
  this->mLog.clear();
  TypeParam::Service::destroy();  // the thread stops first
  EXPECT_EQ(Strings{}, errors(this->mLog));
}

// The thread is in the callback of the listener that is called first. When it comes back nobody is called any more.
TYPED_TEST(SourcesTest, AServiceThatIsStuckInAListenerIsLeftBehindWhole) {
  using Service = typename TypeParam::Service;
  for (const bool lIsShutDown : {true, false}) {
    StuckCall lStuck;
    TypeParam lFirst(this->mNotes);
    lFirst.mListener.mOnCall = [&] { lStuck.enter(); };
    this->begin();
    ASSERT_TRUE(lFirst.attach());
    Service* const lpService = Service::get();
    TypeParam::feed();
    lStuck.awaitEntry();
    {
      const seams::Failing lNoTime(seams::THREAD_STOP);
      if (lIsShutDown) TypeParam::shutdown();
      Service::destroy();
      EXPECT_EQ(1U, lNoTime.hits()) << "waited for once";
    }
    EXPECT_NE(lpService, Service::get());
    this->begin();
    EXPECT_TRUE(lStuck.leave());
    EXPECT_EQ(1U, this->mNotes.count());
    EXPECT_EQ("l", this->sources('l'));
    EXPECT_EQ(Strings{std::string("Thread Stop TIMEOUT [") + TypeParam::THREAD + "]"}, errors(this->mLog));
    Service::destroy();
    this->mNotes.clear(), this->mLog.clear();
  }
}

// Data waits for a listener that blocks, recording with it; what the queue has no room for is named, and both go on
// when the listener returns.
TYPED_TEST(SourcesTest, ABlockedListenerDelaysRecordingButDoesNotEndIt) {
  this->begin();
  this->mLogs.startRecord();
  std::promise<void> lInside, lGo;
  bool lIsFirst = true;
  this->mFacade.mListener.mOnCall = [&] {
    if (!lIsFirst) return;
    lIsFirst = false;
    lInside.set_value();
    lGo.get_future().wait();
  };
  TypeParam::feed();
  lInside.get_future().wait();
  const size_t SENT = 300;
  for (size_t i = 0; i < SENT; ++i) TypeParam::feed();
  size_t lLost = 0, lUnrecorded = 0;
  for (const std::string& lLine : errors(this->mLog)) {
    lLost += lLine.find("dispatch(): Can't send thread") != std::string::npos;
    lUnrecorded += lLine.find("Can't post thread: MsgId=-2147480574 ") != std::string::npos;
  }
  EXPECT_LT(0U, lLost);
  EXPECT_EQ(2 * SENT - lLost - lUnrecorded, 256U - 1);  // the first record was queued before
  lGo.set_value();
  this->mFacade.detach();
  ASSERT_TRUE(this->mFacade.attach());
  TypeParam::shutdown();
  ASSERT_TRUE(TypeParam::Service::get()->initialize());
  TypeParam::feed();
  TypeParam::shutdown();
  this->mLogs.stopRecord();
  size_t lRecorded = 0;
  for (const auto& lRecord : parseLogRecords(readFile(this->mLogs.textFile()))) {
    lRecorded += TypeParam::sourceOf(lRecord.mData) == 'l';
  }
  EXPECT_EQ(SENT + 2 - lUnrecorded, lRecorded);
}

TEST(FacadeTest, TwoServicesDoNotShareALoggerId) {
  seams::CapturedLog lLog;
  LogServices lLogs;
  nfw::DeadReckoning::initializeLoggerId(GNSS_LOGGER_ID);
  EXPECT_TRUE(nfw::Gnss::get()->initialize());
  EXPECT_FALSE(nfw::DeadReckoning::get()->initialize());
  EXPECT_EQ((Strings{"Logger::attachPlayListenerInternal(): Duplicate Id=20",
                     "nfw::DeadReckoningLoggerPlayer:initialize() nfw::attachPlayListener() false",
                     "DeadReckoning::initialize(): Can't DeadReckoningLogPlayer::initialize"}),
            errors(lLog));
}

TEST(FacadeTest, TheGeodeticSystemIsWgs84OrTokyo) {
  seams::CapturedLog lLog;
  LogServices lLogs;
  Notes lNotes;
  GnssListener lListener(lNotes);
  nfw::Gnss::initializeGpsSdkGeodeticSystemType(1);
  ASSERT_TRUE(nfw::Gnss::get()->initialize());
  ASSERT_TRUE(lListener.attachTo(*nfw::Gnss::get()));
  feedText(GGA_TEXT, WGS_84_GPS), feedText(VTG_TEXT, TOKYO_GPS);
  gpshost::feed(GLL_RECORD, WGS_84_GPS), gpshost::feed(ZDA_RECORD, TOKYO_GPS);
  ASSERT_TRUE(lNotes.waitFor(2));
  EXPECT_EQ((Strings{VTG_TEXT, "ZDA 1  8 27 10 0  2002 9 16 0 0"}), lNotes.all());
  for (const int lType : {2, -1}) {
    nfw::Gnss::destroy();
    nfw::Gnss::initializeGpsSdkGeodeticSystemType(lType);
    lLog.clear();
    EXPECT_FALSE(nfw::Gnss::get()->initialize());
    EXPECT_EQ((Strings{"nfw::GpsSdkPlayer:initialize() Invalid Geodetic SYstem[" + std::to_string(lType) + "]",
                       "Gnss::initialize(): Can't GpsSdkPlayer::initialize"}),
              errors(lLog));
  }
}

}  // namespace
