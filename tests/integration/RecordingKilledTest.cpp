// A process that is killed, or whose disk is full, while it records.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <thread>

#include "LogRecords.h"
#include "NfwLogger.h"
#include "PlatformSeams.h"
#include "TempDir.h"

namespace {

using nfw::Logger;

void makeLogger(unsigned int nBufferSize, unsigned int nMaxFileSize) {
  Logger::initializeMaxLogFieldSize(2000);
  Logger::initializeLogBufferSize(nBufferSize);
  Logger::initializeMaxLogFileSize(nMaxFileSize);
  ASSERT_TRUE(Logger::get()->initialize());
}

/// What a record holds: its writer's number and its count, and then one byte again and again.
std::string dataOf(int nWriter, unsigned int nCount) {
  const std::string lHead = std::to_string(nWriter) + ":" + std::to_string(nCount) + ":";
  return lHead + std::string(nCount % 900, static_cast<char>('a' + nCount % 26));
}

/// Never returns: records from two threads until the process is killed.
void recordForever(const std::string& nDirectory) {
  const seams::CapturedLog lLog;
  makeLogger(30000, 200000);
  Logger::get()->startRecord(nDirectory.c_str(), "kill", nullptr);
  const auto lWrite = [](int nWriter) {
    for (unsigned int i = 0;; ++i) {
      const std::string lData = dataOf(nWriter, i);
      Logger::write(nWriter, lData.data(), static_cast<unsigned int>(lData.size()));
      if (i % 100 == 0) Logger::get()->flush();
    }
  };
  std::thread lSecond(lWrite, 2);
  lWrite(1);
}

uintmax_t sizeOf(const nfwtest::TempDir& nDirectory) {
  uintmax_t lSize = 0;
  for (const std::string& lFile : nDirectory.files()) lSize += std::filesystem::file_size(lFile);
  return lSize;
}

TEST(RecordingKilledTest, LeavesWholeRecordsAndAtMostOneCut) {
  for (size_t i = 0; i < 12; ++i) {
    const nfwtest::TempDir lDirectory;
    const pid_t lChild = fork();
    ASSERT_NE(-1, lChild);
    if (lChild == 0) {
      recordForever(lDirectory.path());
      _exit(0);
    }
    const size_t lEnough = 5000 + i * i * 7919;  // somewhere in a batch, near a rotation, far behind it
    int lStatus = 0;
    while (sizeOf(lDirectory) < lEnough && waitpid(lChild, &lStatus, WNOHANG) == 0) std::this_thread::yield();
    kill(lChild, SIGKILL);
    waitpid(lChild, &lStatus, 0);

    std::map<int, unsigned int> lNext;
    const std::vector<std::string> lFiles = lDirectory.files();
    for (const std::string& lFile : lFiles) {
      size_t lRest = 0;
      for (const auto& lRecord : nfwtest::parseLogRecords(nfwtest::readFile(lFile), &lRest)) {
        ASSERT_EQ(dataOf(lRecord.mId, lNext[lRecord.mId]++), lRecord.mData) << lFile;  // none lost, none out of order
      }
      EXPECT_TRUE(lRest == 0 || lFile == lFiles.back()) << lFile;
      EXPECT_LT(lRest, 49u + 912u);
    }
    EXPECT_LT(0u, lNext[1] + lNext[2]);
  }
}

/// A small disk, where mounting is permitted.
class SmallDisk {
 public:
  explicit SmallDisk(const std::string& nPath)
      : mPath(nPath), mIsMounted(mount("tmpfs", nPath.c_str(), "tmpfs", 0, "size=256k") == 0) {}
  ~SmallDisk() {
    if (mIsMounted) umount2(mPath.c_str(), MNT_DETACH);
  }
  bool isMounted() const { return mIsMounted; }

 private:
  const std::string mPath;
  const bool mIsMounted;
};

TEST(RecordingOnAFullDiskTest, GoesOnWhenThereIsRoomAgain) {
  const nfwtest::TempDir lDirectory;
  const seams::CapturedLog lLog;
  const SmallDisk lDisk(lDirectory.path());
  if (!lDisk.isMounted()) GTEST_SKIP() << "mounting is not permitted";
  nfwtest::writeFile(lDirectory / "ballast", std::string(100000, 'b'));
  makeLogger(20000, 100000);
  ASSERT_TRUE(Logger::get()->startRecord(lDirectory.path().c_str(), "full", nullptr));
  const auto lWrite = [](unsigned int nFrom, unsigned int nTo) {
    for (unsigned int i = nFrom; i < nTo; ++i) {
      const std::string lData = dataOf(1, i);
      Logger::write(1, lData.data(), static_cast<unsigned int>(lData.size()));
    }
  };
  lWrite(0, 1000);  // 450 KB
  EXPECT_TRUE(lLog.has("LogWriter::write(): Can't write base data to buffer: Ret=4294967294 Id=0x00000001") ||
              lLog.has("LogWriter::write(): Can't open new file: Id=0x00000001") ||
              lLog.has("LogWriter::write(): Can't write data to buffer: Ret=4294967294 Id=0x00000001"));
  std::filesystem::remove(lDirectory / "ballast");
  lWrite(1000, 1100);
  Logger::get()->stopRecord();
  Logger::destroy();

  unsigned int lCount = 0, lAfter = 0;
  for (const std::string& lFile : lDirectory.files()) {
    size_t lRest = 1;
    for (const auto& lRecord : nfwtest::parseLogRecords(nfwtest::readFile(lFile), &lRest)) {
      const unsigned int lNumber = static_cast<unsigned int>(std::stoul(lRecord.mData.substr(2)));
      ASSERT_EQ(dataOf(1, lNumber), lRecord.mData);
      ASSERT_LE(lCount, lNumber);
      lCount = lNumber + 1;
      if (lNumber >= 1000) ++lAfter;
    }
    EXPECT_EQ(0u, lRest);
  }
  EXPECT_EQ(100u, lAfter);  // each one offered since
}

}  // namespace
