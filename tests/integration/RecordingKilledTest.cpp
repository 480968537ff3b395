// A process that is killed while it records.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <thread>

#include "LogRecords.h"
#include "NfwLogger.h"
#include "PlatformSeams.h"
#include "Replays.h"
#include "TempDir.h"

namespace {

using nfw::Logger;

/// What a record holds: its writer's number and its count, and then one byte again and again.
std::string dataOf(int nWriter, unsigned int nCount) {
  const std::string lHead = std::to_string(nWriter) + ":" + std::to_string(nCount) + ":";
  return lHead + std::string(nCount % 900, static_cast<char>('a' + nCount % 26));
}

/// Never returns: records from two threads until the process is killed.
void recordForever(const std::string& nDirectory) {
  const seams::CapturedLog lLog;
  Logger::initializeMaxLogFieldSize(2000);
  Logger::initializeLogBufferSize(30000);
  Logger::initializeMaxLogFileSize(200000);
  Logger::get()->initialize();
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
  for (const uintmax_t lEnough : {5000u, 190000u, 400000u}) {  // in a batch, near a rotation, behind it
    const nfwtest::TempDir lDirectory;
    const pid_t lChild = fork();
    ASSERT_NE(-1, lChild);
    if (lChild == 0) {
      recordForever(lDirectory.path());
      _exit(0);
    }
    int lStatus = 0;
    EXPECT_TRUE(
        nfwtest::eventually([&] { return sizeOf(lDirectory) >= lEnough || waitpid(lChild, &lStatus, WNOHANG) != 0; }));
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

}  // namespace
