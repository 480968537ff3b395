// The data logger: what a write costs its caller, records to the disk, records read, and how late a replay is; each
// beside a floor of the same run.
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cmath>
#include <condition_variable>
#include <cstring>
#include <filesystem>
#include <memory>
#include <mutex>
#include <thread>

#include "BenchSupport.h"
#include "LittleEndian.h"
#include "LogRecord.h"
#include "NfwAppLog.h"
#include "NfwLogPlayListener.h"
#include "NfwLogPlayer.h"
#include "NfwLogReader.h"
#include "NfwLogRetention.h"
#include "NfwLogger.h"
#include "PlayTimeline.h"

namespace {

using nfw::Logger;
using nfw::LogRecord;

const int ID = 20;
const unsigned int SIZES[] = {80, 1000};
const unsigned int MAX_SIZE = 1000;

class Directory {
 public:
  Directory() { mPath = mkdtemp(mTemplate); }
  ~Directory() { std::filesystem::remove_all(mPath); }
  std::string operator/(const char* npName) const { return mPath + "/" + npName; }
  const std::string& path() const { return mPath; }
  void clear() const {
    for (const auto& lEntry : std::filesystem::directory_iterator(mPath)) std::filesystem::remove_all(lEntry);
  }
  std::string file() const { return std::filesystem::directory_iterator(mPath)->path().string(); }

 private:
  char mTemplate[64] = "/tmp/nfw_bench_XXXXXX";
  std::string mPath;
};

/// One write(2) a record, with the same bytes a record.
class PlainFile {
 public:
  explicit PlainFile(const std::string& nPath)
      : mFile(::open(nPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0666)) {}
  ~PlainFile() { ::close(mFile); }
  void write(unsigned int nDataSize) const {
    static const char RECORD[MAX_SIZE + LogRecord::OVERHEAD] = {};
    if (::write(mFile, RECORD, nDataSize + LogRecord::OVERHEAD) < 0) abort();
  }

 private:
  const int mFile;
};

void writeOurs(unsigned int nDataSize) {
  static const char DATA[MAX_SIZE] = {};
  Logger::write(ID, DATA, nDataSize);
}

double percentile(std::vector<double>& nValues, double nShare) {
  const auto lAt = nValues.begin() + static_cast<std::ptrdiff_t>(nShare * static_cast<double>(nValues.size() - 1));
  std::nth_element(nValues.begin(), lAt, nValues.end());
  return *lAt;
}

// --- what a write costs its caller

/// Nanoseconds of each call, paced at 50,000 a second in all.
template <class Write>
std::vector<double> paced(unsigned int nThreadNum, Write nWrite) {
  const unsigned int PER_THREAD = 5000 / nThreadNum;
  const int64_t lGap = 20000 * static_cast<int64_t>(nThreadNum);
  std::vector<std::vector<double>> lTimes(nThreadNum, std::vector<double>(PER_THREAD));
  std::vector<std::thread> lThreads;
  for (unsigned int t = 0; t < nThreadNum; ++t) {
    lThreads.emplace_back([&, t] {
      int64_t lNext = bench::nowNs();
      for (double& lTime : lTimes[t]) {
        while (bench::nowNs() < lNext) std::this_thread::yield();
        lNext += lGap;
        const int64_t lStart = bench::nowNs();
        nWrite();
        lTime = static_cast<double>(bench::nowNs() - lStart);
      }
    });
  }
  std::vector<double> lAll;
  for (unsigned int t = 0; t < nThreadNum; ++t) {
    lThreads[t].join();
    lAll.insert(lAll.end(), lTimes[t].begin(), lTimes[t].end());
  }
  return lAll;
}

/// A sync and another file every tenth of a second, of which the oldest are deleted, while it lives.
class RoadRecording {
 public:
  explicit RoadRecording(const std::string& nDirectory) : mRetention(nDirectory.c_str(), "cost", limits()) {
    Logger::get()->setSyncInterval(100);
    Logger::get()->setMaxFileTime(100, false);
    mRetention.start();
  }
  ~RoadRecording() {
    Logger::get()->setSyncInterval(0);
    Logger::get()->setMaxFileTime(0, false);
  }
  RoadRecording(const RoadRecording&) = delete;
  RoadRecording& operator=(const RoadRecording&) = delete;

 private:
  static nfw::LogRetentionLimits limits() {
    nfw::LogRetentionLimits lLimits;
    lLimits.mMaxFileNum = 2;
    return lLimits;
  }

  nfw::LogRetention mRetention;
};

void benchCost(const Directory& nDirectory, bool nIsOnTheRoad) {
  const PlainFile lPlain("/tmp/nfw_bench_plain");
  for (const unsigned int lSize : SIZES) {
    for (const unsigned int lThreadNum : {1u, 4u}) {
      bench::Table lTable(("A write to its caller, 50000 a second: " + std::to_string(lSize) + " bytes, " +
                           std::to_string(lThreadNum) + " thread(s)" + (nIsOnTheRoad ? ", synced, within limits" : ""))
                              .c_str());
      const auto lpRoad = nIsOnTheRoad ? std::make_unique<RoadRecording>(nDirectory.path()) : nullptr;
      Logger::get()->startRecord(nDirectory.path().c_str(), "cost", nullptr);
      const struct {
        const char* mpName;
        double mShare, mAim;
      } ROWS[] = {{"median / write(2)", 0.5, lSize == 80 ? 0.5 : 1},
                  {"99 % / write(2)", 0.99, 1},
                  {"99.9 % / write(2)", 0.999, INFINITY}};  // no aim: the scheduler's
      for (const auto& lRow : ROWS) {
        const auto lMeasure = [&](auto nWrite) {
          return [&lRow, lThreadNum, nWrite] {
            std::vector<double> lTimes = paced(lThreadNum, nWrite);
            return percentile(lTimes, lRow.mShare);
          };
        };
        lTable.ratio(lRow.mpName, lMeasure([lSize] { writeOurs(lSize); }), lMeasure([&] { lPlain.write(lSize); }),
                     lRow.mAim, 5);
      }
      Logger::get()->stopRecord();
      nDirectory.clear();
    }
  }
  ::unlink("/tmp/nfw_bench_plain");
}

// --- to the disk

/// Nanoseconds a record, from the first write to the last byte handed to the kernel.
template <class Write, class Finish>
double sustained(unsigned int nThreadNum, unsigned int nSize, Write nWrite, Finish nFinish) {
  const unsigned int PER_THREAD = (nSize < 500 ? 200000 : 40000) / nThreadNum;
  const int64_t lStart = bench::nowNs();
  std::vector<std::thread> lThreads;
  for (unsigned int t = 0; t < nThreadNum; ++t) {
    lThreads.emplace_back([&] {
      for (unsigned int i = 0; i < PER_THREAD; ++i) nWrite();
    });
  }
  for (std::thread& lThread : lThreads) lThread.join();
  nFinish();
  return static_cast<double>(bench::nowNs() - lStart) / (PER_THREAD * nThreadNum);
}

void benchSustained(const Directory& nDirectory) {
  bench::Table lTable("Records to the disk");
  for (const unsigned int lSize : SIZES) {
    for (const unsigned int lThreadNum : {1u, 4u}) {
      const std::string lName =
          std::to_string(lSize) + " bytes, " + std::to_string(lThreadNum) + " thread(s) / write(2)";
      const auto lOurs = [&] {
        Logger::get()->startRecord(nDirectory.path().c_str(), "disk", nullptr);
        const double lTime = sustained(
            lThreadNum, lSize, [&] { writeOurs(lSize); }, [] { Logger::get()->stopRecord(); });
        nDirectory.clear();
        return lTime;
      };
      const auto lFloor = [&] {
        const PlainFile lPlain(nDirectory / "plain");
        const double lTime = sustained(
            lThreadNum, lSize, [&] { lPlain.write(lSize); }, [] {});
        nDirectory.clear();
        return lTime;
      };
      lTable.ratio(lName, lOurs, lFloor, lSize == 80 ? 1 / 1.5 : 1 / 0.8, 7);
    }
  }
  Logger::get()->startRecord(nDirectory.path().c_str(), "count", nullptr);
  for (int i = 0; i < 1000; ++i) writeOurs(80);
  const unsigned long lBefore = bench::allocations();
  for (int i = 0; i < 100000; ++i) writeOurs(80);
  lTable.value("allocations in 100000 records", static_cast<double>(bench::allocations() - lBefore), 0, "");
  Logger::get()->stopRecord();
  nDirectory.clear();
}

// --- read back

const unsigned int READ_NUM = 200000;

/// The steps of the reader on stdio.
unsigned int readByStdio(const std::string& nPath, int nId) {
  FILE* const lpFile = fopen(nPath.c_str(), "rb");
  unsigned char lBytes[12], lData[MAX_SIZE];
  unsigned int lCount = 0;
  fseek(lpFile, 0, SEEK_END);
  const long lEnd = ftell(lpFile);
  fseek(lpFile, 0, SEEK_SET);
  while (ftell(lpFile) < lEnd) {
    fseek(lpFile, LogRecord::PREFIX_SIZE, SEEK_CUR);
    for (unsigned int i = 0; i < 3; ++i) {
      if (fread(lBytes + 4 * i, 1, 4, lpFile) != 4) abort();
    }
    const unsigned int lSize = nfw::getUint32(lBytes + 8);
    if (nfw::getUint32(lBytes) != static_cast<unsigned int>(nId)) {
      fseek(lpFile, static_cast<long>(lSize) + 1, SEEK_CUR);
      continue;
    }
    if (fread(lData, 1, lSize, lpFile) != lSize) abort();
    fseek(lpFile, 1, SEEK_CUR);
    ++lCount;
  }
  fclose(lpFile);
  return lCount;
}

/// As little as one can do: a buffer of its own, and no check.
unsigned int readByWindow(const std::string& nPath, int nId) {
  static unsigned char lBuffer[64 * 1024];
  const int lFile = ::open(nPath.c_str(), O_RDONLY);
  unsigned char lData[MAX_SIZE];
  unsigned int lCount = 0;
  size_t lAt = 0, lEnd = 0;
  const auto lNeed = [&](size_t nSize) {
    if (lEnd - lAt >= nSize) return true;
    memmove(lBuffer, lBuffer + lAt, lEnd - lAt);
    lEnd -= lAt;
    lAt = 0;
    const ssize_t lSize = ::read(lFile, lBuffer + lEnd, sizeof lBuffer - lEnd);
    lEnd += lSize > 0 ? static_cast<size_t>(lSize) : 0;
    return lEnd >= nSize;
  };
  while (lNeed(LogRecord::BASE_SIZE)) {
    const unsigned int lSize = nfw::getUint32(lBuffer + lAt + LogRecord::SIZE_AT);
    const bool lIsOwn = nfw::getUint32(lBuffer + lAt + LogRecord::ID_AT) == static_cast<unsigned int>(nId);
    if (!lNeed(lSize + LogRecord::OVERHEAD)) break;
    if (lIsOwn) {
      memcpy(lData, lBuffer + lAt + LogRecord::BASE_SIZE, lSize);
      ++lCount;
    }
    lAt += lSize + LogRecord::OVERHEAD;
  }
  ::close(lFile);
  return lCount;
}

unsigned int readByReader(const std::string& nPath, int nId) {
  static nfw::LogReader lReader;
  unsigned char lData[MAX_SIZE];
  unsigned int lCount = 0, lTime = 0;
  unsigned long long lPosition = 0;
  lReader.open(nId, nPath.c_str());
  while (lReader.next(&lTime, lData, MAX_SIZE, &lPosition) >= 0) ++lCount;
  lReader.close();
  return lCount;
}

/// As a replay reads ahead.
unsigned int readByBatch(const std::string& nPath, int nId) {
  const unsigned int BATCH_NUM = 52;
  static nfw::LogReader lReader;
  unsigned char lData[MAX_SIZE];
  nfw::RecordHeader lHeader;
  unsigned int lCount = 0, lNum = BATCH_NUM;
  lReader.open(nId, nPath.c_str());
  for (; lNum == BATCH_NUM; lCount += lNum) {
    nfw::RecordReader::Batch lBatch(lReader);
    for (lNum = 0; lNum < BATCH_NUM && lBatch.next(&lHeader, lData, MAX_SIZE) >= 0;) ++lNum;
  }
  lReader.close();
  return lCount;
}

void benchRead(const Directory& nDirectory) {
  bench::Table lTable("A record read, of 80 bytes, by processor time");
  for (const unsigned int lEach : {1u, 10u}) {
    Logger::get()->startRecord(nDirectory.path().c_str(), "read", nullptr);
    char lData[80] = {};
    for (unsigned int i = 0; i < READ_NUM; ++i) Logger::write(i % lEach == 0 ? ID : ID + 1, lData, sizeof lData);
    Logger::get()->stopRecord();
    const std::string lPath = nDirectory.file();
    const auto lMeasure = [&](unsigned int (*npRead)(const std::string&, int)) {
      return [&lPath, npRead, lEach] {
        const int64_t lStart = bench::threadCpuNs();
        if (npRead(lPath, ID) != READ_NUM / lEach) abort();
        return static_cast<double>(bench::threadCpuNs() - lStart) / READ_NUM;
      };
    };
    const std::string lName = lEach == 1 ? "every one" : "one in ten selected";
    lTable.ratio(lName + " / stdio loop", lMeasure(readByReader), lMeasure(readByStdio), 0.1, 7);
    lTable.ratio(lName + " / private 64 KiB buffer", lMeasure(readByReader), lMeasure(readByWindow), 1.6, 15);
    lTable.ratio(lName + ", 52 at a time / the same", lMeasure(readByBatch), lMeasure(readByWindow), 1.6, 15);
    const unsigned long lBefore = bench::allocations();
    readByReader(lPath, ID);
    lTable.value("allocations in 200000 records, opening included", static_cast<double>(bench::allocations() - lBefore),
                 4, "");
    nDirectory.clear();
  }
}

// --- played

class Listener : public nfw::LogPlayListener {
 public:
  void receiveLogPlayData(int /*nLogTypeId*/, const unsigned char* npData, unsigned int /*nSize*/) override {
    const int64_t lNow = bench::nowNs();
    const unsigned int lNumber = nfw::getUint32(npData);
    if (mTimes.empty()) mAllocations = bench::allocations();
    mIsOrdered = mIsOrdered && lNumber == mTimes.size();
    mTimes.push_back(lNow);
    mLastAllocations = bench::allocations();
  }
  std::vector<int64_t> mTimes;
  unsigned long mAllocations = 0, mLastAllocations = 0;
  bool mIsOrdered = true;
};

class Player : public nfw::LogPlayer {
 public:
  void notifyPlayStart() override {}
  void notifyPlayStop() override {}
  void notifyPlayEnd(int /*nReason*/) override {
    std::lock_guard<std::mutex> lLock(mMutex);
    mIsOver = true;
    mOver.notify_all();
  }
  void wait() {
    std::unique_lock<std::mutex> lLock(mMutex);
    mOver.wait(lLock, [this] { return mIsOver; });
    mIsOver = false;
  }

 private:
  std::mutex mMutex;
  std::condition_variable mOver;
  bool mIsOver = false;
};

void writeTimed(const std::string& nPath, unsigned int nCount, unsigned int nIntervalMs, unsigned int nSize = 80,
                int nId = ID, const char* npMode = "wb") {
  FILE* const lpFile = fopen(nPath.c_str(), npMode);
  for (unsigned int i = 0; i < nCount; ++i) {
    unsigned char lRecord[LogRecord::OVERHEAD + MAX_SIZE] = {};
    memcpy(lRecord, "2026/01/31 08:00:00.000 ID00000014: ", LogRecord::PREFIX_SIZE);
    nfw::putUint32(lRecord + LogRecord::ID_AT, static_cast<unsigned int>(nId));
    nfw::putUint32(lRecord + LogRecord::TIME_AT, i * nIntervalMs);
    nfw::putUint32(lRecord + LogRecord::SIZE_AT, nSize);
    nfw::putUint32(lRecord + LogRecord::BASE_SIZE, i);
    fwrite(lRecord, 1, LogRecord::OVERHEAD + nSize, lpFile);
  }
  fclose(lpFile);
}

// A record is due on the millisecond grid of the tick, which is the monotonic clock's. The one that came with the least
// delay tells the origin.
std::vector<double> lateness(const std::vector<int64_t>& nTimes, int64_t nIntervalNs) {
  std::vector<double> lLate;
  int64_t lOrigin = nTimes[0];
  for (size_t i = 0; i < nTimes.size(); ++i) {
    lOrigin = std::min(lOrigin, nTimes[i] - static_cast<int64_t>(i) * nIntervalNs);
  }
  lOrigin = lOrigin / 1000000 * 1000000;
  for (size_t i = 0; i < nTimes.size(); ++i) {
    lLate.push_back(static_cast<double>(nTimes[i] - lOrigin - static_cast<int64_t>(i) * nIntervalNs) / 1e6);
  }
  return lLate;
}

// A second or more of each: recorded so often, and played at so many permille of that pace.
void benchReplay(const Directory& nDirectory) {
  bench::Table lTable("Lateness of replayed records");
  Listener lListener;
  Player lPlayer;
  Logger::get()->attachPlayer(&lPlayer);
  Logger::get()->attachPlayListener(ID, &lListener);
  const struct {
    unsigned int mFrequency, mRate, mCount;
  } RUNS[] = {{100, 1000, 300}, {1000, 1000, 3000}, {100, 100, 20}, {100, 10000, 2000}, {10, 100000, 2000}};
  for (const auto& lRun : RUNS) {
    const std::string lPath = nDirectory / "timed.log";
    writeTimed(lPath, lRun.mCount, 1000 / lRun.mFrequency);
    lListener.mTimes.clear();
    lListener.mTimes.reserve(lRun.mCount);
    lListener.mIsOrdered = true;
    Logger::get()->startPlay(lPath.c_str());
    if (lRun.mRate != 1000) Logger::get()->setPlayRate(lRun.mRate);
    lPlayer.wait();
    Logger::get()->stopPlay();
    std::vector<double> lLate = lateness(lListener.mTimes, 1000000000ll / lRun.mFrequency * 1000 / lRun.mRate);
    const std::string lName = std::to_string(lRun.mFrequency) + " a second" +
                              (lRun.mRate == 1000 ? "" : ", at " + std::to_string(lRun.mRate / 1000.0).substr(0, 5)) +
                              ": ";
    lTable.value(lName + "median", percentile(lLate, 0.5), 0.1, "ms");
    lTable.value(lName + "99 %", percentile(lLate, 0.99), 1, "ms");
    lTable.value(lName + "early (least, negated)", -*std::min_element(lLate.begin(), lLate.end()), 0, "ms");
    lTable.value(lName + "lost or out of order", lListener.mIsOrdered && lLate.size() == lRun.mCount ? 0 : 1, 0, "");
    lTable.value(lName + "allocations between first and last",
                 static_cast<double>(lListener.mLastAllocations - lListener.mAllocations), 0, "");
  }
  Logger::get()->detachPlayListener(&lListener);
  Logger::get()->detachPlayer(&lPlayer);
}

// What a type costs that comes far behind others: the way there, once more for each type that is attached.
void benchTypes(const Directory& nDirectory) {
  bench::Table lTable("Other records on the way to the first ones, by the process's time for each");
  const unsigned int OTHER_NUM = 2000000, TYPE_NUM = 10;
  const std::string lPath = nDirectory / "types.log";
  writeTimed(lPath, OTHER_NUM, 0);
  for (unsigned int i = 0; i < TYPE_NUM; ++i) writeTimed(lPath, 1, 0, 80, ID + 1 + static_cast<int>(i), "ab");
  Player lPlayer;
  Logger::get()->attachPlayer(&lPlayer);
  const auto lPlay = [&](unsigned int nTypeNum) {
    std::vector<Listener> lListeners(nTypeNum);
    for (unsigned int i = 0; i < nTypeNum; ++i) {
      Logger::get()->attachPlayListener(ID + 1 + static_cast<int>(i), &lListeners[i]);
    }
    const int64_t lStart = bench::clockNs(CLOCK_PROCESS_CPUTIME_ID);
    Logger::get()->startPlay(lPath.c_str());
    lPlayer.wait();
    const int64_t lEnd = bench::clockNs(CLOCK_PROCESS_CPUTIME_ID);
    Logger::get()->stopPlay();
    for (Listener& lListener : lListeners) {
      if (lListener.mTimes.size() != 1) abort();
      Logger::get()->detachPlayListener(&lListener);
    }
    return static_cast<double>(lEnd - lStart) / OTHER_NUM;
  };
  lTable.ratio(
      "ten types / one", [&] { return lPlay(TYPE_NUM); }, [&] { return lPlay(1); }, 2, 5);
  Logger::get()->detachPlayer(&lPlayer);
}

// --- a place in a large file

void benchSeek(const Directory& nDirectory) {
  bench::Table lTable("A moment in a file of 1 GiB, not in memory");
  const unsigned int COUNT = (1u << 30) / (LogRecord::OVERHEAD + MAX_SIZE);
  const std::string lPath = nDirectory / "large.log";
  writeTimed(lPath, COUNT, 10, MAX_SIZE);
  const int lFile = open(lPath.c_str(), O_RDONLY | O_CLOEXEC);
  fdatasync(lFile);
  std::vector<double> lOpened, lFound;
  for (uint32_t i = 1; i <= 9; ++i) {
    posix_fadvise(lFile, 0, 0, POSIX_FADV_DONTNEED);
    const int64_t lStart = bench::nowNs();
    const char* const lpPath = lPath.c_str();
    const char* lpBad = nullptr;
    nfw::PlayTimeline lTimeline;
    if (!lTimeline.build(nfw::LogReader::recordFormat(), &lpPath, 1, &lpBad)) return;
    const int64_t lBuilt = bench::nowNs();
    lTimeline.find(nfw::LogReader::recordFormat(), lTimeline.length() / 10 * i + i);
    lOpened.push_back(static_cast<double>(bench::nowNs() - lStart) / 1e6);
    lFound.push_back(static_cast<double>(bench::nowNs() - lBuilt) / 1e6);
  }
  close(lFile);
  lTable.value("the first, with a look at the file, median", percentile(lOpened, 0.5), 20, "ms");
  lTable.value("a further one, median", percentile(lFound, 0.5), 20, "ms");
}

}  // namespace

int main() {
  nfw::registerLogType(nfw::LOG_TYPE_NFW, "<NAVI>NFW    ", nfw::LOG_LEVEL_ERROR);
  Logger::initializeMaxPlayerNum(1);
  Logger::initializeMaxLogTypeNum(10);
  Logger::initializeMaxLogFieldSize(MAX_SIZE);
  Logger::initializeLogBufferSize(1024 * 1024);
  Logger::initializeMaxLogFileSize(1u << 30);
  if (!Logger::get()->initialize()) return 1;
  const Directory lDirectory;
  benchCost(lDirectory, false);
  benchCost(lDirectory, true);
  benchSustained(lDirectory);
  benchRead(lDirectory);
  benchReplay(lDirectory);
  benchTypes(lDirectory);
  benchSeek(lDirectory);
  Logger::get()->shutdown();
  Logger::destroy();
  return 0;
}
