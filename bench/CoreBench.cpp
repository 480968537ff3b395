// What a log line costs its caller, and what a dispatch to listeners costs, each beside a floor of the same run.
#include <cmath>
#include <mutex>

#include "BenchSupport.h"
#include "NaviAppFramework.h"
#include "SysLogServiceHost.h"

namespace {

const int TYPE = 100;
const int LINES = 20000;
const int DISPATCHES = 2000;

class NullSink : public syslogservice::Sink {
 public:
  void writeLine(int /*nType*/, int /*nLevel*/, const char* npText) override { mLast = npText[0]; }
  volatile char mLast = 0;
};

template <class Step>
double perStep(int nCount, Step nStep) {
  const int64_t lStart = bench::nowNs();
  for (int i = 0; i < nCount; ++i) nStep(i);
  return static_cast<double>(bench::nowNs() - lStart) / nCount;
}

/// A message whose handling is one sum: the floor of a dispatch.
class Receiver : public utl::ThreadMsgListener {
 public:
  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) override { nMsg.getMsgId(&mLast); }
  int mLast = 0;
};

void benchLog() {
  bench::Table lTable("Application log");
  NullSink lSink;
  syslogservice::setSink(&lSink);
  nfw::registerLogType(TYPE, "<NAVI>BENCH  ", nfw::LOG_LEVEL_WARNING);
  std::mutex lMutex;
  char lText[1024];

  const auto lLine = [](int nLevel) {
    return [nLevel] {
      return perStep(LINES,
                     [&](int i) { APPLOG(TYPE, nLevel, "LogReader::next(): Ret=%d Id=0x%08X %s", i, 255U, "text"); });
    };
  };
  lTable.ratio(
      "a line filtered out / a mutex", lLine(nfw::LOG_LEVEL_DEBUG),
      [&] {
        return perStep(LINES, [&](int) {
          lMutex.lock();
          lMutex.unlock();
        });
      },
      2.0);
  lTable.ratio(
      "a line written / its formatting", lLine(nfw::LOG_LEVEL_ERROR),
      [&] {
        return perStep(LINES, [&](int i) {
          snprintf(lText, sizeof lText, "LogReader::next(): Ret=%d Id=0x%08X %s", i, 255U, "text");
        });
      },
      1.5);
  const unsigned long lBefore = bench::allocations();
  lLine(nfw::LOG_LEVEL_ERROR)();
  lTable.value("allocations in 20000 lines", static_cast<double>(bench::allocations() - lBefore), 0, "");
  syslogservice::setSink(nullptr);
}

/// Of every kind, one of each: a listener that hears as little as it can.
class AnyListener : public nfw::ParsedGgaDataListener,
                    public nfw::ParsedGllDataListener,
                    public nfw::ParsedGsaDataListener,
                    public nfw::ParsedGsvDataListener,
                    public nfw::ParsedVtgDataListener,
                    public nfw::ParsedZdaDataListener,
                    public nfw::ParsedRmcDataListener,
                    public nfw::ParsedPubxDataListener,
                    public nfw::ParsedNmeaDataListener {
 public:
  void onNotifyParsedGgaData(const nfw::GgaSentence& nRecord) override { mSum += nRecord.satelliteCount; }
  void onNotifyParsedGllData(const nfw::GllSentence& nRecord) override {
    mSum += static_cast<unsigned int>(nRecord.mode);
  }
  void onNotifyParsedGsaData(const nfw::GsaSentence& nRecord) override {
    mSum += static_cast<unsigned int>(nRecord.mode);
  }
  void onNotifyParsedGsvData(const nfw::GsvSentence& nRecord) override { mSum += nRecord.satellite[11].snr; }
  void onNotifyParsedVtgData(const nfw::VtgSentence& nRecord) override {
    mSum += static_cast<unsigned int>(nRecord.mode);
  }
  void onNotifyParsedZdaData(const nfw::ZdaSentence& nRecord) override { mSum += nRecord.date.day; }
  void onNotifyParsedRmcData(const nfw::RmcSentence& nRecord) override {
    mSum += static_cast<unsigned int>(nRecord.mode);
  }
  void onNotifyParsedPubxData(const nfw::PubxSentence& nRecord) override { mSum += nRecord.satelliteCount; }
  void onNotifyParsedNmeaData(const nfw::NmeaSentence& nRecord) override { mSum += nRecord.gsv.satellite[11].snr; }
  volatile unsigned int mSum = 0;
};

/// Twelve satellites in view, as a receiver under an open sky gives them.
nfw::GsvSentence skyFull() {
  nfw::GsvSentence lGsv;
  lGsv.satelliteType = nfw::SATELLITE_GPS;
  lGsv.messageCount = lGsv.messageNumber = 3;
  lGsv.satelliteView = 12;
  for (unsigned int i = 0; i < lGsv.satelliteView; ++i) {
    nfw::GsvSatelliteInfo& lSatellite = lGsv.satellite[i];
    lSatellite.satelliteNumber = static_cast<uint8_t>(2 * i + 1);
    lSatellite.satelliteId = 2 * i + 1;
    lSatellite.valid = true;
    lSatellite.elevation = static_cast<uint8_t>(7 * i);
    lSatellite.snr = 40;
    lSatellite.azimuth = 29 * i;
  }
  return lGsv;
}

void benchDispatch() {
  bench::Table lTable("Dispatch of a record to one listener, from the call to the end of the callback / an empty post");
  utl::MsgDrivenSharedThread lThread(nfw::GnssDataDispatcher::getMaxMsgDataSize(), DISPATCHES + 8, 0,
                                     "nfw::Bench_SharedThread", 0);
  lThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0);
  nfw::GnssDataDispatcher lDispatcher(&lThread, 16, 1, 1, 1, 1, 1, 1, 1, 1, 1);
  AnyListener lListeners[16];
  Receiver lReceiver;

  const auto lTimed = [&](auto nStep) {
    const int64_t lStart = bench::nowNs();
    for (int i = 0; i < DISPATCHES; ++i) nStep();
    lThread.sendMsgSync(&lReceiver, 1);
    return static_cast<double>(bench::nowNs() - lStart) / DISPATCHES;
  };
  const auto lPosts = [&] { return lTimed([&] { lThread.postMsg(&lReceiver, 1); }); };
  const auto lMeasure = [&](const char* npName, const auto& nRecord, double nAim) {
    lTable.ratio(
        npName, [&] { return lTimed([&] { lDispatcher.dispatch(nRecord); }); }, lPosts, nAim);
  };
  const nfw::GsvSentence lGsv = skyFull();
  nfw::NmeaSentence lAll;
  lAll.gsv = lGsv;
  const auto lMeasureAll = [&](const std::string& nTo) {
    const auto lTo = [&](const char* npKind) { return npKind + nTo; };
    lMeasure(lTo("GSV, 12 satellites").c_str(), lGsv, 10);
    lMeasure(lTo("combined, 12 satellites").c_str(), lAll, 16);
    lMeasure(lTo("GGA").c_str(), nfw::GgaSentence(), INFINITY);
  };
  lMeasureAll(", nobody listens");
  AnyListener& lFirst = lListeners[0];
  lDispatcher.attachParsedGgaDataListener(&lFirst);
  lDispatcher.attachParsedGllDataListener(&lFirst);
  lDispatcher.attachParsedGsaDataListener(&lFirst);
  lDispatcher.attachParsedGsvDataListener(&lFirst);
  lDispatcher.attachParsedVtgDataListener(&lFirst);
  lDispatcher.attachParsedZdaDataListener(&lFirst);
  lDispatcher.attachParsedRmcDataListener(&lFirst);
  lDispatcher.attachParsedPubxDataListener(&lFirst);
  lDispatcher.attachParsedNmeaDataListener(&lFirst);
  lMeasureAll("");
  lMeasure("GLL", nfw::GllSentence(), INFINITY);
  lMeasure("GSA", nfw::GsaSentence(), INFINITY);
  lMeasure("VTG", nfw::VtgSentence(), INFINITY);
  lMeasure("ZDA", nfw::ZdaSentence(), INFINITY);
  lMeasure("RMC", nfw::RmcSentence(), INFINITY);
  lMeasure("PUBX", nfw::PubxSentence(), INFINITY);
  for (unsigned int i = 1; i < 16; ++i) lDispatcher.attachParsedGgaDataListener(&lListeners[i]);
  lMeasure("GGA to 16 listeners", nfw::GgaSentence(), INFINITY);
  const unsigned long lBefore = bench::allocations();
  lTimed([&] { lDispatcher.dispatch(lAll); });
  lTable.value("allocations in 2000 dispatches", static_cast<double>(bench::allocations() - lBefore), 0, "");
  lThread.stop(1, 30000);
}

}  // namespace

int main() {
  if (getenv("ONLY") == nullptr) benchLog();
  benchDispatch();
  return 0;
}
