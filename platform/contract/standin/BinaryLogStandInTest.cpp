// The stand-in's binary log: what stands in its file, and what becomes of records that the file system does not take.
#include <sys/resource.h>

#include <cerrno>
#include <csignal>
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
  EXPECT_EQ(-1, BinaryLogWrite(0, "a", 1));
  EXPECT_EQ("", content());
}

TEST_F(BinaryLogStandIn, WritesAnEmptyRecordWhateverWasInterruptedBefore) {
  syslogservice::RecordBatch lBatch;
  ASSERT_TRUE(lBatch.add(nullptr, 0));
  errno = EINTR;
  EXPECT_EQ(0, lBatch.writeTo(STDERR_FILENO));
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
  syslogservice::BinaryLogFile* const lpLog = syslogservice::BinaryLogFile::open(mStuck.c_str(), LIMIT_MS);
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

}  // namespace
