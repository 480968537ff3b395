#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "NfwLogRetention.h"
#include "PlatformSeams.h"
#include "SharedThread.h"
#include "TempDir.h"

namespace {

class LogRetentionTest : public testing::Test {
 protected:
  static std::string name(int nMinute) { return "drive_20240506-07" + std::to_string(10 + nMinute) + "00_00.log"; }
  /// Files of 1000 bytes, the oldest first, each last written a minute after the one before.
  void fill(int nNum) {
    for (int i = 0; i < nNum; ++i) {
      nfwtest::writeFile(mDir / name(i), std::string(1000, 'x'));
      const timespec lTimes[2] = {{::time(nullptr) - 60 * (nNum - i), 0}, {::time(nullptr) - 60 * (nNum - i), 0}};
      ASSERT_EQ(0, utimensat(AT_FDCWD, (mDir / name(i)).c_str(), lTimes, 0));
    }
  }
  int left() { return static_cast<int>(mDir.files().size()); }

  nfwtest::TempDir mDir;
  seams::CapturedLog mLog;
};

TEST_F(LogRetentionTest, DeletesTheOldestDownToEachLimit) {
  const std::pair<nfw::LogRetentionLimits, int> CASES[] = {
      {{}, 6},           {{5999, 0, 0, 0}, 5}, {{6000, 0, 0, 0}, 6},  {{1, 0, 0, 0}, 1},
      {{0, 4, 0, 0}, 4}, {{0, 0, 200, 0}, 3},  {{0, 0, 0, ~0ULL}, 1}, {{3000, 2, 0, 0}, 2},
  };
  for (const auto& [lLimits, lLeft] : CASES) {
    fill(6);
    nfw::LogRetention lRetention(mDir.path().c_str(), "drive", lLimits);
    EXPECT_TRUE(lRetention.apply());
    ASSERT_EQ(lLeft, left());
    EXPECT_EQ(mDir / name(6 - lLeft), mDir.files()[0]);
    EXPECT_EQ(6u - static_cast<unsigned int>(lLeft), lRetention.getCounts().mDeletedNum);
    EXPECT_EQ(1000u * (6u - static_cast<unsigned int>(lLeft)), lRetention.getCounts().mDeletedSize);
  }
}

TEST_F(LogRetentionTest, LeavesWhatIsNotItsOwnAndWhatIsWrittenTo) {
  fill(3);
  for (const char* lpName : {"drive_20240506-071000_00.txt", "drive2_20240506-071000_00.log", "drive_2024.log"}) {
    nfwtest::writeFile(mDir / lpName, "");
  }
  ASSERT_EQ(0, mkdir((mDir / "drive_20240506-070000_00.log").c_str(), 0777));
  std::ofstream lOpen(mDir / name(0), std::ios::app);  // the clock was set back: the oldest name is the newest file
  nfw::LogRetention lRetention(mDir.path().c_str(), "drive", {1, 0, 0, 0});
  EXPECT_TRUE(lRetention.apply());
  EXPECT_EQ(5, left());
  lOpen.close();
  EXPECT_TRUE(lRetention.apply());
  EXPECT_EQ(4, left());
  EXPECT_EQ(2u, lRetention.getCounts().mDeletedNum);
}

TEST_F(LogRetentionTest, TellsOnceWhatCannotBeDeleted) {
  fill(3);
  nfw::LogRetention lMissing((mDir / "none").c_str(), "drive", {1, 0, 0, 0});
  EXPECT_FALSE(lMissing.apply());
  EXPECT_FALSE(lMissing.apply());
  EXPECT_EQ(1u, mLog.count("LogRetention::apply(): Can't open: " + mDir.path() + "/none errno=2"));
  EXPECT_FALSE(nfw::LogRetention(mDir.path().c_str(), std::string(250, 'p').c_str(), {}).start() ||
               nfw::LogRetention(mDir.path().c_str(), nullptr, {}).start());
  if (geteuid() == 0) return;  // whom no directory refuses
  ASSERT_EQ(0, chmod(mDir.path().c_str(), 0555));
  nfw::LogRetention lRetention(mDir.path().c_str(), "drive", {1, 0, 0, 0});
  EXPECT_FALSE(lRetention.apply());
  EXPECT_FALSE(lRetention.apply());
  EXPECT_EQ(2u, lRetention.getCounts().mFailedNum);
  EXPECT_EQ(1u, mLog.count("LogRetention::apply(): Can't delete: " + (mDir / name(0)) + " errno=13"));
  ASSERT_EQ(0, chmod(mDir.path().c_str(), 0777));
}

TEST_F(LogRetentionTest, LooksOnAThreadOfItsOwn) {
  seams::ManualClock lClock;
  fill(2);
  nfw::LogRetention lRetention(mDir.path().c_str(), "drive", {0, 1, 0, 0});
  ASSERT_TRUE(lRetention.start());
  EXPECT_FALSE(lRetention.start());
  EXPECT_FALSE(lRetention.apply());
  lClock.advance(1);
  EXPECT_TRUE(nfwtest::eventually([&] { return lRetention.getCounts().mDeletedNum == 1; }));
  nfwtest::writeFile(mDir / name(2), "");
  lClock.advance(1000);
  EXPECT_TRUE(mLog.waitFor("LogRetention::apply(): Deleted: " + (mDir / name(1))));
  lRetention.stop();
  EXPECT_TRUE(lRetention.apply());
}

}  // namespace
