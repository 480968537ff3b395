// Both positioning services on live data and on both replays, switched while the SDKs call.
#include <atomic>
#include <cstdlib>

#include "GpsHost.h"
#include "NaviAppFramework.h"
#include "NfwDeadReckoningNmeaDataListener.h"
#include "NfwLogger.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "NfwSensorSysLoggerManager.h"
#include "Scenarios.h"
#include "ZTSDeadReckoningHost.h"

namespace {

const int GNSS_ID = 20, DEAD_RECKONING_ID = 21;
enum Source { LIVE, SENSOR, TEXT };

/// Sentences say where they come from: live and text ones count, a sensor log's give back what its records hold.
class Hearer : public nfw::NmeaDataListener, public nfw::DeadReckoningNmeaDataListener {
 public:
  void onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) override {
    mPlace.called("a listener of sentences");
    const std::string lText(reinterpret_cast<const char*>(npData), nSize);
    const Source lSource = lText.compare(0, 6, "$GPVTG") == 0 ? SENSOR : lText[7] == 'T' ? TEXT : LIVE;
    const int lNumber = lSource == SENSOR ? std::atoi(lText.c_str() + 7) : std::atoi(lText.c_str() + 9);
    lSource == LIVE ? hearLive(lNumber) : hearReplay(lSource, lNumber);
  }
  void onNotifyDeadReckoningNmeaData(unsigned char const*, unsigned int) override {
    mPlace.called("a reckoned listener");
    mOnReckoned();
  }
  std::function<void()> mOnReckoned = [] {};
  enum Phase { LIVE_ONLY, REPLAYING, STOPPING };
  void begin(Phase nPhase) {
    mPhase = nPhase;
    if (nPhase == LIVE_ONLY) mIsReplayed = mIsText = false, mOrder[SENSOR].begin(), mOrder[TEXT].begin();
  }
  Place mPlace;

 private:
  void hearLive(int nNumber) {
    schedule::require(mPhase != REPLAYING || !mIsReplayed, "live data is not heard between the records of a replay");
    mOrder[LIVE].see(nNumber);
  }
  void hearReplay(Source nSource, int nNumber) {
    schedule::require(mPhase != LIVE_ONLY, "no record is heard when no replay runs");
    schedule::require(nSource == TEXT || !mIsText || mPhase == STOPPING,
                      "the data log is heard in place of the sensor's");
    mIsReplayed = true;
    mIsText = nSource == TEXT;
    mOrder[nSource].see(nNumber);
  }
  Phase mPhase = LIVE_ONLY;
  bool mIsReplayed = false, mIsText = false;
  Ascending mOrder[3] = {Ascending("live data"), Ascending("the sensor log"), Ascending("the data log")};
};

void writeLogs() {
  std::string lText, lSensor;
  unsigned char lBytes[60] = {};
  for (int i = 1; i <= 6; ++i) {
    const unsigned int lTime = static_cast<unsigned int>(i) * 20;
    lText += nfwtest::logRecord(GNSS_ID, lTime, "$GPTXT,T," + std::to_string(i) + ",\r\n");
    const std::string lSentence = "$GPVTG," + std::to_string(i) + ".52,T,76.50,M,0.004,N,0.008,K,A*2c\r\n";
    const int lSize = nfw::NmeaBinaryLogDataVersion1().convertFromNmeaSentence(
        reinterpret_cast<const unsigned char*>(lSentence.data()), static_cast<unsigned int>(lSentence.size()), lBytes,
        sizeof lBytes);
    lSensor +=
        nfwtest::sensorRecord(0, 1, lTime, std::string(reinterpret_cast<char*>(lBytes), static_cast<size_t>(lSize)));
  }
  writeFile("text", lText);
  writeFile("sensor", lSensor);
}

void replay(Hearer& nHearer) {
  nfw::Logger& lLogger = *nfw::Logger::get();
  nfw::SensorSysLoggerManager& lSensor = *nfw::SensorSysLoggerManager::get();
  const unsigned int lWhich = 1 + schedule::pick(3);
  nHearer.begin(Hearer::REPLAYING);
  if ((lWhich & 1) != 0) schedule::require(lSensor.startPlay("sensor"), "a replay of the sensor log begins");
  if ((lWhich & 2) != 0) schedule::require(lLogger.startPlay("text"), "a replay of the data log begins");
  schedule::sleepMs(schedule::pick(3) == 0 ? 2000 : 1000 + schedule::pick(150));
  nHearer.begin(Hearer::STOPPING);
  const schedule::Within lWithin("stopping the replays", 30000);
  lLogger.stopPlay();
  lSensor.stopPlay();
  schedule::sleepMs(1);  // what was queued is heard
  nHearer.begin(Hearer::LIVE_ONLY);
}

/// The services go in any order, in the midst of a replay too, while the SDKs call.
void end(Hearer& nHearer) {
  const schedule::Within lWithin("the end of the services", 30000);
  if (schedule::flip()) nHearer.begin(Hearer::STOPPING), nfw::Logger::get()->startPlay("text");
  schedule::sleepMs(schedule::pick(1100));
  if (schedule::pick(3) == 0) nfw::Gnss::get()->shutdown();
  std::vector<void (*)()> lEnds = {&nfw::Gnss::destroy, &nfw::DeadReckoning::destroy, &nfw::Logger::destroy,
                                   &nfw::SensorSysLoggerManager::destroy};
  for (; !lEnds.empty(); schedule::sleepMs(schedule::pick(50))) {
    const auto lNext = lEnds.begin() + schedule::pick(static_cast<unsigned int>(lEnds.size()));
    (*lNext)();
    if (*lNext == &nfw::Gnss::destroy) nHearer.mPlace.forget();
    lEnds.erase(lNext);
  }
}

}  // namespace

void facades() {
  writeLogs();
  nfw::DeadReckoning::initializeMaxDeadReckoningNmeaDataListenerNum(1);
  nfw::DeadReckoning::initializeLoggerId(DEAD_RECKONING_ID);
  nfw::Gnss::initializeMaxNmeaDataListenerNum(1);
  nfw::Gnss::initializeLoggerId(GNSS_ID);
  startLogs();
  nfw::Gnss* const lpGnss = nfw::Gnss::get();
  nfw::DeadReckoning* const lpReckoning = nfw::DeadReckoning::get();
  schedule::require(lpGnss->initialize() && lpReckoning->initialize(), "positioning starts");
  Hearer lHearer, lReckoned;
  lHearer.mPlace.attach([&] { return lpGnss->attachNmeaDataListener(&lHearer); });
  const auto lCome = [&] { return lpReckoning->attachDeadReckoningNmeaDataListener(&lReckoned); };
  lReckoned.mPlace.attach(lCome);
  lReckoned.mOnReckoned = [&] {  // it leaves, and comes back
    if (schedule::pick(8) != 0) return;
    lReckoned.mPlace.detach([&] { lpReckoning->detachDeadReckoningNmeaDataListener(&lReckoned); });
    lReckoned.mPlace.attach(lCome);
  };
  {
    std::atomic<bool> lIsOver{false};
    Crew lCrew;
    lCrew.add([&] {
      for (int i = 0; !lIsOver; ++i, schedule::sleepMs(40)) {
        const std::string lText = "$GPTXT,L," + std::to_string(i) + ",\r\n";
        gpshost::feedSentence(lText.data(), static_cast<unsigned int>(lText.size()));
      }
    });
    lCrew.add([&] {
      for (; !lIsOver; schedule::sleepMs(90)) deadreckoninghost::feed(ZTSDeadReckoningDef::DRG_LOCATION_INFO());
    });
    const unsigned int lReplays = schedule::pick(3);
    for (unsigned int i = 0; i < lReplays; ++i) replay(lHearer);
    end(lHearer);
    lIsOver = true;
  }
}
