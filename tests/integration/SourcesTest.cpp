// What both positioning services do alike: one source at a time, and a life that may be cut short anywhere.
#include <future>
#include <set>

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

template <class Facade>
class SourcesTest : public testing::Test {
 protected:
  SourcesTest() {
    std::string lLog, lSensor;
    for (unsigned int i = 0, lTime = 0; i < 100; ++i, lTime += STEP_MS) {
      for (const std::string& lText : Facade::logTexts()) lLog += logRecord(Facade::LOGGER_ID, lTime, lText);
      lSensor += sensorRecord(Facade::SENSOR_ID, 1, lTime, Facade::sensorRecordData());
    }
    writeFile(mLogPath, lLog);
    writeFile(mSensorPath, lSensor);
  }
  void attachPlayers() {
    ASSERT_TRUE(nfw::Logger::get()->attachPlayer(&mPlayer));
    ASSERT_TRUE(nfw::SensorSysLoggerManager::get()->attachPlayer(&mSysPlayer));
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
  /// Live data, and time for the next record of each replay: one of the source arrives.
  bool next(char nSource, unsigned int nStepMs) {
    const size_t lBefore = heard(nSource);
    mClock.advance(nStepMs);
    Facade::feed();
    for (int i = 0; i < 3000 && heard(nSource) == lBefore; ++i) {  // a replay that begins takes a second of its own
      if (!mNotes.waitFor(mNotes.count() + 1, std::chrono::milliseconds(10))) mClock.advance(500);
    }
    return heard(nSource) > lBefore;
  }
  /// All sources bring data: which of them arrives, from the first of that source on? What was queued before it was
  /// switched on comes before it, and when this returns nothing of it is on its way.
  std::string sources(char nExpected, bool nIsNew = false) {
    mNotes.clear();
    for (int i = 0; i < 3; ++i) {
      if (!next(nExpected, nIsNew && i == 0 ? 0 : STEP_MS)) return "nothing";
    }
    std::string lHeard;
    for (const std::string& lNote : mNotes.all()) lHeard += Facade::sourceOf(lNote);
    const std::set<char> lSources(lHeard.begin() + static_cast<long>(lHeard.find(nExpected)), lHeard.end());
    lHeard.assign(lSources.begin(), lSources.end());
    return lHeard.erase(0, lHeard.find_first_not_of('?'));
  }
  std::string line(const char* npText) const { return std::string(Facade::NAME) + "::initialize(): Can't " + npText; }
  static std::string sourceName(const char* npSource) { return std::string(Facade::NAME) + npSource + "::initialize"; }

  static const unsigned int STEP_MS = 10000000;

  seams::CapturedLog mLog;
  seams::ManualClock mClock;
  TempDir mDir;
  const std::string mLogPath = mDir / "log", mSensorPath = mDir / "sensor";
  Notes mNotes, mSwitches;
  Facade mFacade{mNotes};
  Player mPlayer{mSwitches, "log"};
  SysPlayer mSysPlayer{mSwitches};
  LogServices mLogs;  // goes first, for it calls the others
};

using Facades = testing::Types<GnssFacade, DeadReckoningFacade>;
TYPED_TEST_SUITE(SourcesTest, Facades);

// The players are told behind the service, for they were there before it: a switch is made when they have been told.
TYPED_TEST(SourcesTest, ALogReplayWinsOverASensorLogReplayWhichWinsOverLiveData) {
  nfw::Logger& lLog = *nfw::Logger::get();
  nfw::SensorSysLoggerManager& lSensor = *nfw::SensorSysLoggerManager::get();
  this->attachPlayers();
  this->begin();
  EXPECT_EQ("l", this->sources('l'));
  // A replay of the log or of the sensor log starts or stops, and what is heard then.
  for (const std::string lStep : {"L+ L", "L- l", "S+ S", "S- l", "S+ S", "L+ L", "S- L", "L- l", "L+ L", "S+ L",
                                  "L- S", "S- l", "S+ S", "L+ L", "L- S", "S- l"}) {
    const size_t lBefore = this->mSwitches.count();
    const bool lIsStart = lStep[1] == '+';
    const bool lIsDone = lStep[0] == 'L'
                             ? (lIsStart ? lLog.startPlay(this->mLogPath.c_str()) : lLog.stopPlay())
                             : (lIsStart ? lSensor.startPlay(this->mSensorPath.c_str()) : lSensor.stopPlay());
    ASSERT_TRUE(lIsDone) << lStep;
    ASSERT_TRUE(this->mSwitches.waitFor(lBefore + 1)) << lStep;
    EXPECT_EQ(lStep.substr(3), this->sources(lStep[3], lIsStart && lStep[0] == lStep[3])) << lStep;
  }
}

TYPED_TEST(SourcesTest, TheEndOfAReplayDoesNotGoBackToLiveData) {
  writeFile(this->mLogPath, "");
  writeFile(this->mSensorPath, "");
  nfw::Logger& lLog = *nfw::Logger::get();
  nfw::SensorSysLoggerManager& lSensor = *nfw::SensorSysLoggerManager::get();
  this->attachPlayers();
  for (const bool lIsLog : {true, false}) {
    this->begin();
    this->mSwitches.clear();
    ASSERT_TRUE(lIsLog ? lLog.startPlay(this->mLogPath.c_str()) : lSensor.startPlay(this->mSensorPath.c_str()));
    ASSERT_TRUE(pump(this->mClock, [&] { return this->mSwitches.count() == 2; }));  // start and end
    TypeParam::Service::get()->receiveLogPlayEnd(0);
    TypeParam::Service::get()->receiveSysLogPlayEnd();
    TypeParam::feed();
    TypeParam::shutdown();  // hands on what is queued
    EXPECT_EQ(0U, this->heard('l')) << lIsLog;
    lIsLog ? lLog.stopPlay() : lSensor.stopPlay();
  }
}

TYPED_TEST(SourcesTest, LivesFromInitializeToShutdownAndAgain) {
  using Service = typename TypeParam::Service;
  Service* const lpService = Service::get();
  EXPECT_EQ(lpService, Service::get());
  EXPECT_FALSE(this->mFacade.attach());
  EXPECT_EQ(Strings{TypeParam::ATTACH + std::string("::attachListener(): Can't send thread")}, errors(this->mLog));
  TypeParam::shutdown();  // of what has not begun
  TypeParam::feed();
  this->mLog.clear();
  this->begin();
  EXPECT_FALSE(lpService->initialize());
  EXPECT_EQ(Strings{std::string("Thread Start[") + TypeParam::THREAD + "]"}, errors(this->mLog));
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
  // Both log services anew, each with room for so many players; below 0 it is not initialized.
  const auto restart = [](int nSensorRoom, int nLogRoom) {
    SensorSysLoggerManager::destroy();
    Logger::destroy();
    Logger::initializeMaxPlayerNum(static_cast<unsigned int>(nSensorRoom));  // of both
    if (nSensorRoom >= 0) SensorSysLoggerManager::get()->initialize();
    Logger::initializeMaxPlayerNum(static_cast<unsigned int>(nLogRoom));
    if (nLogRoom >= 0) Logger::get()->initialize();
  };
  const std::tuple<int, int, Strings> CASES[] = {
      {-1, 2, {lPlayerFails(TypeParam::SENSOR_PLAYER), this->line(this->sourceName("SysLogPlayer").c_str())}},
      {2, -1, {lPlayerFails(TypeParam::LOG_PLAYER), this->line(this->sourceName("LogPlayer").c_str())}},
      {2, 0, {this->line("Logger::attachPlayer")}},
      {0, 2, {this->line("SensorSysLoggerManager::attachPlayer")}},
  };
  for (const auto& [lSensorRoom, lLogRoom, lLines] : CASES) {
    restart(lSensorRoom, lLogRoom);
    this->mLog.clear();
    EXPECT_FALSE(Service::get()->initialize()) << lLines.back();
    EXPECT_EQ(lLines, errors(this->mLog));
    TypeParam::feed();  // its thread runs and its SDK calls, but no source is on
    TypeParam::shutdown();
  }
  {
    const seams::Failing lFailing(seams::THREAD_START);
    this->mLog.clear();
    EXPECT_FALSE(Service::get()->initialize());
    EXPECT_EQ(Strings{std::string("Thread Start[") + TypeParam::THREAD + "]"}, errors(this->mLog));
  }
  restart(2, 2);
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
  EXPECT_TRUE(pump(this->mClock, [this] { return this->heard('l') >= 2; }));  // live first, then as recorded
  EXPECT_EQ(Strings{}, errors(this->mLog));
}

// The thread is in the callback of the listener that is called first. When it comes back nobody is called any more.
TYPED_TEST(SourcesTest, AServiceThatIsStuckInAListenerIsLeftBehindWhole) {
  using Service = typename TypeParam::Service;
  enum { SHUT_DOWN, SHUT_DOWN_FROM_WITHIN, DESTROYED };
  for (const int lWay : {SHUT_DOWN, SHUT_DOWN_FROM_WITHIN, DESTROYED}) {
    StuckCall lStuck;
    TypeParam lFirst(this->mNotes);
    Strings lLines{std::string("Thread Stop TIMEOUT [") + TypeParam::THREAD + "]"};
    if (lWay == SHUT_DOWN_FROM_WITHIN) lLines.insert(lLines.begin(), "Thread Stop NG" + lLines[0].substr(19));
    lFirst.mListener.mOnCall = [&] {
      if (lWay == SHUT_DOWN_FROM_WITHIN) TypeParam::shutdown();  // a thread does not stop itself
      lStuck.enter();
    };
    this->begin();
    ASSERT_TRUE(lFirst.attach());
    Service* const lpService = Service::get();
    TypeParam::feed();
    lStuck.awaitEntry();
    {
      const seams::Failing lNoTime(seams::THREAD_STOP);
      if (lWay == SHUT_DOWN) TypeParam::shutdown();
      Service::destroy();
      EXPECT_EQ(1U, lNoTime.hits()) << "waited for once";
    }
    EXPECT_NE(lpService, Service::get());
    this->begin();
    EXPECT_TRUE(lStuck.leave());
    EXPECT_EQ(1U, this->mNotes.count());
    EXPECT_EQ("l", this->sources('l'));
    EXPECT_EQ(lLines, errors(this->mLog));
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

TEST(FacadeTest, AListenerLeavesOneKindAtATime) {
  seams::CapturedLog lLog;
  LogServices lLogs;
  Notes lNotes;
  AnyListener lListener(lNotes);
  nfw::Gnss& lGnss = *nfw::Gnss::get();
  const auto lLeave = [&](const std::string& nKind, auto npDetach) {
    lNotes.clear();
    ASSERT_TRUE(lGnss.initialize() && lListener.attachTo(lGnss));
    (lGnss.*npDetach)(&lListener);
    feedEpoch();
    lGnss.shutdown();  // hands on what is queued
    EXPECT_EQ(EPOCH_NOTE_NUM - (nKind == "$" ? 10 : 1), lNotes.count());
    EXPECT_EQ(std::string::npos, kindsOf(lNotes).find(nKind)) << nKind;
  };
  lLeave("$", &nfw::Gnss::detachNmeaDataListener);
  lLeave("GGA ", &nfw::Gnss::detachParsedGgaDataListener);
  lLeave("GLL ", &nfw::Gnss::detachParsedGllDataListener);
  lLeave("GSA ", &nfw::Gnss::detachParsedGsaDataListener);
  lLeave("GSV ", &nfw::Gnss::detachParsedGsvDataListener);
  lLeave("VTG ", &nfw::Gnss::detachParsedVtgDataListener);
  lLeave("ZDA ", &nfw::Gnss::detachParsedZdaDataListener);
  lLeave("RMC ", &nfw::Gnss::detachParsedRmcDataListener);
  lLeave("PUBX ", &nfw::Gnss::detachParsedPubxDataListener);
  lLeave("NMEA ", &nfw::Gnss::detachParsedNmeaDataListener);
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
  gpshost::feed(GPGLL{}, WGS_84_GPS), gpshost::feed(GPZDA{1, {8, 27, 10, 0}, {}, 0, 0}, TOKYO_GPS);
  ASSERT_TRUE(lNotes.waitFor(2));
  EXPECT_EQ((Strings{VTG_TEXT, "ZDA 1 8 27 10"}), lNotes.all());
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
