// Message-driven threads beside what they cannot beat: a preallocated ring under one mutex and one condition variable,
// signalled after unlocking and only when the receiver sleeps. Both copy each payload once in and once out.
//
// It prints the ratios, with --only=WORD those that have the word in their name. With arguments of Google Benchmark
// (--benchmark_filter=...) it runs single measurements.
#include <benchmark/benchmark.h>
#include <pthread.h>
#include <sched.h>

#include <cstring>
#include <memory>
#include <string>
#include <thread>

#include "BenchSupport.h"
#include "utl/Event.h"
#include "utl/MsgDrivenSharedThread.h"
#include "utl/MsgDrivenThread.h"
#include "utl/Time.h"

namespace {

const unsigned int QUEUE = 64;
const unsigned int LARGEST = 10408;

/// What both sides do with a payload; one handler runs at a time.
class Handler {
 public:
  void handle(const unsigned char* npData) {
    if (mHold.load(std::memory_order_relaxed)) {
      mIsHeld.on();
      mRelease.waitToOn(0);
    }
    if (mIsTimed) mHandledNs = bench::nowNs();
    mSum += npData[0];
    mHandled.store(mHandled.load(std::memory_order_relaxed) + 1, std::memory_order_release);
  }
  void await(unsigned int nHandled) const {
    while (mHandled.load(std::memory_order_acquire) != nHandled) sched_yield();
  }

  std::atomic<unsigned int> mHandled{0};
  std::atomic<bool> mHold{false};
  std::atomic<bool> mIsTimed{false};
  std::atomic<int64_t> mHandledNs{0};
  utl::Event mIsHeld{false}, mRelease{false};
  unsigned char mSum = 0;
};

// --- the floor

class FloorThread {
 public:
  explicit FloorThread(unsigned int nSize, unsigned int nNum = QUEUE) : mSize(nSize), mEntries(nNum) {
    for (Entry& lEach : mEntries) lEach.mBytes.resize(nSize);
    pthread_condattr_t lAttr;
    pthread_condattr_init(&lAttr);
    pthread_condattr_setclock(&lAttr, CLOCK_MONOTONIC);
    pthread_cond_init(&mWork, &lAttr);
    mThread = std::thread([this] { run(); });
  }
  ~FloorThread() {
    pthread_mutex_lock(&mMutex);
    mIsEnding = true;
    pthread_mutex_unlock(&mMutex);
    pthread_cond_signal(&mWork);
    mThread.join();
  }

  bool post(const unsigned char* npData) { return append(npData, nullptr); }
  bool send(const unsigned char* npData) {
    static thread_local Reply lReply;  // outlives a signal that comes late
    lReply.mIsDone = false;
    if (!append(npData, &lReply)) return false;
    pthread_mutex_lock(&lReply.mMutex);
    while (!lReply.mIsDone) pthread_cond_wait(&lReply.mDone, &lReply.mMutex);
    pthread_mutex_unlock(&lReply.mMutex);
    return true;
  }

  Handler mHandler;

 private:
  struct Reply {
    pthread_mutex_t mMutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t mDone = PTHREAD_COND_INITIALIZER;
    bool mIsDone = false;
  };
  struct Entry {
    std::vector<unsigned char> mBytes;
    Reply* mpReply = nullptr;
  };

  bool append(const unsigned char* npData, Reply* npReply) {
    pthread_mutex_lock(&mMutex);
    const bool lHasRoom = mNum < mEntries.size();
    bool lWake = false;
    if (lHasRoom) {
      Entry& lEntry = mEntries[(mHead + mNum++) % mEntries.size()];
      std::memcpy(lEntry.mBytes.data(), npData, mSize);
      lEntry.mpReply = npReply;
      lWake = mIsWaiting;
      mIsWaiting = false;
    }
    pthread_mutex_unlock(&mMutex);
    if (lWake) pthread_cond_signal(&mWork);
    return lHasRoom;
  }

  void run() {
    std::vector<unsigned char> lBytes(mSize);
    pthread_mutex_lock(&mMutex);
    for (;;) {
      while (mNum == 0 && !mIsEnding) {
        mIsWaiting = true;
        pthread_cond_wait(&mWork, &mMutex);
        mIsWaiting = false;
      }
      if (mNum == 0) break;
      Entry& lEntry = mEntries[mHead];
      std::memcpy(lBytes.data(), lEntry.mBytes.data(), mSize);
      Reply* const lpReply = lEntry.mpReply;
      mHead = (mHead + 1) % mEntries.size();
      --mNum;
      pthread_mutex_unlock(&mMutex);
      mHandler.handle(lBytes.data());
      if (lpReply != nullptr) reply(lpReply);
      pthread_mutex_lock(&mMutex);
    }
    pthread_mutex_unlock(&mMutex);
  }

  static void reply(Reply* npReply) {
    pthread_mutex_lock(&npReply->mMutex);
    npReply->mIsDone = true;
    pthread_mutex_unlock(&npReply->mMutex);
    pthread_cond_signal(&npReply->mDone);
  }

  const unsigned int mSize;
  std::vector<Entry> mEntries;
  size_t mHead = 0, mNum = 0;
  bool mIsWaiting = false, mIsEnding = false;
  pthread_mutex_t mMutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t mWork;
  std::thread mThread;
};

// --- ours

class BytesMsg : public utl::Msg {
 public:
  explicit BytesMsg(unsigned char* npBytes, unsigned int nSize) : Msg(1), mpBytes(npBytes), mSize(nSize) {}
  bool storeDataTo(utl::MsgDataBroker& nBroker) const override { return nBroker.writeBytes(mpBytes, mSize); }
  bool restoreDataFrom(utl::MsgDataBroker& nBroker) override { return nBroker.readBytes(mpBytes, mSize); }

 private:
  unsigned char* mpBytes;
  unsigned int mSize;
};

class Receiver : public utl::ThreadMsgListener {
 public:
  explicit Receiver(unsigned int nSize) : mBytes(nSize) {}
  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) override {
    BytesMsg lMsg(mBytes.data(), static_cast<unsigned int>(mBytes.size()));
    if (lMsg.restoreFrom(nMsg)) mHandler.handle(mBytes.data());
  }

  Handler mHandler;

 private:
  std::vector<unsigned char> mBytes;
};

class OwnThread {
 public:
  static constexpr const char* NAME = "MsgDrivenThread";
  explicit OwnThread(unsigned int nSize, unsigned int nNum = QUEUE)
      : mSize(nSize), mReceiver(nSize), mThread(nSize, nNum, "nfw::Bench_Thread", 0) {
    mThread.start(&mReceiver, 1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0);
  }
  ~OwnThread() { mThread.stop(1, 30000); }
  bool post(unsigned char* npData) { return mThread.postMsg(BytesMsg(npData, mSize)); }
  bool send(unsigned char* npData) { return mThread.sendMsgSync(BytesMsg(npData, mSize)); }

 private:
  const unsigned int mSize;
  Receiver mReceiver;

 public:
  Handler& mHandler = mReceiver.mHandler;
  utl::MsgDrivenThread mThread;
};

class SharedThread {
 public:
  static constexpr const char* NAME = "MsgDrivenSharedThread";
  explicit SharedThread(unsigned int nSize, unsigned int nNum = QUEUE)
      : mSize(nSize), mReceiver(nSize), mThread(nSize, nNum, 0, "nfw::Bench_SharedThread", 0) {
    mThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0);
  }
  ~SharedThread() { mThread.stop(1, 30000); }
  bool post(unsigned char* npData) { return mThread.postMsg(&mReceiver, BytesMsg(npData, mSize)); }
  bool send(unsigned char* npData) { return mThread.sendMsgSync(&mReceiver, BytesMsg(npData, mSize)); }

 private:
  const unsigned int mSize;
  Receiver mReceiver;

 public:
  Handler& mHandler = mReceiver.mHandler;
  utl::MsgDrivenSharedThread mThread;
};

// --- what is measured, in nanoseconds per message

unsigned char gPayload[LARGEST];
const char* gWanted = "";  // only ratios with this in their name

/// From the first post to the last handling, with a sender that never pauses.
template <class T>
double throughput(T& nThread) {
  const unsigned int NUM = 4000, lBefore = nThread.mHandler.mHandled;
  const int64_t lStart = bench::nowNs();
  for (unsigned int i = 0; i < NUM; ++i) {
    while (!nThread.post(gPayload)) sched_yield();
  }
  nThread.mHandler.await(lBefore + NUM);
  return static_cast<double>(bench::nowNs() - lStart) / NUM;
}

/// From the post to the handler on a thread that sleeps: the median. The sender sleeps meanwhile, for both have one
/// processor: waking another one takes ten times as long, now and then, and would hide what is compared.
template <class T>
double idleLatency(T& nThread) {
  std::vector<double> lLatencies;
  nThread.mHandler.mIsTimed = true;
  for (int i = 0; i < 100; ++i) {
    const unsigned int lBefore = nThread.mHandler.mHandled;
    const int64_t lStart = bench::nowNs();
    nThread.post(gPayload);
    const timespec lPause = {0, 60000};
    do {
      nanosleep(&lPause, nullptr);
    } while (nThread.mHandler.mHandled == lBefore);
    lLatencies.push_back(static_cast<double>(nThread.mHandler.mHandledNs - lStart));
  }
  nThread.mHandler.mIsTimed = false;
  return bench::median(lLatencies);
}

template <class T>
double roundTrip(T& nThread) {
  const int NUM = 500;
  const int64_t lStart = bench::nowNs();
  for (int i = 0; i < NUM; ++i) nThread.send(gPayload);
  return static_cast<double>(bench::nowNs() - lStart) / NUM;
}

/// A post while the receiver is in a handler.
template <class T>
double busyPost(T& nThread) {
  Handler& lHandler = nThread.mHandler;
  std::vector<double> lRounds;
  for (int i = 0; i < 20; ++i) {
    const unsigned int lBefore = lHandler.mHandled;
    lHandler.mIsHeld.off();
    lHandler.mRelease.off();
    lHandler.mHold = true;
    nThread.post(gPayload);
    lHandler.mIsHeld.waitToOn(0);
    lHandler.mHold = false;
    const int64_t lStart = bench::nowNs();
    for (unsigned int n = 0; n < QUEUE; ++n) nThread.post(gPayload);
    lRounds.push_back(static_cast<double>(bench::nowNs() - lStart) / QUEUE);
    lHandler.mRelease.on();
    lHandler.await(lBefore + QUEUE + 1);
  }
  return bench::median(lRounds);
}

/// Keeps the caller, and the threads it starts meanwhile, on one processor.
class OneProcessor {
 public:
  explicit OneProcessor(bool nIsWanted) {
    sched_getaffinity(0, sizeof mBefore, &mBefore);
    cpu_set_t lOne;
    CPU_ZERO(&lOne);
    CPU_SET(static_cast<unsigned int>(sched_getcpu()), &lOne);
    if (nIsWanted) sched_setaffinity(0, sizeof lOne, &lOne);
  }
  ~OneProcessor() { sched_setaffinity(0, sizeof mBefore, &mBefore); }

 private:
  cpu_set_t mBefore;
};

struct Scenario {
  const char* mpName;
  double (*mpOwn)(OwnThread&);
  double (*mpShared)(SharedThread&);
  double (*mpFloor)(FloorThread&);
  double mAim;
  bool mHasOneProcessor;
};

const Scenario SCENARIOS[] = {
    {"throughput", &throughput<OwnThread>, &throughput<SharedThread>, &throughput<FloorThread>, 1.25, false},
    {"idle latency", &idleLatency<OwnThread>, &idleLatency<SharedThread>, &idleLatency<FloorThread>, 1.25, true},
    {"round trip", &roundTrip<OwnThread>, &roundTrip<SharedThread>, &roundTrip<FloorThread>, 1.1, false},
    {"post to a busy receiver", &busyPost<OwnThread>, &busyPost<SharedThread>, &busyPost<FloorThread>, 1.3, false},
};
const unsigned int SIZES[] = {8, 260, 2074, LARGEST};

template <class T>
void addRatios(bench::Table* npTable, unsigned int nSize, double (*Scenario::*npOurs)(T&)) {
  for (const Scenario& lEach : SCENARIOS) {
    if (std::strstr(lEach.mpName, gWanted) == nullptr) continue;
    const OneProcessor lOne(lEach.mHasOneProcessor);
    T lOurs(nSize);
    FloorThread lFloor(nSize);
    npTable->ratio(
        std::string(lEach.mpName) + ", " + std::to_string(nSize) + " bytes", [&] { return (lEach.*npOurs)(lOurs); },
        [&] { return lEach.mpFloor(lFloor); }, lEach.mAim, 41);
  }
}

// --- timers

/// Notes how late each of its timers comes. A timer's parameter is its interval.
class Lateness : public utl::ThreadMsgListener {
 public:
  static const unsigned int EXPIRIES = 20;

  explicit Lateness(unsigned int nTimers) : mLateMs(nTimers * EXPIRIES), mTimers(nTimers) {
    mThread.start(this, 1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0);
  }
  ~Lateness() override { mThread.stop(1, 30000); }

  void arm(unsigned int nIndex, unsigned int nIntervalMs, unsigned int nCount = EXPIRIES) {
    Timer& lTimer = mTimers[nIndex];
    lTimer.mIntervalNs = nIntervalMs * int64_t{1000000};
    do {  // the tick must not turn while the timer is set
      lTimer.mDueNs = (bench::nowNs() / 1000000 + nIntervalMs) * 1000000;
      if (lTimer.mId != 0) mThread.killTimer(lTimer.mId, 1);
      lTimer.mId = mThread.setTimer(nIntervalMs, static_cast<int>(nCount), nIndex);
    } while ((bench::nowNs() / 1000000 + nIntervalMs) * 1000000 != lTimer.mDueNs);
    mExpected += nCount;
  }
  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) override {
    const int64_t lNow = bench::nowNs();
    utl::TimerMsg lMsg;
    lMsg.restoreFrom(nMsg);
    Timer& lTimer = mTimers[lMsg.getParam()];
    mLateMs[mNum++] = static_cast<double>(lNow - lTimer.mDueNs) / 1e6;
    do {
      lTimer.mDueNs += lTimer.mIntervalNs;
    } while (lTimer.mDueNs <= lNow && lTimer.mIntervalNs != 0);  // what it missed went into this message
    if (mNum == mExpected) mIsDone.on();
  }
  std::vector<double> await() {
    mIsDone.waitToOn(0);
    mLateMs.resize(mNum);
    return mLateMs;
  }

 private:
  struct Timer {
    int mId = 0;
    int64_t mDueNs = 0, mIntervalNs = 0;
  };
  std::vector<double> mLateMs;
  std::vector<Timer> mTimers;
  unsigned int mNum = 0, mExpected = 0;
  utl::Event mIsDone{false};
  utl::MsgDrivenThread mThread{8, 16, "nfw::BenchTimers_Thread", 52};
};

void addTimers(bench::Table* npTable) {
  Lateness lTimers(52);
  for (unsigned int i = 0; i < 52; ++i) lTimers.arm(i, 40 + i);
  const std::vector<double> lLate = lTimers.await();
  npTable->value("52 timers, earliest (negative: early)", -*std::min_element(lLate.begin(), lLate.end()), 0,
                 "ms early");
  npTable->value("52 timers, median", bench::median(lLate), 0.1, "ms late");
}

// --- single checks

/// Notes how many messages come before the interrupt.
class Overtaken : public utl::ThreadMsgListener {
 public:
  static const int INTERRUPT = 2;

  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) override {
    int lId = 0;
    nMsg.getMsgId(&lId);
    if (lId == INTERRUPT) mBefore = mNum;
    if (mNum++ != 0) return;
    mIsHeld.on();
    mRelease.waitToOn(0);
  }

  unsigned int mNum = 0, mBefore = 0;
  utl::Event mIsHeld{false}, mRelease{false};
};

void addOvertaking(bench::Table* npTable) {
  Overtaken lListener;
  utl::MsgDrivenThread lThread(8, 256, "nfw::BenchOvertaking_Thread", 0);
  lThread.start(&lListener, 1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0);
  lThread.postMsg(1);
  lListener.mIsHeld.waitToOn(0);
  for (int i = 0; i < 200; ++i) lThread.postMsg(1);
  std::thread lReleaser([&] {
    while (!lThread.hasMsg(Overtaken::INTERRUPT)) sched_yield();
    lListener.mRelease.on();
  });
  lThread.sendMsgInterrupt(Overtaken::INTERRUPT);
  lReleaser.join();
  lThread.stop(1, 30000);
  npTable->value("handled before an interrupt, 200 queued", lListener.mBefore, 1, "messages");
}

template <class T>
void addAllocations(bench::Table* npTable, unsigned int nSize) {
  T lThread(nSize);
  for (int i = 0; i < 5; ++i) {  // large slots are taken on their first use
    throughput(lThread);
    busyPost(lThread);
    roundTrip(lThread);
  }
  const unsigned long lBefore = bench::allocations();
  throughput(lThread);
  for (int i = 0; i < 1000; ++i) lThread.send(gPayload);
  npTable->value(std::string("allocations of ") + T::NAME + ", " + std::to_string(nSize) + " bytes",
                 static_cast<double>(bench::allocations() - lBefore), 0, "in 5000 messages");
}

void printRatios() {
  Lateness lLong(1);
  if (*gWanted == 0) lLong.arm(0, 30000, 1);
  {
    bench::Table lTable("MsgDrivenThread beside a ring with one mutex and one condition variable");
    for (const unsigned int lSize : SIZES) addRatios<OwnThread>(&lTable, lSize, &Scenario::mpOwn);
  }
  {
    bench::Table lTable("MsgDrivenSharedThread beside the same");
    for (const unsigned int lSize : SIZES) addRatios<SharedThread>(&lTable, lSize, &Scenario::mpShared);
  }
  if (*gWanted != 0) return;
  bench::Table lTable("Timers, interrupts, allocations");
  addTimers(&lTable);
  addOvertaking(&lTable);
  addAllocations<OwnThread>(&lTable, 260);
  addAllocations<OwnThread>(&lTable, LARGEST);
  addAllocations<SharedThread>(&lTable, LARGEST);
  lTable.value("a timer of 30 s", lLong.await().front(), 1, "ms late");
}

// --- the same, one by one

template <class T>
void runSingle(benchmark::State& nState, double (*npMeasure)(T&), unsigned int nSize) {
  T lThread(nSize);
  for (auto lStep : nState) {
    (void)lStep;
    nState.SetIterationTime(npMeasure(lThread) / 1e9);
  }
}

template <class T>
void registerSingles(const char* npWhose, double (*Scenario::*npMeasure)(T&)) {
  for (const Scenario& lEach : SCENARIOS) {
    for (const unsigned int lSize : SIZES) {
      const std::string lName = std::string(lEach.mpName) + "/" + npWhose + "/" + std::to_string(lSize);
      benchmark::RegisterBenchmark(lName.c_str(), &runSingle<T>, lEach.*npMeasure, lSize)
          ->UseManualTime()
          ->Iterations(15);
    }
  }
}

}  // namespace

int main(int nArgNum, char** npArgs) {
  const char ONLY[] = "--only=";
  const char* const lpFirst = nArgNum > 1 ? npArgs[1] : "";
  if (std::strncmp(lpFirst, ONLY, sizeof ONLY - 1) == 0) gWanted = lpFirst + sizeof ONLY - 1;
  if (std::strncmp(lpFirst, "--benchmark", 11) != 0) {  // scripts/bench names a folder of sentences, of no use here
    printRatios();
    return 0;
  }
  registerSingles<OwnThread>("own", &Scenario::mpOwn);
  registerSingles<SharedThread>("shared", &Scenario::mpShared);
  registerSingles<FloorThread>("floor", &Scenario::mpFloor);
  benchmark::Initialize(&nArgNum, npArgs);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
