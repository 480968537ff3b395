// The stand-in's binary log: what stands in its file, and what becomes of records that the file system does not take.
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <thread>
#include <vector>

#include "../../syslog/src/BinaryLogFile.h"
#include "../../syslog/src/RecordBatch.h"
#include "ContractSupport.h"
#include "PlatformSeams.h"
#include "SysLogService.h"
#include "SysLogServiceHost.h"
#include "ThreadSupport.h"

namespace {

using contract::readFile;

using Counts = std::vector<unsigned long long>;  // recorded, bytes, waiting, refused, failed, error

class BinaryLogStandIn : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(syslogservice::setBinaryLogFile((mDir / "log").c_str())); }
  void TearDown() override { syslogservice::setBinaryLogFile(nullptr); }
  std::string content() const {
    EXPECT_TRUE(syslogservice::flushBinaryLog(LIMIT_MS));
    return readFile(mDir / "log");
  }
  static Counts counts() {
    const syslogservice::BinaryLogCounts l = syslogservice::binaryLogCounts();
    return {l.mRecorded, l.mBytes, l.mWaiting, l.mRefused, l.mFailed, static_cast<unsigned long long>(l.mError)};
  }

  static constexpr unsigned int LIMIT_MS = 20000;
  contract::TempDir mDir;
  // A file system that does not answer, as far as a writer can tell: a pipe that nobody empties.
  contract::Pipe mPipe;
  const std::string mStuck = "/proc/self/fd/" + std::to_string(mPipe.writeEnd());
};

TEST_F(BinaryLogStandIn, AppendsExactlyTheBytes) {
  EXPECT_EQ(0, BinaryLogWrite(0, "a\0\n\xFF", 4));
  EXPECT_EQ(0, BinaryLogWrite(0, nullptr, 0));
  EXPECT_FALSE(syslogservice::setBinaryLogFile(mDir.path().c_str()));
  ASSERT_TRUE(syslogservice::setBinaryLogFile((mDir / "log").c_str()));
  EXPECT_EQ((Counts{0, 0, 0, 0, 0, 0}), counts());
  EXPECT_EQ(0, BinaryLogWrite(0, "bc", 2));
  EXPECT_EQ(std::string("a\0\n\xFF"
                        "bc",
                        6),
            content());
}

TEST_F(BinaryLogStandIn, TellsOfAFailure) {
  EXPECT_EQ(-1, BinaryLogWrite(1, "a", 1));
  EXPECT_EQ(-1, BinaryLogWrite(0, nullptr, 1));
  ASSERT_TRUE(syslogservice::setBinaryLogFile("/dev/full"));
  EXPECT_EQ(0, BinaryLogWrite(0, "a", 1));
  EXPECT_FALSE(syslogservice::flushBinaryLog(LIMIT_MS));
  EXPECT_EQ((Counts{0, 0, 1, 0, 0, ENOSPC}), counts());
  EXPECT_EQ(-1, BinaryLogWrite(0, std::string(2000000, 'a').data(), 2000000));
  EXPECT_FALSE(syslogservice::setBinaryLogFile(""));
  EXPECT_EQ(ENOSPC, errno);
  EXPECT_EQ((Counts{0, 0, 0, 1, 1, ENOSPC}), counts());
  EXPECT_FALSE(syslogservice::setBinaryLogFile(std::string(5000, '/').c_str()));
  EXPECT_EQ(ENAMETOOLONG, errno);
  EXPECT_EQ(-1, BinaryLogWrite(0, "a", 1));
  EXPECT_EQ("", content());
}

TEST_F(BinaryLogStandIn, WritesAnEmptyRecordWhateverWasInterruptedBefore) {
  syslogservice::RecordBatch lBatch;
  ASSERT_TRUE(lBatch.add(nullptr, 0));
  errno = EINTR;
  EXPECT_EQ(0, lBatch.writeTo(STDERR_FILENO, 0));
  EXPECT_EQ(1U, lBatch.wholeNum());
}

TEST_F(BinaryLogStandIn, KeepsItsFileWhenNoThreadCanBeMadeForAnother) {
  {
    const seams::Failing lFailing(seams::THREAD_START);
    EXPECT_FALSE(syslogservice::setBinaryLogFile((mDir / "other").c_str()));
    EXPECT_EQ(EAGAIN, errno);
  }
  EXPECT_EQ(0, BinaryLogWrite(0, "a", 1));
  EXPECT_EQ("a", content());
}

TEST_F(BinaryLogStandIn, ManyMayEndItsFile) {
  for (int i = 0; i < 100; ++i) {
    ASSERT_TRUE(syslogservice::setBinaryLogFile((mDir / "log").c_str()));
    EXPECT_EQ(0, BinaryLogWrite(0, "a", 1));
    std::thread lOther([] { EXPECT_TRUE(syslogservice::setBinaryLogFile(nullptr)); });
    EXPECT_TRUE(syslogservice::setBinaryLogFile(nullptr));
    lOther.join();
  }
  EXPECT_EQ(std::string(100, 'a'), content());
}

TEST_F(BinaryLogStandIn, DoesNotWaitForAFileSystemThatDoesNotAnswer) {
  ASSERT_TRUE(syslogservice::setBinaryLogFile(mStuck.c_str()));
  std::string lTaken;
  for (unsigned int i = 0; i < 3000; ++i) {
    const std::string lRecord(1000, static_cast<char>('a' + i % 26));
    if (BinaryLogWrite(0, lRecord.data(), 1000) == 0) lTaken += lRecord;
  }
  const syslogservice::BinaryLogCounts lStuck = syslogservice::binaryLogCounts();
  EXPECT_EQ(3000U, lStuck.mRecorded + lStuck.mWaiting + lStuck.mRefused);
  EXPECT_GE(lStuck.mWaiting, 900U);
  EXPECT_GE(lStuck.mRefused, 900U);
  EXPECT_FALSE(syslogservice::flushBinaryLog(1));
  std::string lRead;
  EXPECT_TRUE(contract::eventually([&] { return (lRead += mPipe.drain()).size() >= lTaken.size(); }));
  EXPECT_EQ(lTaken, lRead);
  EXPECT_TRUE(syslogservice::flushBinaryLog(LIMIT_MS));
  EXPECT_EQ((Counts{lTaken.size() / 1000, lTaken.size(), 0, lStuck.mRefused, 0, 0}), counts());
}

TEST_F(BinaryLogStandIn, LeavesAFileThatIsStuckBehind) {
  syslogservice::BinaryLogFiles lOne;
  lOne.mpDirectory = mStuck.c_str();
  syslogservice::BinaryLogFile* const lpLog = syslogservice::BinaryLogFile::open(lOne, 0, LIMIT_MS);
  ASSERT_NE(nullptr, lpLog);
  lpLog->begin();
  for (int i = 0; i < 200; ++i) EXPECT_TRUE(lpLog->append(std::string(1000, 'a').data(), 1000));
  EXPECT_FALSE(lpLog->flush(1));
  const syslogservice::BinaryLogCounts lCounts = lpLog->finish(1);
  EXPECT_EQ(200U, lCounts.mRecorded + lCounts.mFailed);
  EXPECT_GE(lCounts.mFailed, 100U);
  EXPECT_EQ(ETIMEDOUT, lCounts.mError);
  syslogservice::BinaryLogFile::release(lpLog);
  mPipe.closeReadEnd();  // the thread gets an error now, and no signal
}

TEST_F(BinaryLogStandIn, HoldsWholeRecordsWhenTheDiskFills) {
  EXPECT_EQ(0, BinaryLogWrite(0, "12345678", 8));
  EXPECT_EQ("12345678", content());
  signal(SIGXFSZ, SIG_IGN);
  rlimit lLimit;
  getrlimit(RLIMIT_FSIZE, &lLimit);
  const rlimit lFull = {13, lLimit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &lFull);
  EXPECT_EQ(0, BinaryLogWrite(0, "abcdefgh", 8));
  EXPECT_FALSE(syslogservice::flushBinaryLog(LIMIT_MS));
  EXPECT_EQ("12345678", readFile(mDir / "log"));
  EXPECT_EQ((Counts{1, 8, 1, 0, 0, EFBIG}), counts());
  setrlimit(RLIMIT_FSIZE, &lLimit);
  EXPECT_EQ(0, BinaryLogWrite(0, "ABCDEFGH", 8));
  EXPECT_EQ("12345678abcdefghABCDEFGH", content());
  EXPECT_EQ((Counts{3, 24, 0, 0, 0, 0}), counts());
}

// Files that follow one another, in their order.
class BinaryLogSeries : public BinaryLogStandIn {
 protected:
  void begin(unsigned int nMaxSize, unsigned int nMaxTimeMs) {
    const std::string lDirectory = mDir / "series";
    ::mkdir(lDirectory.c_str(), 0700);
    ASSERT_TRUE(syslogservice::setBinaryLogFiles({lDirectory.c_str(), "s", nMaxSize, nMaxTimeMs, false}));
  }
  void write(const std::string& nRecords) const {
    for (const char lRecord : nRecords) {
      EXPECT_EQ(0, BinaryLogWrite(0, std::string(10, lRecord).data(), 10));
    }
    EXPECT_TRUE(syslogservice::flushBinaryLog(LIMIT_MS));
  }
  std::vector<std::string> files() const {
    std::vector<std::string> lPaths;
    for (const auto& lEntry : std::filesystem::directory_iterator(mDir / "series")) lPaths.push_back(lEntry.path());
    std::sort(lPaths.begin(), lPaths.end());
    return lPaths;
  }
  /// The first letter of each record, and a comma between files.
  std::string contents() const {
    std::string lAll;
    for (const std::string& lPath : files()) {
      const std::string lFile = readFile(lPath);
      for (size_t i = 0; i < lFile.size(); i += 10) lAll += lFile[i];
      lAll += ",";
    }
    return lAll;
  }
};

TEST_F(BinaryLogSeries, beginsAnotherFileWhereARecordWouldNotFit) {
  begin(35, 0);
  write("abcdefgh");
  EXPECT_EQ("abc,def,gh,", contents());
  EXPECT_EQ((Counts{8, 80, 0, 0, 0, 0}), counts());
  const std::string lName = files().front().substr((mDir / "series/").size());
  EXPECT_EQ(24U, lName.size());
  EXPECT_EQ("s_20-_.log", lName.substr(0, 4) + lName[10] + lName[17] + lName.substr(20));
  begin(5, 0);
  write("ij");
  EXPECT_EQ("abc,def,gh,i,j,", contents());
}

TEST_F(BinaryLogSeries, beginsAnotherFileWhenTheTimeIsOver) {
  seams::ManualClock lClock;
  begin(0, 1000);
  write("ab");
  lClock.advance(999);
  write("c");
  lClock.advance(1);
  write("de");
  EXPECT_EQ("abc,de,", contents());
}

TEST_F(BinaryLogSeries, goesOnBehindAFileThatWasRemovedAndInOneThatHasNoSuccessor) {
  begin(25, 0);
  write("abc");
  std::filesystem::remove(files().back());
  write("d");
  EXPECT_EQ("ab,d,", contents());
  EXPECT_EQ((Counts{3, 30, 0, 0, 1, 0}), counts());
  std::filesystem::rename(mDir / "series", mDir / "away");
  write("efg");
  std::filesystem::rename(mDir / "away", mDir / "series");
  EXPECT_EQ("ab,defg,", contents());
  EXPECT_EQ((Counts{6, 60, 0, 0, 1, 0}), counts());
}

}  // namespace
