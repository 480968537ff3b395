#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "MountNamespace.h"
#include "TempDir.h"
#include "ToolRun.h"

// The program records onto a stick while it is there.

namespace {

const char* const STICK = "/media/stick";

// The sentences that the run shows are the test's clock.
std::string awaitRecording(ToolRun& nRun) {
  for (int i = 0; i < 5000; ++i) {
    if (nRun.readLine().empty()) break;
    for (const auto& lEntry : std::filesystem::directory_iterator(STICK)) return lEntry.path();
  }
  return {};
}

TEST(RecordOn, recordsWhileTheStickIsThere) {
  const std::string lRefusal = nfwtest::enterMountNamespace();
  if (!lRefusal.empty()) GTEST_SKIP() << "the kernel refuses a mount namespace: " << lRefusal;
  std::filesystem::create_directory("/media");
  ASSERT_EQ(mount("none", "/media", "tmpfs", 0, nullptr), 0) << strerror(errno);
  std::filesystem::create_directory(STICK);

  ToolRun lRun(
      {"sim", "--record-on", "stick", "--format", "nmea", "--systems", "gps", "--speed", "20", "--log-level", "0"});
  ASSERT_NE(lRun.readLine(), "");
  ASSERT_EQ(mount("none", STICK, "tmpfs", 0, nullptr), 0) << strerror(errno);
  const std::string lFile = awaitRecording(lRun);
  ASSERT_NE(lFile, "");
  for (int i = 0; i < 60; ++i) ASSERT_NE(lRun.readLine(), "");
  std::ifstream lRecording(lFile, std::ios::binary);  // seen also when the stick is gone
  ASSERT_EQ(umount2(STICK, MNT_DETACH), 0) << strerror(errno);
  for (int i = 0; i < 100; ++i) ASSERT_NE(lRun.readLine(), "");
  lRun.signal(SIGINT);
  lRun.readAll();
  EXPECT_EQ(lRun.wait(), 0);
  umount("/media");

  const nfwtest::TempDir lDirectory;
  nfwtest::writeFile(lDirectory / "stick.log", {std::istreambuf_iterator<char>(lRecording), {}});
  const Outcome lReplay = runQuietly({"--replay", lDirectory / "stick.log", "--format", "json"});
  EXPECT_EQ(lReplay.mExit, 0) << lReplay.mErrors;
  EXPECT_EQ(lReplay.mSummary["replay"], "the same as the recording");
}

}  // namespace
