#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <optional>
#include <thread>

#include "LogRecords.h"
#include "NfwLogWriter.h"
#include "NfwZtFileCopy.h"
#include "PlatformSeams.h"
#include "SharedThread.h"
#include "TempDir.h"

namespace {

using nfwtest::LogRecordParts;
using nfwtest::parseLogRecords;
using nfwtest::readFile;

const int ACCEPTED = nfw::LogWriter::SUCCESS;
const int FAILED = nfw::LogWriter::FAILURE;
const int REFUSED = nfw::LogWriter::NOT_ACCEPTED;

class LogWriterTest : public testing::Test {
 protected:
  // Whatever the test did to the writer: its counts tell what the files hold.
  void TearDown() override {
    if (!mpWriter) return;
    mpWriter->stop();
    const nfw::LogRecordCounts lCounts = mpWriter->getRecordCounts();
    EXPECT_EQ(mTaken, lCounts.mRecorded + lCounts.mFailed);
    EXPECT_EQ(lCounts.missing() > 0, lCounts.mReason != nfw::LOG_LOSS_NONE);
    if (mHasOtherFiles) return;
    unsigned long long lBytes = 0;
    for (const std::string& lFile : mDir.files()) lBytes += readFile(lFile).size();
    EXPECT_EQ(lBytes, lCounts.mBytes);
    EXPECT_EQ(records().size(), lCounts.mRecorded);
  }
  void make(unsigned int nBufferSize = 100000, unsigned int nMaxFileSize = 1000000) {
    mpWriter.reset();
    mTaken = 0;
    mpWriter.emplace(nBufferSize, nMaxFileSize);
    ASSERT_TRUE(mpWriter->initialize());
  }
  void record(unsigned int nBufferSize = 100000, unsigned int nMaxFileSize = 1000000) {
    make(nBufferSize, nMaxFileSize);
    ASSERT_TRUE(mpWriter->start(mDir.path().c_str(), "drive", nullptr));
  }
  int write(const std::string& nData, int nId = 20) {
    const int lResult = mpWriter->write(nId, nData.data(), static_cast<unsigned int>(nData.size()));
    if (lResult == ACCEPTED) ++mTaken;
    return lResult;
  }
  /// Every record of every file, in order.
  std::vector<LogRecordParts> records() {
    std::vector<LogRecordParts> lAll;
    for (const std::string& lFile : mDir.files()) {
      size_t lRest = 1;
      for (LogRecordParts& lRecord : parseLogRecords(readFile(lFile), &lRest)) lAll.push_back(lRecord);
      EXPECT_EQ(0u, lRest) << lFile;
    }
    return lAll;
  }
  std::vector<std::string> data() {
    std::vector<std::string> lData;
    for (const LogRecordParts& lRecord : records()) lData.push_back(lRecord.mData);
    return lData;
  }
  size_t fileSize() { return readFile(mDir.files().back()).size(); }

  nfwtest::TempDir mDir;
  seams::CapturedLog mLog;
  seams::FixedLocalTime mTime{2024, 5, 6, 7, 8, 9, 10};
  std::optional<nfw::LogWriter> mpWriter;
  std::atomic<unsigned long long> mTaken{0};
  bool mHasOtherFiles = false;
};

TEST_F(LogWriterTest, WritesTheBytesOfARecord) {
  const seams::ManualClock lClock(0x01020304);
  record();
  EXPECT_EQ(ACCEPTED, write("hello", 0x7ABCDEF0));
  EXPECT_EQ(ACCEPTED, write(""));
  mpWriter->stop();
  ASSERT_EQ(std::vector<std::string>{mDir / "drive_20240506-070809_00.log"}, mDir.files());
  EXPECT_EQ(std::string("2024/05/06 07:08:09.010 ID7ABCDEF0: \xF0\xDE\xBC\x7A\x04\x03\x02\x01\x05\0\0\0hello\n", 54) +
                std::string("2024/05/06 07:08:09.010 ID00000014: \x14\0\0\0\x04\x03\x02\x01\0\0\0\0\n", 49),
            readFile(mDir.files()[0]));
  EXPECT_EQ(1u, mLog.count("##### Create Log Record File: File=" + mDir.files()[0]));
  EXPECT_EQ(1u, mLog.count("##### Close Log Record File: File=" + mDir.files()[0]));
}

TEST_F(LogWriterTest, BringsRecordsToTheMediumInTimeAndTellsOnceWhenItDoesNot) {
  seams::ManualClock lClock;
  seams::Failing lFailing(seams::FILE_SYNC, 1, 0);
  EXPECT_FALSE(nfw::LogWriter(1000, 1000).setSyncInterval(1000));
  record(100000, 100);
  ASSERT_TRUE(mpWriter->setSyncInterval(500));
  for (int i = 0; i < 3; ++i) {
    write(std::string(40, 'x'));  // a file each
    lClock.advance(500);
  }
  EXPECT_TRUE(mLog.waitFor("LogWriter::onSyncTimer(): Can't sync"));
  mpWriter->shutdown();
  EXPECT_EQ(1u, mLog.count("LogWriter::onSyncTimer(): Can't sync"));
  EXPECT_LE(2u, lFailing.hits());
}

TEST_F(LogWriterTest, ARecordBehindTheTimeOfAFileBeginsAnother) {
  seams::ManualClock lClock;
  make();
  mpWriter->setMaxFileTime(600000, true);  // the time is 07:08:09.010
  ASSERT_TRUE(mpWriter->start(mDir.path().c_str(), "drive", nullptr));
  const unsigned int STEPS[] = {0, 110989, 1, 0, 110989, 1};
  const size_t FILES[] = {1, 1, 2, 2, 2, 3};
  for (int i = 0; i < 6; ++i) {
    lClock.advance(STEPS[i]);
    EXPECT_EQ(ACCEPTED, write("x"));
    EXPECT_EQ(FILES[i], mDir.files().size()) << i;
  }
  mpWriter->setMaxFileTime(0, false);
}

TEST_F(LogWriterTest, StartsOnlyWhereAFileCanBe) {
  nfwtest::writeFile(mDir / "file", "");
  const std::string lLong(260, 'd');
  const std::string lFits(240, 'p');  // as a prefix, but not with the rest of the name
  const struct {
    std::optional<std::string> mDirectory, mPrefix;
    std::vector<std::string> mLines;
  } CASES[] = {
      {std::nullopt, "drive", {}},
      {mDir.path(), std::nullopt, {}},
      {mDir / "file", "drive", {}},
      {lLong, "drive", {"NfwLogWriter::start(): Can't copy dir path: " + lLong}},
      {mDir.path(), lLong, {"NfwLogWriter::start(): Can't copy file prefix: " + lLong}},
      {mDir.path(),
       lFits,
       {"NfwLogWriter::createFilePath(): Can't create base path",
        "LogWriter::open(): Can't create path: Dir=" + mDir.path() + " FilePrifix=" + lFits}},
      {mDir.path(),
       std::string(259 - mDir.path().size() - 1 - 16, 'p'),
       {"NfwLogWriter::createFilePath(): Can't create path", ""}},
      {mDir / "missing", "drive", {"LogWriter::open(): Can't open " + (mDir / "missing/drive_20240506-070809_00.log")}},
  };
  make();
  for (const auto& lCase : CASES) {
    mLog.clear();
    EXPECT_FALSE(mpWriter->start(lCase.mDirectory ? lCase.mDirectory->c_str() : nullptr,
                                 lCase.mPrefix ? lCase.mPrefix->c_str() : nullptr, nullptr));
    ASSERT_EQ(lCase.mLines.size(), mLog.texts().size());
    for (size_t i = 0; i < lCase.mLines.size(); ++i) {
      EXPECT_TRUE(lCase.mLines[i].empty() || lCase.mLines[i] == mLog.texts()[i]) << mLog.texts()[i];
    }
    EXPECT_FALSE(mpWriter->isRecording());
  }
  EXPECT_TRUE(mpWriter->start(mDir.path().c_str(), "drive", ""));
  EXPECT_FALSE(mpWriter->start(mDir.path().c_str(), "drive", nullptr));
  make(1000, 0);
  mLog.clear();
  EXPECT_FALSE(mpWriter->start(mDir.path().c_str(), "drive", nullptr));
  EXPECT_EQ(std::vector<std::string>{"LogWriter::open(): MaxLogFileSize == 0"}, mLog.texts());
}

TEST_F(LogWriterTest, RefusesInEveryOtherState) {
  nfw::LogWriter lWriter(1000, 1000);
  EXPECT_EQ(REFUSED, lWriter.write(1, "x", 1));
  EXPECT_FALSE(lWriter.start(mDir.path().c_str(), "drive", nullptr));
  lWriter.stop();
  EXPECT_TRUE(lWriter.initialize());
  EXPECT_FALSE(lWriter.initialize());
  EXPECT_EQ(REFUSED, lWriter.write(1, "x", 1));
  lWriter.shutdown();
  lWriter.shutdown();
  EXPECT_FALSE(lWriter.initialize());
  EXPECT_FALSE(lWriter.start(mDir.path().c_str(), "drive", nullptr));
  EXPECT_TRUE(mLog.texts().empty());
}

TEST_F(LogWriterTest, NamesWhatIsWrongWithARecord) {
  record(1000, 2000000);
  EXPECT_EQ(FAILED, mpWriter->write(-1, "x", 1));
  EXPECT_EQ(FAILED, mpWriter->write(0x1A, nullptr, 1));
  EXPECT_EQ(FAILED, mpWriter->write(0x1A, "x", 0xFFFFFFCFu));
  const struct {
    seams::Point mPoint;
    const char* mpWords;
  } CASES[] = {{seams::LOCAL_TIME, "Can't get local time"},
               {seams::LOCAL_TIME_FIELDS, "Can't get time"},
               {seams::TICK, "Can't get tick time"}};
  std::vector<std::string> lExpected = {"LogWriter::write(): LogTypeId is negative value",
                                        "LogWriter::write(): Data is null: Id=0x0000001A",
                                        "LogWriter::write(): Data is too big: Id=0x0000001A DataSize=4294967247 Byte"};
  for (const auto& lCase : CASES) {
    const seams::Failing lFailing(lCase.mPoint);
    EXPECT_EQ(FAILED, write("x", 0x1A));
    lExpected.push_back("LogWriter::write(): " + std::string(lCase.mpWords) + ": Id=0x0000001A");
  }
  std::vector<std::string> lLines = mLog.texts();
  lLines.erase(lLines.begin());  // the file's creation
  EXPECT_EQ(lExpected, lLines);
  for (const auto& lLine : mLog.lines()) EXPECT_EQ(lLine.mText[0] == '#' ? 4 : 1, lLine.mLevel);
  mpWriter->stop();
  EXPECT_TRUE(records().empty());
}

TEST_F(LogWriterTest, RotatesBehindARecordThatJustFits) {
  record(1000, 3 * 59);
  const std::string lData(10, 'a');
  for (int i = 0; i < 3; ++i) EXPECT_EQ(ACCEPTED, write(lData));
  EXPECT_EQ(1u, mDir.files().size());
  EXPECT_EQ(ACCEPTED, write(""));
  ASSERT_EQ(2u, mDir.files().size());
  EXPECT_EQ(1u, mLog.count("LogWriter::write(): New File was created: " + mDir.files()[1]));
  const std::string lLarge(500, 'L');  // larger than a file may be: whole, in its own
  EXPECT_EQ(ACCEPTED, write(lLarge));
  EXPECT_EQ(ACCEPTED, write("after"));
  EXPECT_EQ(4u, mDir.files().size());
  mpWriter->stop();
  EXPECT_EQ((std::vector<std::string>{lData, lData, lData, "", lLarge, "after"}), data());
}

TEST_F(LogWriterTest, MakesAHundredFilesASecond) {
  record(1000, 49);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(ACCEPTED, write(""));
  EXPECT_EQ(100u, mDir.files().size());
  EXPECT_EQ(mDir / "drive_20240506-070809_99.log", mDir.files().back());
  mLog.clear();
  EXPECT_EQ(FAILED, write(""));
  EXPECT_EQ((std::vector<std::string>{"##### Close Log Record File: File=" + mDir.files().back(),
                                      "NfwLogWriter::createFilePath(): Can't create path: Try Limit",
                                      "LogWriter::open(): Can't create path: Dir=" + mDir.path() + " FilePrifix=drive",
                                      "LogWriter::write(): Can't open new file: Id=0x00000014"}),
            mLog.texts());
  mpWriter->stop();
  EXPECT_EQ(100u, records().size());
}

TEST_F(LogWriterTest, NeverSharesAFileWithAnotherRecorder) {
  const size_t RECORDERS = 4;
  for (size_t i = 0; i < 25; ++i) {
    std::vector<std::thread> lRecorders;
    std::atomic<size_t> lReady{0};
    for (size_t k = 0; k < RECORDERS; ++k) {
      lRecorders.emplace_back([&] {
        nfw::LogWriter lWriter(10000, 10000);
        EXPECT_TRUE(lWriter.initialize());
        for (++lReady; lReady < RECORDERS;) std::this_thread::yield();
        EXPECT_TRUE(lWriter.start(mDir.path().c_str(), "drive", nullptr));
        EXPECT_EQ(ACCEPTED, lWriter.write(20, "one", 3));
        lWriter.stop();
      });
    }
    for (std::thread& lRecorder : lRecorders) lRecorder.join();
  }
  EXPECT_EQ(25 * RECORDERS, mDir.files().size());
  EXPECT_EQ(25 * RECORDERS, records().size());
}

TEST_F(LogWriterTest, FlushesForRoomAndWritesWhatTheBufferCannotHoldDirectly) {
  record(200);
  EXPECT_EQ(ACCEPTED, write(std::string(100, 'a')));
  mLog.clear();
  EXPECT_EQ(ACCEPTED, write(std::string(100, 'b')));
  EXPECT_EQ(149u, fileSize());
  EXPECT_EQ(ACCEPTED, write(std::string(152, 'c')));
  EXPECT_EQ(
      (std::vector<std::string>{
          "LogWriter::write(): Log Buffer is not Enough: Id=0x00000014 Record=149 Byte Base=48 Byte Data=100 Byte "
          "Free=51 Byte",
          "LogWriter::write(): Flushed File",
          "LogWriter::write(): Log Buffer is not Enough: Id=0x00000014 Record=201 Byte Base=48 Byte Data=152 Byte "
          "Free=51 Byte",
          "LogWriter::write(): Flushed File",
          "LogWriter::write(): Log Data is too Big: Id=0x00000014 Record=201 Byte Base=48 Byte Data=152 Byte "
          "Buffer=200 Byte",
          "LogWriter::write(): Written File Directory"}),
      mLog.texts());
  for (const auto& lLine : mLog.lines()) EXPECT_EQ(2, lLine.mLevel);
  EXPECT_EQ(499u, fileSize());
  record(0);  // no buffer at all: every record goes directly
  EXPECT_EQ(ACCEPTED, write("x"));
  mpWriter.reset();
  EXPECT_EQ(4u, records().size());
}

TEST_F(LogWriterTest, LeavesLessThanABatchInTheBuffer) {
  record(40000);
  const std::string lData(1024 - 49, 'x');
  nfwtest::RawMsg lMsg;
  for (int i = 0; i < 9; ++i) write(lData);
  EXPECT_EQ(ACCEPTED, write(std::string(1023 - 49, 'y')));  // 10239 bytes
  mpWriter->onWriteFile(lMsg);
  EXPECT_EQ(0u, fileSize());
  mpWriter->flush();
  EXPECT_EQ(10239u, fileSize());
  {
    const seams::Failing lPost(seams::POST);  // the thread stays asleep
    for (int i = 0; i < 10; ++i) EXPECT_EQ(ACCEPTED, write(lData));
    EXPECT_EQ(ACCEPTED, write(lData));
    EXPECT_EQ(2u, mLog.count("LogWriter::write(): Can't post thread: Id=0x00000014"));
    mpWriter->onWriteFile(lMsg);
    EXPECT_EQ(10239u + 10240, fileSize());
  }
  mpWriter->stop();
  EXPECT_EQ(21u, records().size());
}

TEST_F(LogWriterTest, IsWokenWhenABatchIsThere) {
  record(1000000);
  for (int i = 0; i < 3000; ++i) ASSERT_EQ(ACCEPTED, write("record " + std::to_string(i)));
  nfwtest::RawMsg lMsg;
  while (fileSize() + 10240 <= 3000 * 56) std::this_thread::yield();
  mpWriter->stop();
  const std::vector<std::string> lData = data();
  ASSERT_EQ(3000u, lData.size());
  for (size_t i = 0; i < lData.size(); ++i) ASSERT_EQ("record " + std::to_string(i), lData[i]);
}

TEST_F(LogWriterTest, LosesNoWholeRecordToAFailedWrite) {
  record(40000);
  const std::string lData(1000 - 49, 'x');
  for (int i = 0; i < 30; ++i) write(lData);
  nfwtest::RawMsg lMsg;
  while (fileSize() < 20480) mpWriter->onWriteFile(lMsg);  // ends inside a record
  const std::string lLine = "Can't write data: " + mDir.files()[0];
  {
    const seams::Failing lFailing(seams::FILE_WRITE);
    mpWriter->flush();
    EXPECT_EQ(1u, mLog.count("LogWriter::flush(): " + lLine));
    EXPECT_EQ(20000u, fileSize());              // cut back to whole records
    for (int i = 0; i < 12; ++i) write(lData);  // wakes the thread
    EXPECT_TRUE(mLog.waitFor("LogWriter::onWriteFile(): " + lLine));
    mpWriter->flush();  // comes behind the thread's handler
    EXPECT_EQ(20000u, fileSize());
  }
  EXPECT_EQ(ACCEPTED, write("after"));
  mpWriter->stop();
  EXPECT_EQ(42u, records().size());  // of 43, the one that was cut is lost
  EXPECT_EQ("after", data().back());
}

// A disk that fills up in the middle of a write: the kernel takes a part.
TEST_F(LogWriterTest, CutsAShortWriteBackAndGoesOnWhenThereIsRoomAgain) {
  rlimit lOld;
  ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &lOld));
  const auto lOldAction = signal(SIGXFSZ, SIG_IGN);
  const rlimit lSmall = {5000, lOld.rlim_max};
  record(4000);
  ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &lSmall));
  const std::string lData(451, 'x');  // 500 bytes a record
  std::vector<int> lResults;
  for (int i = 0; i < 40; ++i) lResults.push_back(write(lData));
  EXPECT_EQ(FAILED, lResults.back());
  EXPECT_LE(1u, mLog.count("LogWriter::write(): Can't write base data to buffer: Ret=4294967294 Id=0x00000014"));
  EXPECT_EQ(5000u, fileSize());                      // what finds room stays
  EXPECT_EQ(FAILED, write(std::string(4000, 'L')));  // too large for the buffer: may not stand in another record
  EXPECT_EQ(1u, mLog.count("LogWriter::write(): Can't write base data to file: Ret=4294967295 Id=0x00000014"));
  ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &lOld));
  signal(SIGXFSZ, lOldAction);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(ACCEPTED, write("after"));
  mpWriter->stop();
  EXPECT_EQ(std::count(lResults.begin(), lResults.end(), ACCEPTED) + 20, static_cast<long>(records().size()));
}

TEST_F(LogWriterTest, DirectWritesAreWholeOrCutOff) {
  mHasOtherFiles = true;  // of three writers
  for (unsigned int i = 0; i < 3; ++i) {
    record(60);
    const seams::Failing lFailing(seams::FILE_WRITE, i, 1);
    EXPECT_EQ(FAILED, write("longer than the buffer"));
    static const char* const PARTS[] = {"base data", "data", "postfix"};
    EXPECT_EQ(1u, mLog.count("LogWriter::write(): Can't write " + std::string(PARTS[i]) +
                             " to file: Ret=4294967295 Id=0x00000014"));
    EXPECT_EQ(0u, fileSize());
    EXPECT_EQ(ACCEPTED, write("longer than the buffer"));
    mpWriter->stop();
  }
  EXPECT_EQ(3u, records().size());
}

/// Whatever is written to the open file of this path fails from now on, as on a stick that was pulled.
void breakOpenFile(const std::string& nPath) {
  const int lFull = ::open("/dev/full", O_WRONLY);
  for (const auto& lEntry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code lIgnored;
    if (std::filesystem::read_symlink(lEntry, lIgnored) != nPath) continue;
    dup2(lFull, std::stoi(lEntry.path().filename()));
  }
  ::close(lFull);
}

TEST_F(LogWriterTest, LeavesAFileThatTakesNothingAnyMoreForAnotherOnceInTenSeconds) {
  mHasOtherFiles = true;  // and they are removed
  seams::ManualClock lClock;
  for (const unsigned int lBufferSize : {4000u, 0u}) {  // without a buffer, each record by itself
    record(lBufferSize);
    mLog.clear();
    std::vector<std::string> lAccepted;
    for (int i = 0; i < 60; ++i) {
      if (i == 40) lClock.advance(10000);
      if (i == 10 || i == 20) breakOpenFile(mDir.files().back());
      if (write(std::to_string(i) + std::string(449, 'x')) == ACCEPTED) lAccepted.push_back(std::to_string(i));
    }
    mpWriter->stop();
    EXPECT_EQ(3u, mDir.files().size());
    EXPECT_EQ(1u, mLog.count("##### Close Log Record File: File=" + mDir.files()[1]));
    EXPECT_EQ(1u, mLog.count("LogWriter::write(): New File was created: " + mDir.files()[2]));
    std::vector<std::string> lData;
    for (const std::string& lText : data()) lData.push_back(lText.substr(0, lText.find('x')));
    EXPECT_EQ(lAccepted, lData);
    const nfw::LogRecordCounts lCounts = mpWriter->getRecordCounts();
    EXPECT_EQ(lAccepted.size(), lCounts.mRecorded);
    EXPECT_EQ(60u, lCounts.mRecorded + lCounts.mRefused);
    EXPECT_EQ(0u, lCounts.mFailed);
    EXPECT_EQ(lBufferSize > 0 ? 44u : 39u, lAccepted.size());  // until the second breaks, and from its replacement on
    for (const std::string& lFile : mDir.files()) std::filesystem::remove(lFile);
  }
}

TEST_F(LogWriterTest, AFullDiskGetsNoTrailOfEmptyFiles) {
  seams::ManualClock lClock;
  for (const unsigned int lBufferSize : {4000u, 0u}) {
    record(lBufferSize);
    const std::vector<std::string> lFiles = mDir.files();
    const seams::Failing lFull(seams::FILE_WRITE);
    std::optional<seams::Failing> lNoFile;
    for (int i = 0; i < 600; ++i) {
      if (i == 300) lNoFile.emplace(seams::FILE_OPEN);
      write(std::string(451, 'x'));
      EXPECT_EQ(lFiles, mDir.files());
      lClock.advance(100);
    }
    EXPECT_EQ(3u, lNoFile->hits());  // in thirty seconds
    mpWriter->stop();
  }
}

// The name is another's meanwhile.
TEST_F(LogWriterTest, CutsItsOwnFileBackAndNotTheOneOfItsName) {
  mHasOtherFiles = true;
  record(40000);
  const std::string lPath = mDir.files()[0];
  for (int i = 0; i < 30; ++i) write(std::string(1000 - 49, 'x'));
  nfwtest::RawMsg lMsg;
  while (fileSize() < 20480) mpWriter->onWriteFile(lMsg);  // ends inside a record
  std::filesystem::rename(lPath, mDir / "moved");
  nfwtest::writeFile(lPath, std::string(50000, 'o'));
  {
    const seams::Failing lFailing(seams::FILE_WRITE);
    mpWriter->flush();
  }
  mpWriter->stop();
  EXPECT_EQ(50000u, readFile(lPath).size());
  size_t lRest = 1;
  EXPECT_EQ(29u, parseLogRecords(readFile(mDir / "moved"), &lRest).size());
  EXPECT_EQ(0u, lRest);
}

TEST_F(LogWriterTest, GoesOnWhenAVanishedDirectoryComesBack) {
  record(1000, 100);
  EXPECT_EQ(ACCEPTED, write(std::string(40, 'a')));
  std::filesystem::remove_all(mDir.path());
  mLog.clear();
  for (int i = 0; i < 2; ++i) EXPECT_EQ(FAILED, write(std::string(40, 'b')));
  const std::string lPath = mDir / "drive_20240506-070809_00.log";
  EXPECT_EQ((std::vector<std::string>{
                "##### Close Log Record File: File=" + lPath, "LogWriter::open(): Can't open " + lPath,
                "LogWriter::write(): Can't open new file: Id=0x00000014", "LogWriter::open(): Can't open " + lPath,
                "LogWriter::write(): Can't open new file: Id=0x00000014"}),
            mLog.texts());
  EXPECT_TRUE(mpWriter->isRecording());
  std::filesystem::create_directory(mDir.path());
  EXPECT_EQ(ACCEPTED, write("back"));
  mpWriter->stop();
  EXPECT_EQ(std::vector<std::string>{"back"}, data());
  EXPECT_EQ(2u, mpWriter->getRecordCounts().mRefused);
}

// What is removed while it is written is lost with its name; what is moved away is not.
TEST_F(LogWriterTest, CountsTheRecordsOfARemovedFileAsLost) {
  record(1000, 1000);
  EXPECT_EQ(ACCEPTED, write("moved"));
  std::filesystem::create_directory(mDir / "away");
  std::filesystem::rename(mDir.files()[0], mDir / "away/first.log");
  EXPECT_EQ(0u, mpWriter->getRecordCounts().missing());
  EXPECT_EQ(ACCEPTED, write(std::string(940, 'x')));
  std::filesystem::remove(mDir.files()[0]);
  const nfw::LogRecordCounts lCounts = mpWriter->getRecordCounts();
  EXPECT_EQ(1u, lCounts.mRecorded);
  EXPECT_EQ(1u, lCounts.mFailed);
  EXPECT_EQ(nfw::LOG_LOSS_REMOVED, lCounts.mReason);
  EXPECT_EQ(ACCEPTED, write(std::string(940, 'y')));
  mpWriter->stop();
  EXPECT_EQ(1u, mpWriter->getRecordCounts().mFailed);
  std::filesystem::rename(mDir / "away/first.log", mDir / "first.log");
}

// --- backup

TEST_F(LogWriterTest, BacksUpADirectoryThatHoldsTheRecording) {
  const std::string lRecording = mDir / "rec";
  mHasOtherFiles = true;
  std::filesystem::create_directories(mDir / "sub/deep");
  std::filesystem::create_directory(lRecording);
  nfwtest::writeFile(mDir / "a", std::string(200000, 'a'));
  nfwtest::writeFile(mDir / "sub/deep/b", "b");
  std::filesystem::create_symlink("/etc/passwd", mDir / "link");
  ASSERT_EQ(0, mkfifo((mDir / "pipe").c_str(), 0600));
  const seams::ManualClock lClock;
  make();
  ASSERT_TRUE(mpWriter->start(lRecording.c_str(), "drive", mDir.path().c_str()));
  const std::string lWords = "[" + mDir.path() + "->" + lRecording + "/backup]";
  ASSERT_TRUE(mLog.waitFor("##### Backup Complete " + lWords + " Time=0 msec #####"));
  EXPECT_EQ(1u, mLog.count("##### Backup Start " + lWords + " #####"));
  while (write("x") != ACCEPTED) std::this_thread::yield();
  mpWriter->stop();
  EXPECT_EQ(std::string(200000, 'a'), readFile(lRecording + "/backup/a"));
  EXPECT_EQ("b", readFile(lRecording + "/backup/sub/deep/b"));
  EXPECT_TRUE(std::filesystem::exists(lRecording + "/backup/rec/drive_20240506-070809_00.log"));
  for (const char* const lpName : {"link", "pipe", "rec/backup"}) {
    EXPECT_FALSE(std::filesystem::exists(lRecording + "/backup/" + lpName)) << lpName;
  }
}

TEST_F(LogWriterTest, RecordsAlsoWhenThereIsNothingToBackUp) {
  make();
  ASSERT_TRUE(mpWriter->start(mDir.path().c_str(), "drive", (mDir / "missing").c_str()));
  ASSERT_TRUE(mLog.waitFor("##### Backup Failure [" + (mDir / "missing") + "->" + (mDir / "backup") + "] #####"));
  while (write("x") != ACCEPTED) std::this_thread::yield();
  EXPECT_EQ(nfw::LOG_BACKUP_FAILED, mpWriter->getBackup());
  mpWriter->stop();
  {
    const seams::Failing lPost(seams::POST);
    ASSERT_TRUE(mpWriter->start(mDir.path().c_str(), "drive", "/etc"));
    EXPECT_EQ(1u, mLog.count("LogWriter::start(): Can't backup"));
  }
  EXPECT_EQ(ACCEPTED, write("y"));
  mpWriter->stop();
  ASSERT_TRUE(mpWriter->start(mDir.path().c_str(), "drive", std::string(260, 'x').c_str()));
  EXPECT_EQ(ACCEPTED, write("z"));
  EXPECT_EQ(nfw::LOG_BACKUP_FAILED, mpWriter->getBackup());
}

TEST_F(LogWriterTest, StopCancelsABackupAtEveryMoment) {
  nfwtest::TempDir lSource;
  for (int i = 0; i < 20; ++i) nfwtest::writeFile(lSource / std::to_string(i), std::string(100000, 'x'));
  make();
  for (int i = 0; i < 20; ++i) {
    ASSERT_TRUE(mpWriter->start(mDir.path().c_str(), ("r" + std::to_string(i)).c_str(), lSource.path().c_str()));
    if (i % 2 != 0) mLog.waitFor("##### Backup Start [" + lSource.path() + "->" + (mDir / "backup") + "] #####");
    EXPECT_FALSE(mpWriter->start(mDir.path().c_str(), "drive", nullptr));
    if (i == 19) mpWriter->shutdown();
    mpWriter->stop();
    EXPECT_FALSE(mpWriter->isRecording());
    mLog.clear();
  }
}

TEST(ZtFileCopyTest, AnswersACancelMadeBefore) {
  nfwtest::TempDir lDir;
  nfw::ZtFileCopy lCopy;
  lCopy.requestCancel();
  EXPECT_EQ(nfw::ZtFileCopy::CANCELED, lCopy.execute("/etc", (lDir / "to").c_str(), 0));
  lCopy.clearCancel();
  EXPECT_EQ(nfw::ZtFileCopy::FAILED, lCopy.execute((lDir / "none").c_str(), (lDir / "to").c_str(), 0));
  EXPECT_EQ(nfw::ZtFileCopy::FAILED, lCopy.execute(lDir.path().c_str(), (lDir / "no/parent").c_str(), 0));
  EXPECT_EQ(nfw::ZtFileCopy::FAILED, lCopy.execute(lDir.path().c_str(), lDir.path().c_str(), 0));
}

TEST_F(LogWriterTest, UnknownMessagesAreNamed) {
  make();
  nfwtest::RawMsg lNone, lUnknown(1);
  mpWriter->receiveMsg(0, lNone);
  mpWriter->receiveMsg(0, lUnknown);
  EXPECT_EQ((std::vector<std::string>{"LogWriter::receiveMsg(): Can't get MsgId",
                                      "LogWriter::receiveMsg(): UnknownMsg: MsgId=1"}),
            mLog.texts());
}

// Under the thread sanitizer: everything at once, for as long as the main thread starts and stops.
TEST_F(LogWriterTest, StartsAndStopsAThousandTimesUnderWriters) {
  make(20000, 50000);
  mHasOtherFiles = true;  // and they are removed
  std::atomic<bool> lIsOver{false};
  std::atomic<unsigned int> lAccepted{0};
  std::vector<std::thread> lWriters;
  for (int i = 0; i < 3; ++i) {
    lWriters.emplace_back([&, i] {
      const std::string lData(static_cast<size_t>(30 + 200 * i), static_cast<char>('a' + i));
      while (!lIsOver) {
        if (write(lData, i) == ACCEPTED) ++lAccepted;
        if (i == 2) mpWriter->flush();
      }
    });
  }
  for (int i = 0; i < 1000; ++i) {
    const bool lIsLong = i % 50 == 0;
    ASSERT_TRUE(mpWriter->start(mDir.path().c_str(), "s", nullptr));
    const unsigned int lBefore = lAccepted;
    while (lIsLong && lAccepted < lBefore + 100) std::this_thread::yield();
    mpWriter->stop();
    EXPECT_FALSE(mpWriter->isRecording());
    if (lIsLong) records();  // nothing but whole ones
    for (const std::string& lFile : mDir.files()) std::filesystem::remove(lFile);
    mLog.clear();
  }
  lIsOver = true;
  for (std::thread& lThread : lWriters) lThread.join();
}

}  // namespace
