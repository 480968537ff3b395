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

class GgaCounter : public nfw::ParsedGgaDataListener {
 public:
  void onNotifyParsedGgaData(const nfw::GgaSentence& nRecord) override { mSum += nRecord.satelliteCount; }
  unsigned long mSum = 0;
};

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

void benchDispatch() {
  bench::Table lTable("Dispatch of a GGA record, from the call to the end of the last callback");
  utl::MsgDrivenSharedThread lThread(nfw::GnssDataDispatcher::getMaxMsgDataSize(), DISPATCHES + 8, 0,
                                     "nfw::Bench_SharedThread", 0);
  lThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0);
  nfw::GnssDataDispatcher lDispatcher(&lThread, 16, 1, 1, 1, 1, 1, 1, 1, 1, 1);
  GgaCounter lCounters[16];
  Receiver lReceiver;
  const nfw::GgaSentence lRecord;

  const auto lDispatch = [&] {
    const int64_t lStart = bench::nowNs();
    for (int i = 0; i < DISPATCHES; ++i) lDispatcher.dispatch(lRecord);
    lThread.sendMsgSync(&lReceiver, 1);
    return static_cast<double>(bench::nowNs() - lStart) / DISPATCHES;
  };
  const auto lPosts = [&] {
    const int64_t lStart = bench::nowNs();
    for (int i = 0; i < DISPATCHES; ++i) lThread.postMsg(&lReceiver, 1);
    lThread.sendMsgSync(&lReceiver, 1);
    return static_cast<double>(bench::nowNs() - lStart) / DISPATCHES;
  };
  unsigned int lAttached = 0;
  for (const unsigned int lListenerNum : {1U, 16U}) {
    while (lAttached < lListenerNum) lDispatcher.attachParsedGgaDataListener(&lCounters[lAttached++]);
    lTable.ratio("to " + std::to_string(lListenerNum) + " listeners / an empty post", lDispatch, lPosts, INFINITY);
  }
  const unsigned long lBefore = bench::allocations();
  lDispatch();
  lTable.value("allocations in 2000 dispatches", static_cast<double>(bench::allocations() - lBefore), 0, "");
  lThread.stop(1, 30000);
}

}  // namespace

int main() {
  benchLog();
  benchDispatch();
  return 0;
}
