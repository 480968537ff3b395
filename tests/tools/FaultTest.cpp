#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include "LineReader.h"
#include "LogRecords.h"
#include "MountNamespace.h"
#include "Simulator.h"
#include "SourceTurn.h"
#include "TempDir.h"
#include "ToolRun.h"

// What breaks while a run goes on is told, and nothing else waits for it.

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

class Fault : public testing::Test {
 protected:
  Fault() { fs::create_directory(log()); }
  std::string log() const { return mDirectory / "log"; }
  std::string sensor() const { return mDirectory / "sensor.bin"; }
  std::vector<std::string> arguments(std::vector<std::string> nMore) const {
    nMore.insert(nMore.end(), {"sim", "--rate", "10", "--log-level", "0"});
    return nMore;
  }
  size_t recorded(const std::string& nDirectory) const {
    size_t lCount = 0;
    for (const auto& lEntry : fs::recursive_directory_iterator(nDirectory)) {
      if (lEntry.is_regular_file()) lCount += nfwtest::parseLogRecords(nfwtest::readFile(lEntry.path())).size();
    }
    return lCount;
  }

  const nfwtest::TempDir mDirectory;
};

TEST_F(Fault, aRecordingThatIsNotWholeIsToldAndFails) {
  const struct {
    const char* mpName;
    std::vector<std::string> mArguments;
    std::function<void()> mHappens;
    const char* mpLine;
  } CASES[] = {
      {"log removed", {"--record", log()}, [&] { fs::remove_all(log()); }, ": the file was removed\n"},
      {"log moved away",
       {"--record", log(), "--max-file-size", "8192"},
       [&] { fs::rename(log(), mDirectory / "away"); },
       ": no file can be made: No such file or directory\n"},
      {"sensor log removed", {"--sys-record", sensor()}, [&] { fs::remove(sensor()); }, ": the file was removed\n"},
      {"nothing to back up", {"--record", log(), "--backup", log() + "/none"}, [] {}, ": no backup of "},
      {"a stick that never came", {"--record-on", "none9"}, [] {}, "none9 was never there to record onto\n"},
  };
  for (const auto& lCase : CASES) {
    SCOPED_TRACE(lCase.mpName);
    fs::create_directories(log());
    std::vector<std::string> lArguments = arguments(lCase.mArguments);
    lArguments.insert(lArguments.end(), {"--speed", "20", "--for", "12", "--format", "json"});
    ToolRun lRun(lArguments);
    ASSERT_NE(lRun.readLine(), "");
    lCase.mHappens();
    const std::string lOutput = lRun.readAll();
    EXPECT_EQ(lRun.wait(), 1);
    const std::string lErrors = lRun.errors();
    EXPECT_NE(lErrors.find(lCase.mpLine), std::string::npos) << lErrors;
    EXPECT_EQ(lErrors.find('\n'), lErrors.size() - 1) << "one line: " << lErrors;
    const json lSummary = json::parse(lOutput.substr(lOutput.rfind("{\"type\":\"summary\"")));
    if (lSummary.contains("data_log")) {
      EXPECT_EQ(lSummary["data_log"]["recorded"], recorded(mDirectory.path()));
    } else {
      EXPECT_EQ(lSummary["sensor_log"]["recorded"], 0);
    }
    fs::remove_all(log());
    fs::remove_all(mDirectory / "away");
  }
}

TEST_F(Fault, aFullMediumIsTold) {
  const std::string lRefusal = nfwtest::enterMountNamespace();
  if (!lRefusal.empty()) GTEST_SKIP() << "the kernel refuses a mount namespace: " << lRefusal;
  ASSERT_EQ(mount("none", log().c_str(), "tmpfs", 0, "size=64k"), 0) << strerror(errno);
  const Outcome lRun = run(arguments(
      {"--record", log(), "--sys-record", log() + "/s.bin", "--speed", "max", "--for", "8", "--format", "none"}));
  EXPECT_EQ(lRun.mExit, 1);
  umount(log().c_str());
  for (const char* const lpLog : {"the data log in ", "the sensor log in "}) {
    EXPECT_NE(lRun.mErrors.find(lpLog), std::string::npos) << lRun.mErrors;
  }
  EXPECT_NE(lRun.mErrors.find(": the file cannot be written: No space left on device\n"), std::string::npos);
  EXPECT_EQ(lRun.mOutput.find(" 0 refused, 0 failed"), std::string::npos) << lRun.mOutput;
}

TEST_F(Fault, recordsWhileTheStickIsThere) {
  const std::string lRefusal = nfwtest::enterMountNamespace();
  if (!lRefusal.empty()) GTEST_SKIP() << "the kernel refuses a mount namespace: " << lRefusal;
  const char* const STICK = "/media/stick";
  fs::create_directory("/media");
  ASSERT_EQ(mount("none", "/media", "tmpfs", 0, nullptr), 0) << strerror(errno);
  fs::create_directory(STICK);

  ToolRun lRun(
      {"sim", "--record-on", "stick", "--format", "nmea", "--systems", "gps", "--speed", "20", "--log-level", "0"});
  ASSERT_NE(lRun.readLine(), "");
  ASSERT_EQ(mount("none", STICK, "tmpfs", 0, nullptr), 0) << strerror(errno);
  std::string lFile;
  for (int i = 0; i < 5000 && lFile.empty(); ++i) {  // the sentences that the run shows are the test's clock
    ASSERT_NE(lRun.readLine(), "");
    for (const auto& lEntry : fs::directory_iterator(STICK)) lFile = lEntry.path();
  }
  ASSERT_NE(lFile, "");
  for (int i = 0; i < 60; ++i) ASSERT_NE(lRun.readLine(), "");
  std::ifstream lRecording(lFile, std::ios::binary);  // seen also when the stick is gone
  ASSERT_EQ(umount2(STICK, MNT_DETACH), 0) << strerror(errno);
  for (int i = 0; i < 100; ++i) ASSERT_NE(lRun.readLine(), "");
  lRun.signal(SIGINT);
  lRun.readAll();
  EXPECT_EQ(lRun.wait(), 0);
  umount("/media");

  nfwtest::writeFile(mDirectory / "stick.log", {std::istreambuf_iterator<char>(lRecording), {}});
  const Outcome lReplay = runQuietly({"--replay", mDirectory / "stick.log", "--format", "json"});
  EXPECT_EQ(lReplay.mExit, 0) << lReplay.mErrors;
  EXPECT_EQ(lReplay.mSummary["replay"], "the same as the recording");
}

// Nobody reads: what is recorded still comes to the file each second, and a signal ends the run.
TEST_F(Fault, aReaderThatStopsHoldsUpNothing) {
  ToolRun lRun(arguments({"--record", log(), "--speed", "20", "--format", "jsonl-raw"}));
  ASSERT_NE(lRun.readLine(), "");
  for (int i = 0; i < 3000 && recorded(log()) < 1500; ++i) ::poll(nullptr, 0, 10);
  EXPECT_GE(recorded(log()), 1500u);
  lRun.signal(SIGINT);
  EXPECT_EQ(lRun.wait(), 1);
  EXPECT_NE(lRun.errors().find(" lines were not taken: its reader is too slow\n"), std::string::npos);
}

// A file waits for who reads what it gives, until a signal.
TEST_F(Fault, aReaderThatStopsHoldsUpAFileUntilASignal) {
  nfwtest::writeFile(mDirectory / "in",
                     runQuietly({"sim", "--for", "60", "--speed", "max", "--format", "nmea"}).mOutput);
  ToolRun lRun({mDirectory / "in", "--speed", "max", "--format", "json"});
  ASSERT_NE(lRun.readLine(), "");
  for (int i = 0; i < 6000 && lRun.errors().find("finalize complete") == std::string::npos; ++i) ::poll(nullptr, 0, 10);
  lRun.signal(SIGINT);
  EXPECT_EQ(lRun.wait(), 1);
  EXPECT_NE(lRun.errors().find(" lines were not taken: its reader is too slow\n"), std::string::npos) << lRun.errors();
}

TEST_F(Fault, threadsAndMemoryThatAreNotToBeHadEndTheRunInOneLine) {
  if (std::string(NFW_EMULATOR) != "" || std::string(NFW_SANITIZE) != "") GTEST_SKIP() << "needs more memory itself";
  for (int lMiB = 16; lMiB < 200; lMiB += 12) {
    SCOPED_TRACE(lMiB);
    const std::string lCommand = "ulimit -v " + std::to_string(lMiB * 1024) +
                                 "; exec " NFW_DRIVE_PROGRAM
                                 " sim --speed max --for 1 --format none --log-level 0 --record " +
                                 log() + " >/dev/null 2>" + (mDirectory / "err");
    const int lStatus = std::system(lCommand.c_str());
    const std::string lErrors = nfwtest::readFile(mDirectory / "err");
    ASSERT_TRUE(WIFEXITED(lStatus)) << lErrors;
    if (WEXITSTATUS(lStatus) == 127) continue;  // not even loaded
    const int lExit = WEXITSTATUS(lStatus) == 0 ? 0 : 1;
    EXPECT_EQ(lExit, WEXITSTATUS(lStatus)) << lErrors;
    EXPECT_EQ(lExit, std::count(lErrors.begin(), lErrors.end(), '\n')) << lErrors;
  }
}

// A run that is stopped between a sentence and its report has taken the sentence all the same.
TEST(Intake, countsASentenceWhoseReportIsNotTakenAnyMore) {
  gpshost::Receiver lReceiver;
  ASSERT_TRUE(lReceiver.start());
  drive::Windows lWindows;
  drive::Progress lProgress;
  const drive::SourceAddress lAddress;
  lProgress.addSource(lAddress);
  tool::LineReader lReader(lProgress.mSources.front().mLines);
  drive::Turns lTurns(1, {});
  drive::Intake lIntake(lReceiver, nullptr, &lWindows, {}, lProgress);
  drive::SourceTurn lTurn(0, lTurns, lIntake);
  drive::Simulator lSimulator({});
  lWindows.mReports.close();
  for (int i = 0; i < 3; ++i) {
    std::string lText;
    lSimulator.writeEpoch(&lText);
    EXPECT_TRUE(lReader.feed(lText.data(), lText.size(), lTurn));
  }
  EXPECT_EQ(lProgress.accepted(), lProgress.mLines.total());
  EXPECT_TRUE(lProgress.addsUp());
}

}  // namespace
