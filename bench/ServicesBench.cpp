// The whole road of a sentence: from the SDK's callback to the listeners and into both logs, beside its parts.
// NFW_BENCH_REAL_TIME=1 gives the framework's threads real-time priorities, as nfw-drive does where it may.
#include <unistd.h>

#include <condition_variable>
#include <cstring>
#include <fstream>
#include <mutex>

#include "BenchSupport.h"
#include "Gps.h"
#include "GpsHost.h"
#include "NaviAppFramework.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "NfwSensorSysLoggerManager.h"
#include "SysLogServiceHost.h"
#include "utl/ThreadHost.h"

namespace {

const char SENTENCE[] = "$GPGGA,092725.000,4717.11399,N,00833.91590,E,1,08,1.01,499.6,M,48.0,M,,*6b\r\n";
const unsigned int SIZE = sizeof SENTENCE - 1;
const int LOGGER_ID = 20;
const int BURST = 100;  // sentences that the queue takes without a loss: two messages each
const int LATENCIES = 500;

/// A message as large as that of the raw dispatcher.
class BytesMsg : public utl::Msg {
 public:
  explicit BytesMsg(unsigned int nSize) : utl::Msg(2), mSize(nSize) {}
  bool storeDataTo(utl::MsgDataBroker& nBroker) const override { return nBroker.writeBytes(mBytes, mSize); }
  bool restoreDataFrom(utl::MsgDataBroker& nBroker) override { return nBroker.readBytes(mBytes, mSize); }

 private:
  const unsigned int mSize;
  unsigned char mBytes[260] = {};
};

/// Registered with the SDK before the service: its callback marks the moment in which the service's is due.
class CallbackMark : public GpsNmeaListener {
 public:
  void notifyReceiveNmeaSentence(char const* /*npSentence*/, unsigned int /*nSize*/) override {
    mAtNs = bench::nowNs();
  }
  int64_t mAtNs = 0;
};

/// Notes the moment of the call, as a listener and as a handler that restores its message.
class Arrival : public nfw::NmeaDataListener, public utl::ThreadMsgListener {
 public:
  void onNotifyNmeaData(unsigned char const* /*npData*/, unsigned int /*nSize*/) override { mAtNs = bench::nowNs(); }
  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) override {
    BytesMsg lMsg(260);
    lMsg.restoreFrom(nMsg);
    mAtNs = bench::nowNs();
  }
  /// Nanoseconds from the moment that the step returns to the call.
  template <class Step>
  double after(Step nStep) {
    mAtNs = 0;
    const int64_t lStart = nStep();
    while (mAtNs.load() == 0) usleep(10);
    return static_cast<double>(mAtNs.load() - lStart);
  }

 private:
  std::atomic<int64_t> mAtNs{0};
};

class Counter : public nfw::NmeaDataListener {
 public:
  void onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) override { mSum += npData[nSize - 1]; }
  volatile unsigned long mSum = 0;
};

/// Restores its messages, as every handler does.
class Receiver : public utl::ThreadMsgListener {
 public:
  explicit Receiver(unsigned int nSize) : mMsg(nSize) {}
  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) override { mMsg.restoreFrom(nMsg); }

 private:
  BytesMsg mMsg;
};

double processNs() { return static_cast<double>(bench::clockNs(CLOCK_PROCESS_CPUTIME_ID)); }

void feed() { gpshost::feedSentence(SENTENCE, SIZE); }

/// The bare road: what the two messages of a sentence cost without a service around them.
class Road {
 public:
  explicit Road(utl::MsgDrivenSharedThread& nThread) : mThread(nThread), mSmall(134), mLarge(260) {}
  void post() {
    mThread.postMsg(&mLarge, BytesMsg(260));
    mThread.postMsg(&mSmall, BytesMsg(134));
  }
  void settle() { mThread.sendMsgSync(&mSmall, BytesMsg(134)); }

 private:
  utl::MsgDrivenSharedThread& mThread;
  Receiver mSmall, mLarge;
};

/// Wakes who waits for the end of a burst.
class Tally : public nfw::NmeaDataListener {
 public:
  void onNotifyNmeaData(unsigned char const* /*npData*/, unsigned int /*nSize*/) override {
    if (++mCalls < BURST) return;
    std::lock_guard<std::mutex> lLock(mMutex);
    mIsThrough = true;
    mChanged.notify_one();
  }
  void wait() {
    std::unique_lock<std::mutex> lLock(mMutex);
    mChanged.wait(lLock, [this] { return mIsThrough; });
    mIsThrough = false;
    mCalls = 0;
  }

 private:
  int mCalls = 0;
  std::mutex mMutex;
  std::condition_variable mChanged;
  bool mIsThrough = false;
};

/// A listener that does not return until it is let go.
class Held : public nfw::NmeaDataListener {
 public:
  void onNotifyNmeaData(unsigned char const* /*npData*/, unsigned int /*nSize*/) override {
    std::unique_lock<std::mutex> lLock(mMutex);
    mIsInside = true;
    mChanged.notify_all();
    mChanged.wait(lLock, [this] { return mIsFree; });
  }
  void await() {
    std::unique_lock<std::mutex> lLock(mMutex);
    mChanged.wait(lLock, [this] { return mIsInside; });
  }
  void letGo() {
    const std::lock_guard<std::mutex> lLock(mMutex);
    mIsFree = true;
    mChanged.notify_all();
  }

 private:
  std::mutex mMutex;
  std::condition_variable mChanged;
  bool mIsInside = false, mIsFree = false;
};

void printMemory(const char* npWhen) {
  std::ifstream lStatus("/proc/self/status");
  for (std::string lLine; std::getline(lStatus, lLine);) {
    if (lLine.compare(0, 6, "VmRSS:") == 0) std::printf("%-46s %s\n", npWhen, lLine.c_str() + 6);
  }
}

/// The first time that a listener keeps its thread: every kind of message waits, until the queue takes no more.
void benchFirstBacklog() {
  bench::Table lTable("The first backlog, up to the queue's length");
  const char* const EPOCH[] = {
      SENTENCE,
      "$GPGLL,4717.11399,N,00833.91590,E,092725.000,A,A*53\r\n",
      "$GPGSA,A,3,23,29,07,08,09,18,26,28,,,,,1.94,1.18,1.54*0D\r\n",
      "$GPGSV,3,1,10,23,38,230,44,29,71,156,47,07,29,116,41,08,09,081,36*7F\r\n",
      "$GPGSV,3,2,10,10,07,189,,05,05,220,,09,34,274,42,18,25,309,44*72\r\n",
      "$GPGSV,3,3,10,26,82,187,47,28,43,056,46*77\r\n",
      "$GPRMC,092725.000,A,4717.11399,N,00833.91590,E,0.004,77.52,091202,,,A*5E\r\n",
      "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A*06\r\n",
  };
  const PARSE_NMEA lAll = {};
  Held lHeld;
  nfw::Gnss::get()->attachNmeaDataListener(&lHeld);
  feed();
  lHeld.await();
  const unsigned long lBefore = bench::allocations();
  for (int i = 0; i < 14; ++i) {  // of 18 messages each
    for (const char* npSentence : EPOCH) {
      gpshost::feedSentence(npSentence, static_cast<unsigned int>(strlen(npSentence)));
    }
    gpshost::feed(lAll.gsv);
    gpshost::feed(lAll);
  }
  lTable.value("allocations", static_cast<double>(bench::allocations() - lBefore), 0, "");
  lHeld.letGo();
  nfw::Gnss::get()->detachNmeaDataListener(&lHeld);
  printMemory("resident behind it");
}

void benchLatency(utl::MsgDrivenSharedThread& nThread, const CallbackMark& nMark) {
  bench::Table lTable(
      "SDK callback to a listener / a post to a handler, both logs recording; the aims are with NFW_BENCH_REAL_TIME "
      "set");
  Arrival lListener, lHandler;
  nfw::Gnss::get()->attachNmeaDataListener(&lListener);
  std::vector<double> lRoad, lPost;
  const auto lMedian = [](Arrival& nArrival, std::vector<double>* npAll, auto nStep) {
    std::vector<double> lSome;
    for (int i = 0; i < LATENCIES / 10; ++i) {
      lSome.push_back(nArrival.after(nStep));
      npAll->push_back(lSome.back());
      usleep(200);
    }
    return bench::median(lSome);
  };
  lTable.ratio(
      "one listener, median", [&] { return lMedian(lListener, &lRoad, [&] { return feed(), nMark.mAtNs; }); },
      [&] {
        return lMedian(lHandler, &lPost, [&] {
          const int64_t lStart = bench::nowNs();
          nThread.postMsg(&lHandler, BytesMsg(260));
          return lStart;
        });
      },
      1.3);
  for (std::vector<double>* lpAll : {&lRoad, &lPost}) std::sort(lpAll->begin(), lpAll->end());
  const auto lP99 = [](const std::vector<double>& n) { return n[n.size() * 99 / 100]; };
  std::printf("%-46s %12.1f %12.1f\n", "99 %", lP99(lRoad), lP99(lPost));
  lTable.value("99 % / 99 % of the posts", lP99(lRoad) / lP99(lPost), 2, "");
  nfw::Gnss::get()->detachNmeaDataListener(&lListener);
}

/// Processor time of the whole process, a sentence.
template <class Burst>
double perSentence(Burst nBurst) {
  const double lStart = processNs();
  for (int i = 0; i < 5; ++i) nBurst();
  return (processNs() - lStart) / (5 * BURST);
}

/// What recording a sentence comes to, on one thread.
void record(nfw::NmeaBinaryLogDataVersion1& nConverter) {
  unsigned char lRecord[60] = {};
  const int lSize = nConverter.convertFromNmeaSentence(reinterpret_cast<const unsigned char*>(SENTENCE), SIZE, lRecord,
                                                       sizeof lRecord);
  nfw::Logger::write(LOGGER_ID, SENTENCE, SIZE);
  nfw::SensorSysLoggerManager::write(0, 1, lRecord, static_cast<unsigned int>(lSize));
}

void benchRecording(utl::MsgDrivenSharedThread& nThread) {
  bench::Table lTable("Processor time of a sentence, both logs recording / the sum of its parts");
  Road lBare(nThread);
  Tally lTally;
  Counter lCounters[9];
  nfw::Gnss* const lpGnss = nfw::Gnss::get();
  nfw::NmeaBinaryLogDataVersion1 lConverter;
  const auto lRoad = [&] {
    return perSentence([&] {
      for (int i = 0; i < BURST; ++i) feed();
      lTally.wait();
    });
  };
  const auto lParts = [&] {
    return perSentence([&] {
      for (int i = 0; i < BURST; ++i) lBare.post();
      lBare.settle();
      for (int i = 0; i < BURST; ++i) record(lConverter);
    });
  };
  lpGnss->attachNmeaDataListener(&lTally);  // called last
  lTable.ratio("1 listener", lRoad, lParts, 1.3, 31);
  for (Counter& lCounter : lCounters) lpGnss->attachNmeaDataListener(&lCounter);
  lTable.ratio("10 listeners", lRoad, lParts, 1.3, 31);
  const unsigned long lBefore = bench::allocations();
  lRoad();
  lTable.value("allocations in 500 sentences", static_cast<double>(bench::allocations() - lBefore), 0, "");
  const int64_t lStart = bench::nowNs();
  for (int i = 0; i < 10; ++i) lRoad();
  std::printf("%-46s %12.0f\n", "sentences a second",
              10.0 * 5 * BURST * 1e9 / static_cast<double>(bench::nowNs() - lStart));
  for (Counter& lCounter : lCounters) lpGnss->detachNmeaDataListener(&lCounter);
  lpGnss->detachNmeaDataListener(&lTally);
}

}  // namespace

int main() {
  char lDirectory[] = "/tmp/nfwbench_XXXXXX";
  if (mkdtemp(lDirectory) == nullptr) return 1;
  const std::string lDir = lDirectory;
  threadhost::setRealTimePriorities(std::getenv("NFW_BENCH_REAL_TIME") != nullptr);
  const nfw::MsgLogInfoMap lNames(1, true);
  nfw::Config lConfig;
  lConfig.pMsgLogInfoMap = &lNames;
  nfw::initializeNaviAppFramework(lConfig);
  nfw::Logger::initializeMaxPlayerNum(2);
  nfw::Logger::initializeMaxLogTypeNum(2);
  nfw::Logger::initializeMaxLogFieldSize(1024);
  nfw::Logger::initializeLogBufferSize(128 * 1024);
  nfw::Logger::initializeMaxLogFileSize(100 * 1024 * 1024);
  nfw::Gnss::initializeMaxNmeaDataListenerNum(16);
  nfw::Gnss::initializeLoggerId(LOGGER_ID);
  syslogservice::setBinaryLogFile((lDir + "/sensor").c_str());
  CallbackMark lMark;
  Gps::GetInstance()->registerGpsNmeaListener(&lMark, WGS_84_GPS);
  printMemory("resident before the facades");
  if (!nfw::Logger::get()->initialize() || !nfw::SensorSysLoggerManager::get()->initialize() ||
      !nfw::Gnss::get()->initialize() || !nfw::DeadReckoning::get()->initialize()) {
    return 1;
  }
  printMemory("resident with both logs and both facades idle");
  nfw::Logger::get()->startRecord(lDir.c_str(), "bench", nullptr);
  nfw::SensorSysLoggerManager::get()->startRecord();
  benchFirstBacklog();
  {
    utl::MsgDrivenSharedThread lThread(2074, 256, 0, "nfw::Bench_SharedThread", 0);
    lThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0);
    benchLatency(lThread, lMark);
    benchRecording(lThread);
    lThread.stop(1, 30000);
  }
  printMemory("resident at the end");
  Gps::GetInstance()->unRegisterGpsNmeaListener(&lMark);
  nfw::Gnss::destroy();
  nfw::DeadReckoning::destroy();
  nfw::SensorSysLoggerManager::destroy();
  nfw::Logger::destroy();
  syslogservice::setBinaryLogFile(nullptr);
  const std::string lRemove = "rm -r " + lDir;
  return system(lRemove.c_str()) == 0 ? 0 : 1;
}
