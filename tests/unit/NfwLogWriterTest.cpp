#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <future>
#include <optional>
#include <thread>

#include "LogRecords.h"
#include "NfwLogWriter.h"
#include "NfwStreamBuffer.h"
#include "NfwZtFileCopy.h"
#include "PlatformSeams.h"
#include "Replays.h"
#include "SharedThread.h"
#include "TempDir.h"

namespace {

using nfwtest::eventually;
using nfwtest::LogRecordParts;
using nfwtest::parseLogRecords;
using nfwtest::readFile;
using Strings = std::vector<std::string>;

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
  /// Records of a size each, with what they have before and after their data.
  void fill(int nCount, size_t nSize) {
    for (int i = 0; i < nCount; ++i) write(std::string(nSize - 49, 'x'));
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
  Strings data() {
    Strings lData;
    for (const LogRecordParts& lRecord : records()) lData.push_back(lRecord.mData);
    return lData;
  }
  size_t fileSize() { return readFile(mDir.files().back()).size(); }

  nfwtest::TempDir mDir;
  seams::CapturedLog mLog;
  std::optional<seams::FixedLocalTime> mTime{std::in_place, 2024, 5, 6, 7, 8, 9, 10};
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
  ASSERT_EQ(Strings{mDir / "drive_20240506-070809_00.log"}, mDir.files());
  EXPECT_EQ(std::string("2024/05/06 07:08:09.010 ID7ABCDEF0: \xF0\xDE\xBC\x7A\x04\x03\x02\x01\x05\0\0\0hello\n", 54) +
                std::string("2024/05/06 07:08:09.010 ID00000014: \x14\0\0\0\x04\x03\x02\x01\0\0\0\0\n", 49),
            readFile(mDir.files()[0]));
  EXPECT_EQ(1u, mLog.count("##### Create Log Record File: File=" + mDir.files()[0]));
  EXPECT_EQ(1u, mLog.count("##### Close Log Record File: File=" + mDir.files()[0]));
}

TEST_F(LogWriterTest, ARecordHasTheTimeOfItsOwnWrite) {
  record();
  unsigned int l[] = {2024, 5, 6, 7, 8, 9, 10};
  Strings lExpected, lTexts;
  for (unsigned int& lField : l) {  // two records in a row differ in one field
    ++lField;
    mTime.emplace(l[0], l[1], l[2], l[3], l[4], l[5], l[6]);
    write("");
    char lText[60];
    snprintf(lText, sizeof lText, "%04u/%02u/%02u %02u:%02u:%02u.%03u ID00000014: ", l[0], l[1], l[2], l[3], l[4], l[5],
             l[6]);
    lExpected.push_back(lText);
  }
  mpWriter->stop();
  for (const LogRecordParts& lRecord : records()) lTexts.push_back(lRecord.mText);
  EXPECT_EQ(lExpected, lTexts);
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
  mpWriter->setMaxFileTime(0, true);
}

TEST_F(LogWriterTest, StartsOnlyWhereAFileCanBe) {
  const std::string lFile = mDir / "file", lMissing = mDir / "missing";
  nfwtest::writeFile(lFile, "");
  const std::string lLong(260, 'd');
  const std::string lFits(240, 'p');                                  // as a prefix, but not with the rest of the name
  const std::string lNoName(259 - mDir.path().size() - 1 - 16, 'p');  // as the one before, but for the serial
  const char* const lpDir = mDir.path().c_str();
  const std::string lNoPathMade = "NfwLogWriter::createFilePath(): Can't ";
  const std::string lNoPath = "LogWriter::open(): Can't create path: Dir=" + mDir.path() + " FilePrifix=";
  const struct {
    const char *mpDirectory, *mpPrefix;
    Strings mLines;
    std::optional<seams::Point> mPoint = {};
  } CASES[] = {
      {nullptr, "drive", {}},
      {lpDir, nullptr, {}},
      {lFile.c_str(), "drive", {}},
      {lLong.c_str(), "drive", {"NfwLogWriter::start(): Can't copy dir path: " + lLong}},
      {lpDir, lLong.c_str(), {"NfwLogWriter::start(): Can't copy file prefix: " + lLong}},
      {lpDir, lFits.c_str(), {lNoPathMade + "create base path", lNoPath + lFits}},
      {lpDir, lNoName.c_str(), {lNoPathMade + "create path", lNoPath + lNoName}},
      {lMissing.c_str(), "drive", {"LogWriter::open(): Can't open " + lMissing + "/drive_20240506-070809_00.log"}},
      {lpDir, "drive", {lNoPathMade + "get local time", lNoPath + "drive"}, seams::LOCAL_TIME},
      {lpDir, "drive", {lNoPathMade + "get time", lNoPath + "drive"}, seams::LOCAL_TIME_FIELDS},
  };
  make();
  for (const auto& lCase : CASES) {
    mLog.clear();
    std::optional<seams::Failing> lFailing;
    if (lCase.mPoint) lFailing.emplace(*lCase.mPoint);
    EXPECT_FALSE(mpWriter->start(lCase.mpDirectory, lCase.mpPrefix, nullptr));
    EXPECT_EQ(lCase.mLines, mLog.texts());
    for (const auto& lLine : mLog.lines()) EXPECT_EQ(1, lLine.mLevel);
    EXPECT_FALSE(mpWriter->isRecording());
  }
  EXPECT_TRUE(mpWriter->start(mDir.path().c_str(), "drive", ""));
  EXPECT_FALSE(mpWriter->start(mDir.path().c_str(), "drive", nullptr));
  make(1000, 0);
  mLog.clear();
  EXPECT_FALSE(mpWriter->start(mDir.path().c_str(), "drive", nullptr));
  EXPECT_EQ(Strings{"LogWriter::open(): MaxLogFileSize == 0"}, mLog.texts());
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
  EXPECT_FALSE(lWriter.initialize());
  lWriter.shutdown();
  EXPECT_FALSE(lWriter.start(mDir.path().c_str(), "drive", nullptr));
  EXPECT_TRUE(mLog.texts().empty());
}

TEST_F(LogWriterTest, NamesWhatIsWrongWithARecord) {
  record(1000, 2000000);
  EXPECT_EQ(FAILED, mpWriter->write(-1, "x", 1));
  EXPECT_EQ(FAILED, mpWriter->write(0x1A, nullptr, 1));
  EXPECT_EQ(FAILED, mpWriter->write(0x1A, "x", 0xFFFFFFCFu));
  Strings lExpected = {"LogWriter::write(): LogTypeId is negative value",
                       "LogWriter::write(): Data is null: Id=0x0000001A",
                       "LogWriter::write(): Data is too big: Id=0x0000001A DataSize=4294967247 Byte"};
  const std::pair<seams::Point, const char*> CASES[] = {
      {seams::LOCAL_TIME, "local time"}, {seams::LOCAL_TIME_FIELDS, "time"}, {seams::TICK, "tick time"}};
  for (const auto& [lPoint, lpWords] : CASES) {
    const seams::Failing lFailing(lPoint);
    EXPECT_EQ(FAILED, write("x", 0x1A));
    lExpected.push_back("LogWriter::write(): Can't get " + std::string(lpWords) + ": Id=0x0000001A");
  }
  mTime.emplace(10000, 1, 1, 0, 0, 0, 0);
  EXPECT_EQ(FAILED, write("x", 0x1A));
  lExpected.push_back("LogWriter::write(): Can't create prefix: Id=0x0000001A");
  Strings lLines = mLog.texts();
  lLines.erase(lLines.begin());  // the file's creation
  EXPECT_EQ(lExpected, lLines);
  for (const auto& lLine : mLog.lines()) EXPECT_EQ(lLine.mText[0] == '#' ? 4 : 1, lLine.mLevel);
  EXPECT_EQ(FAILED, mpWriter->write(0x1A, "x", nfw::LogRecord::MAX_DATA_SIZE));
  EXPECT_FALSE(mLog.has("LogWriter::write(): Data is too big: Id=0x0000001A DataSize=4294967246 Byte"));
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
  EXPECT_FALSE(mpWriter->open());
  mpWriter->close();
  EXPECT_EQ(ACCEPTED, write("fifth"));
  mpWriter->stop();
  EXPECT_EQ((Strings{lData, lData, lData, "", lLarge, "after", "fifth"}), data());
  EXPECT_EQ(5u, mDir.files().size());
}

TEST_F(LogWriterTest, MakesAHundredFilesASecond) {
  record(1000, 49);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(ACCEPTED, write(""));
  EXPECT_EQ(100u, mDir.files().size());
  EXPECT_EQ(mDir / "drive_20240506-070809_99.log", mDir.files().back());
  mLog.clear();
  EXPECT_EQ(FAILED, write(""));
  EXPECT_EQ((Strings{"##### Close Log Record File: File=" + mDir.files().back(),
                     "NfwLogWriter::createFilePath(): Can't create path: Try Limit",
                     "LogWriter::open(): Can't create path: Dir=" + mDir.path() + " FilePrifix=drive",
                     "LogWriter::write(): Can't open new file: Id=0x00000014"}),
            mLog.texts());
  mpWriter->stop();
  EXPECT_EQ(100u, records().size());
}

TEST_F(LogWriterTest, FlushesForRoomAndWritesWhatTheBufferCannotHoldDirectly) {
  record(200);
  EXPECT_EQ(ACCEPTED, write(std::string(100, 'a')));
  mLog.clear();
  EXPECT_EQ(ACCEPTED, write(std::string(100, 'b')));
  EXPECT_EQ(149u, fileSize());
  EXPECT_EQ(ACCEPTED, write(std::string(152, 'c')));
  const auto lSizes = [](const char* npWords, size_t nSize, const char* npEnd) {
    return std::string("LogWriter::write(): Log ") + npWords + ": Id=0x00000014 Record=" + std::to_string(nSize + 49) +
           " Byte Base=48 Byte Data=" + std::to_string(nSize) + " Byte " + npEnd + " Byte";
  };
  const std::string lFlushed = "LogWriter::write(): Flushed File";
  EXPECT_EQ(
      (Strings{lSizes("Buffer is not Enough", 100, "Free=51"), lFlushed, lSizes("Buffer is not Enough", 152, "Free=51"),
               lFlushed, lSizes("Data is too Big", 152, "Buffer=200"), "LogWriter::write(): Written File Directory"}),
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
  nfwtest::RawMsg lMsg;
  fill(9, 1024);
  fill(1, 1023);  // 10239 bytes
  mpWriter->onWriteFile(lMsg);
  EXPECT_EQ(0u, fileSize());
  {
    const seams::Failing lMedium(seams::FILE_FLUSH);
    mpWriter->flush();
    EXPECT_EQ(1u, lMedium.hits());
  }
  EXPECT_EQ(10239u, fileSize());
  const seams::Failing lPost(seams::POST);  // the thread stays asleep
  fill(11, 1024);
  EXPECT_EQ(2u, mLog.count("LogWriter::write(): Can't post thread: Id=0x00000014"));
  mpWriter->onWriteFile(lMsg);
  EXPECT_EQ(10239u + 10240, fileSize());
  fill(20, 1024);
  mpWriter->onWriteFile(lMsg);  // and a further batch is left
  EXPECT_EQ(10239u + 2 * 10240, fileSize());
  EXPECT_EQ(1u, mLog.count("LogWriter::onWriteFile(): Can't post thread"));
}

// The name of the file is another's meanwhile: what is cut back is its own.
TEST_F(LogWriterTest, LosesNoWholeRecordToAFailedWrite) {
  record(40000);
  fill(30, 1000);
  nfwtest::RawMsg lMsg;  // what is written ends inside a record
  EXPECT_TRUE(eventually([&] { return fileSize() >= 20480; }, [&] { mpWriter->onWriteFile(lMsg); }));
  const std::string lPath = mDir.files()[0], lLine = "Can't write data: " + lPath;
  const auto lMove = [](const std::string& nFrom, const std::string& nTo) { std::filesystem::rename(nFrom, nTo); };
  lMove(lPath, mDir / "moved");
  nfwtest::writeFile(lPath, std::string(50000, 'o'));
  {
    const seams::Failing lFailing(seams::FILE_WRITE);
    mpWriter->flush();
    EXPECT_EQ(1u, mLog.count("LogWriter::flush(): " + lLine));
    EXPECT_EQ(20000u, fileSize());  // cut back to whole records
    fill(12, 1000);                 // wakes the thread
    EXPECT_TRUE(mLog.waitFor("LogWriter::onWriteFile(): " + lLine));
    mpWriter->flush();  // comes behind the thread's handler
    EXPECT_EQ(20000u, fileSize());
    EXPECT_TRUE(mpWriter->getRecordCounts().mIsFailing);
  }
  EXPECT_EQ(50000u, readFile(lPath).size());
  lMove(mDir / "moved", lPath);
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
  const rlimit lSmall = {5100, lOld.rlim_max};
  record(4000);
  ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &lSmall));
  fill(17, 500);
  EXPECT_EQ(1u, mDir.files().size()) << "as long as it takes some";
  fill(23, 500);
  EXPECT_EQ(28u, mTaken);  // of two files, and of the ring
  EXPECT_LE(1u, mLog.count("LogWriter::write(): Can't write base data to buffer: Ret=4294967294 Id=0x00000014"));
  EXPECT_EQ(5000u, fileSize());                      // what finds room stays
  EXPECT_EQ(FAILED, write(std::string(4000, 'L')));  // too large for the buffer: may not stand in another record
  EXPECT_EQ(1u, mLog.count("LogWriter::write(): Can't write base data to file: Ret=4294967295 Id=0x00000014"));
  ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &lOld));
  signal(SIGXFSZ, lOldAction);
  fill(20, 54);
  mpWriter->stop();
  EXPECT_EQ(48u, records().size());
}

TEST_F(LogWriterTest, DirectWritesAreWholeOrCutOff) {
  mHasOtherFiles = true;  // of three writers
  static const char* const PARTS[] = {"base data", "data", "postfix"};
  for (unsigned int i = 0; i < 3; ++i) {
    record(60);
    EXPECT_EQ(ACCEPTED, write("longer than the buffer"));
    const seams::Failing lFailing(seams::FILE_WRITE, i, 1);
    EXPECT_EQ(FAILED, write("longer than the buffer"));
    EXPECT_EQ(1u, mLog.count("LogWriter::write(): Can't write " + std::string(PARTS[i]) +
                             " to file: Ret=4294967295 Id=0x00000014"));
    EXPECT_EQ(71u, fileSize());
    EXPECT_EQ(ACCEPTED, write("longer than the buffer"));
    mpWriter->stop();
  }
  EXPECT_EQ(6u, records().size());
}

/// Whatever is written to the open file of this path goes to this descriptor from now on.
void replaceOpenFile(const std::string& nPath, int nDescriptor) {
  for (const auto& lEntry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code lIgnored;
    if (std::filesystem::read_symlink(lEntry, lIgnored) != nPath) continue;
    dup2(nDescriptor, std::stoi(lEntry.path().filename()));
  }
  ::close(nDescriptor);
}

// A disk that takes its time: a pipe that is read later.
TEST_F(LogWriterTest, ASlowDiskHoldsUpNobodyWhoseRecordHasRoom) {
  mHasOtherFiles = true;
  record();
  int lPipe[2] = {};
  ASSERT_EQ(0, pipe(lPipe));
  EXPECT_LE(0, fcntl(lPipe[1], F_SETPIPE_SZ, 4096));
  replaceOpenFile(mDir.files()[0], lPipe[1]);
  fill(9, 1000);
  const auto lFlush = std::async(std::launch::async, [&] { mpWriter->flush(); });
  const auto isStuck = [&] {
    int lSize = 0;
    return ioctl(lPipe[0], FIONREAD, &lSize) == 0 && lSize >= 4096;
  };
  EXPECT_TRUE(eventually(isStuck));
  const auto lWrite = std::async(std::launch::async, [&] { fill(1, 1000); });
  EXPECT_EQ(std::future_status::ready, lWrite.wait_for(std::chrono::seconds(20)));
  const auto lReader = std::async(std::launch::async, [&] {
    char lBytes[4096];
    while (read(lPipe[0], lBytes, sizeof lBytes) > 0) continue;
  });
  lFlush.wait();
  mpWriter->stop();
  lReader.wait();
  ::close(lPipe[0]);
}

TEST_F(LogWriterTest, LeavesAFileThatTakesNothingAnyMoreForAnotherOnceInTenSeconds) {
  mHasOtherFiles = true;  // and they are removed
  seams::ManualClock lClock;
  for (const unsigned int lBufferSize : {4000u, 0u}) {  // without a buffer, each record by itself
    record(lBufferSize);
    mLog.clear();
    Strings lAccepted;
    for (int i = 0; i < 60; ++i) {
      if (i == 40) lClock.advance(10000);
      if (i == 10 || i == 20) replaceOpenFile(mDir.files().back(), ::open("/dev/full", O_WRONLY));
      const std::string lData = std::to_string(i) + std::string(449, 'x');
      if (write(lData) == ACCEPTED) lAccepted.push_back(lData);
    }
    mpWriter->stop();
    EXPECT_EQ(3u, mDir.files().size());
    std::string lLines;
    for (const std::string& lLine : mLog.texts()) lLines += lLine + "|";
    EXPECT_NE(std::string::npos, lLines.find("##### Close Log Record File: File=" + mDir.files()[1] +
                                             "|##### Create Log Record File: File=" + mDir.files()[2] +
                                             "|LogWriter::write(): New File was created: " + mDir.files()[2] + "|"));
    EXPECT_EQ(lAccepted, data());
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
    const Strings lFiles = mDir.files();
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

TEST_F(LogWriterTest, GoesOnWhenAVanishedDirectoryComesBack) {
  record(1000, 100);
  EXPECT_EQ(ACCEPTED, write(std::string(40, 'a')));
  std::filesystem::remove_all(mDir.path());
  mLog.clear();
  for (int i = 0; i < 2; ++i) EXPECT_EQ(FAILED, write(std::string(40, 'b')));
  const std::string lPath = mDir / "drive_20240506-070809_00.log";
  EXPECT_EQ((Strings{"##### Close Log Record File: File=" + lPath, "LogWriter::open(): Can't open " + lPath,
                     "LogWriter::write(): Can't open new file: Id=0x00000014", "LogWriter::open(): Can't open " + lPath,
                     "LogWriter::write(): Can't open new file: Id=0x00000014"}),
            mLog.texts());
  EXPECT_TRUE(mpWriter->isRecording());
  std::filesystem::create_directory(mDir.path());
  EXPECT_EQ(ACCEPTED, write("back"));
  mpWriter->stop();
  EXPECT_EQ(Strings{"back"}, data());
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
  EXPECT_TRUE(eventually([&] { return write("x") == ACCEPTED; }));
  EXPECT_EQ(nfw::LOG_BACKUP_DONE, mpWriter->getBackup());
  mpWriter->stop();
  EXPECT_EQ(std::string(200000, 'a'), readFile(lRecording + "/backup/a"));
  EXPECT_EQ("b", readFile(lRecording + "/backup/sub/deep/b"));
  EXPECT_EQ(std::filesystem::status(mDir / "a").permissions(),
            std::filesystem::status(lRecording + "/backup/a").permissions());
  EXPECT_TRUE(std::filesystem::exists(lRecording + "/backup/rec/drive_20240506-070809_00.log"));
  for (const char* const lpName : {"link", "pipe", "rec/backup"}) {
    EXPECT_FALSE(std::filesystem::exists(lRecording + "/backup/" + lpName)) << lpName;
  }
  EXPECT_EQ(2, std::distance(std::filesystem::directory_iterator(lRecording), {})) << "what is beside the directory";
}

TEST_F(LogWriterTest, RecordsAlsoWhenNothingCanBeBackedUp) {
  make();
  const struct {
    std::string mSource, mLine;
    bool mIsPosted;
  } CASES[] = {
      {mDir / "missing", "##### Backup Failure [" + (mDir / "missing") + "->" + (mDir / "backup") + "] #####", true},
      {"/etc", "LogWriter::start(): Can't backup", false},
      {std::string(260, 'x'), "", true},
  };
  for (const auto& lCase : CASES) {
    std::optional<seams::Failing> lPost;
    if (!lCase.mIsPosted) lPost.emplace(seams::POST);
    ASSERT_TRUE(mpWriter->start(mDir.path().c_str(), "drive", lCase.mSource.c_str()));
    EXPECT_TRUE(lCase.mLine.empty() || mLog.waitFor(lCase.mLine));
    EXPECT_TRUE(eventually([&] { return write("x") == ACCEPTED; }));
    EXPECT_EQ(nfw::LOG_BACKUP_FAILED, mpWriter->getBackup());
    mpWriter->stop();
  }
  for (const auto& lLine : mLog.lines()) {
    const bool lIsFailure = lLine.mText == CASES[0].mLine || lLine.mText == CASES[1].mLine;
    EXPECT_EQ(lIsFailure ? 1 : 4, lLine.mLevel) << lLine.mText;
  }
}

TEST_F(LogWriterTest, StopCancelsABackupAtEveryMoment) {
  mHasOtherFiles = true;
  nfwtest::TempDir lSource;
  nfwtest::writeFile(lSource / "large", "");
  std::filesystem::resize_file(lSource / "large", 4ull << 30);  // of holes: seconds to copy
  const std::string lWords = "[" + lSource.path() + "->" + (mDir / "backup") + "] #####";
  make();
  for (int i = 0; i < 10; ++i) {
    mLog.clear();
    ASSERT_TRUE(mpWriter->start(mDir.path().c_str(), ("r" + std::to_string(i)).c_str(), lSource.path().c_str()));
    if (i % 2 != 0) {
      EXPECT_TRUE(mLog.waitFor("##### Backup Start " + lWords));
      EXPECT_EQ(nfw::LOG_BACKUP_RUNNING, mpWriter->getBackup());
      EXPECT_EQ(REFUSED, mpWriter->write(20, "x", 1));
    }
    EXPECT_FALSE(mpWriter->start(mDir.path().c_str(), "drive", nullptr));
    if (i == 9) mpWriter->shutdown();
    mpWriter->stop();
    EXPECT_FALSE(mpWriter->isRecording());
    EXPECT_TRUE(i % 2 == 0 || mLog.has("##### Backup Canceled " + lWords));
    for (const std::string& lText : mLog.texts()) EXPECT_EQ(std::string::npos, lText.find("->/backup"));
  }
  EXPECT_EQ(nfw::LOG_BACKUP_CANCELED, mpWriter->getBackup());
}

TEST(ZtFileCopyTest, AnswersACancelMadeBefore) {
  nfwtest::TempDir lDir;
  nfw::ZtFileCopy lCopy;
  const std::string lTo = lDir / "to";
  lCopy.requestCancel();
  EXPECT_EQ(nfw::ZtFileCopy::CANCELED, lCopy.execute("/etc", lTo.c_str(), 0));
  EXPECT_FALSE(std::filesystem::exists(lTo));
  lCopy.clearCancel();
  for (const std::string& lTarget : {lDir / "no/parent", lDir.path()}) {
    EXPECT_EQ(nfw::ZtFileCopy::FAILED, lCopy.execute(lDir.path().c_str(), lTarget.c_str(), 0));
  }
  EXPECT_EQ(nfw::ZtFileCopy::FAILED, lCopy.execute(nullptr, lTo.c_str(), 0));
  EXPECT_EQ(nfw::ZtFileCopy::FAILED, lCopy.execute("/etc/passwd", lTo.c_str(), 0));
  std::filesystem::create_directories(lDir / "from/taken/deep");  // what cannot be copied holds up nothing else
  nfwtest::writeFile(lDir / "from/rest", "rest");
  std::filesystem::create_directory(lTo);
  nfwtest::writeFile(lDir / "to/taken", "");
  EXPECT_EQ(nfw::ZtFileCopy::FAILED, lCopy.execute((lDir / "from").c_str(), lTo.c_str(), 0));
  EXPECT_EQ("rest", readFile(lDir / "to/rest"));
}

std::string readAll(nfw::StreamBuffer& nBuffer, unsigned int nSize) {
  std::string lBytes(nSize, '?');
  const int lSize = nBuffer.read(lBytes.data(), nSize);
  return lSize < 0 ? std::to_string(lSize) : lBytes.substr(0, static_cast<size_t>(lSize));
}

TEST(StreamBufferTest, KeepsTheOrderAcrossTheEndOfTheStorage) {
  nfw::StreamBuffer lBuffer(5);
  EXPECT_EQ(4, lBuffer.write("abcd", 4));
  EXPECT_EQ("ab", readAll(lBuffer, 2));
  EXPECT_EQ(3, lBuffer.write("efg", 3));
  EXPECT_EQ(nfw::StreamBuffer::BUFFER_DEPLETION, lBuffer.write("h", 1));
  EXPECT_EQ(0u, lBuffer.getFreeSpace());

  const unsigned char* lpTop = nullptr;
  EXPECT_EQ(3, lBuffer.top(&lpTop));  // up to the end of the storage
  EXPECT_EQ("cde", std::string(reinterpret_cast<const char*>(lpTop), 3));
  unsigned char lPeeked[2];
  lBuffer.peek(2, lPeeked, 2);
  EXPECT_EQ("ef", std::string(reinterpret_cast<const char*>(lPeeked), 2));
  EXPECT_TRUE(lBuffer.eraseTop(1));
  EXPECT_EQ("defg", readAll(lBuffer, 9));
  EXPECT_EQ("-3", readAll(lBuffer, 9));
  EXPECT_TRUE(lBuffer.eraseTop(9));
  EXPECT_TRUE(lBuffer.isEmpty());
  lBuffer.write("hi", 2), lBuffer.clear();
  EXPECT_TRUE(lBuffer.isEmpty());
}

TEST(StreamBufferTest, SaysWhatItCannotDo) {
  char lByte = 0;
  const unsigned char* lpTop = nullptr;
  nfw::StreamBuffer lBuffer(4);
  EXPECT_EQ(nfw::StreamBuffer::FAILURE, lBuffer.write(nullptr, 1));
  EXPECT_EQ(nfw::StreamBuffer::FAILURE, lBuffer.read(nullptr, 1));
  EXPECT_EQ(0, lBuffer.write(&lByte, 0));

  nfw::StreamBuffer lNothing(0);
  EXPECT_EQ(nfw::StreamBuffer::BUFFER_DEPLETION, lNothing.write(&lByte, 1));
  EXPECT_EQ(0, lNothing.write(&lByte, 0));
  EXPECT_EQ(nfw::StreamBuffer::EMPTY, lNothing.read(&lByte, 1));
  EXPECT_EQ(0, lNothing.top(&lpTop));

  nfw::StreamBuffer lTooLarge(0xFFFFFFFDu);
  EXPECT_EQ(nfw::StreamBuffer::FAILURE, lTooLarge.write(&lByte, 1));
  EXPECT_EQ(nfw::StreamBuffer::FAILURE, lTooLarge.read(&lByte, 1));
  EXPECT_EQ(nfw::StreamBuffer::FAILURE, lTooLarge.top(&lpTop));
  EXPECT_TRUE(lTooLarge.eraseTop(1));
}

}  // namespace
