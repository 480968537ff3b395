#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "KeptFiles.h"
#include "LogRecords.h"
#include "TempDir.h"
#include "ToolRun.h"

// The program ends files by time, and keeps the files of its recording within limits.

namespace {

class Retention : public testing::Test {
 protected:
  Outcome record(ToolRun::Words nLimits) const {
    nLimits.insert(nLimits.begin(),
                   {"sim", "--for", "10", "--speed", "5", "--format", "json", "--record", mDirectory.path()});
    return runQuietly(nLimits);
  }
  bool has(const std::string& nName) const { return std::filesystem::exists(mDirectory / nName); }

  nfwtest::TempDir mDirectory;
};

TEST_F(Retention, theOldestFilesOfThePrefixGoAndNothingElse) {
  const char* const OLD[] = {"drive_20200101-000000_00.log", "drive_20200101-000000_01.log",
                             "drive_20200102-000000_00.log", "drive_20200103-000000_00.log"};
  for (const char* const lpName : OLD) nfwtest::writeFile(mDirectory / lpName, std::string(1000, 'x'));
  nfwtest::writeFile(mDirectory / "trip_20200101-000000_00.log", "another's");
  const Outcome lRun = record({"--keep-files", "2", "--max-file-size", "8K"});
  EXPECT_EQ(lRun.mExit, 0) << lRun.mErrors;
  EXPECT_EQ(mDirectory.files().size(), 3u);
  EXPECT_TRUE(has("trip_20200101-000000_00.log"));
  EXPECT_GT(lRun.mSummary["data_log"]["deleted_files"], 4);
  EXPECT_GT(lRun.mSummary["data_log"]["deleted_bytes"], 4000);
  for (const char* const lpName : OLD) EXPECT_FALSE(has(lpName)) << lpName;
}

TEST_F(Retention, filesEndByTimeAndTheirReplayIsWhole) {
  const Outcome lRun = record({"--max-file-time", "500ms", "--sync-interval", "100ms"});
  EXPECT_EQ(lRun.mExit, 0) << lRun.mErrors;
  EXPECT_GE(mDirectory.files().size(), 3u);
  const Outcome lReplay = runQuietly({"--replay", mDirectory.path(), "--format", "json"});
  EXPECT_EQ(lReplay.mSummary["replay"], "the same as the recording, and as the run that made it");
}

// As after a power cut: what is left of a record goes, whole ones stay, and so does what is no recording.
TEST_F(Retention, theNextStartEndsCutFilesAtTheirLastWholeRecord) {
  const std::string lWhole = nfwtest::logRecord(20, 0, "$GPGLL") + nfwtest::logRecord(20, 9, "$GPRMC");
  const struct {
    const char* mpName;
    std::string mBytes, mAfter;
  } CASES[] = {
      {"drive_20200101-000000_00.log", lWhole + lWhole.substr(0, 50), lWhole},
      {"drive_20200101-000001_00.log", lWhole.substr(0, lWhole.size() - 1), lWhole.substr(0, lWhole.size() / 2)},
      {"drive_20200101-000002_00.log", lWhole + std::string(200000, '\0'), lWhole},
      {"drive_20200101-000003_00.log", lWhole, lWhole},
      {"drive_20200101-000004_00.log", "mine", "mine"},
      {"trip_20200101-000000_00.log", lWhole + "x", lWhole + "x"},
  };
  for (const auto& lCase : CASES) nfwtest::writeFile(mDirectory / lCase.mpName, lCase.mBytes);
  const Outcome lRun = run({"sim", "--for", "1", "--speed", "max", "--format", "none", "--record", mDirectory.path()});
  EXPECT_EQ(lRun.mExit, 0) << lRun.mErrors;
  EXPECT_NE(lRun.mErrors.find("cut within a record: 3 files shortened to the last whole one"), std::string::npos);
  for (const auto& lCase : CASES) EXPECT_EQ(nfwtest::readFile(mDirectory / lCase.mpName), lCase.mAfter) << lCase.mpName;
}

// Whatever the limits say; recording goes on, and what comes later in the same file is kept, too.
TEST_F(Retention, aSignalKeepsTheLastFilesOfBothLogs) {
  ToolRun lRun({"sim", "--format", "nmea", "--record", mDirectory.path(), "--sys-record", mDirectory.path(),
                "--keep-files", "1", "--keep-before", "10m", "--log-level", "3"},
               STDERR_FILENO);
  const auto lTells = [&lRun](const std::string& nText) {
    std::string lLine;
    do {
      lLine = lRun.readLine();
    } while (!lLine.empty() && lLine.find(nText) == std::string::npos);
    return !lLine.empty();
  };
  ASSERT_TRUE(lTells("source sim is open"));
  for (const char* const lpTold : {"1 more file of", "0 more files of"}) {
    lRun.signal(SIGUSR1);
    for (const std::string lLog : {"the data log: ", "the sensor log: "}) {
      EXPECT_TRUE(lTells(lLog + lpTold + " the last 600 s kept in " + mDirectory / "kept")) << lpTold;
    }
  }
  lRun.signal(SIGINT);
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(lTells("Kept        1 of these files"));
  EXPECT_EQ(lRun.wait(), 0);
  const std::vector<std::string> lFiles = mDirectory.files();
  EXPECT_EQ(lFiles.size(), 2u);
  for (const std::string& lPath : lFiles) {
    const std::string lKept = mDirectory / "kept/" + std::filesystem::path(lPath).filename().string();
    EXPECT_EQ(nfwtest::readFile(lKept), nfwtest::readFile(lPath)) << lKept;
  }
}

TEST_F(Retention, whatIsKeptIsWhatTheLastTimeHasAndNothingIsReplaced) {
  const std::string lNew = "drive_20200101-000000_00.log", lOld = "drive_20200101-000001_00.log",
                    lOther = "trip_20200101-000000_00.log";
  for (const std::string& lName : {lNew, lOld, lOther}) nfwtest::writeFile(mDirectory / lName, lName);
  const auto lTime = std::filesystem::last_write_time(mDirectory / lOld);
  std::filesystem::last_write_time(mDirectory / lOld, lTime - std::chrono::seconds(300));
  const auto lKeep = [this](const std::string& nName) {
    const drive::KeptCounts lCounts = drive::keepFiles(mDirectory.path(), nName, 200);
    return std::to_string(lCounts.mNum) + " " + lCounts.mFault;
  };
  EXPECT_EQ(lKeep("drive"), "1 ");
  EXPECT_TRUE(has("kept/" + lNew) && !has("kept/" + lOld) && !has("kept/" + lOther));
  EXPECT_EQ(lKeep("drive"), "0 ");
  EXPECT_EQ(lKeep(lOther), "1 ");
  std::filesystem::remove(mDirectory / "kept/" + lNew);
  nfwtest::writeFile(mDirectory / "kept/" + lNew, "mine");
  EXPECT_EQ(lKeep("drive"), "0 " + mDirectory / "kept/" + lNew + ": File exists");
  EXPECT_EQ(nfwtest::readFile(mDirectory / "kept/" + lNew), "mine");
  std::filesystem::remove_all(mDirectory / "kept");
  nfwtest::writeFile(mDirectory / "kept", "");
  EXPECT_EQ(lKeep("drive"), "0 " + mDirectory / "kept/" + lNew + ": Not a directory");
}

TEST_F(Retention, tellsWhichLimitIsNone) {
  const struct {
    ToolRun::Words mLimits;
    const char* mpError;
  } CASES[] = {
      {{"--keep-age", "2x"}, "--keep-age: \"2x\" is no time: expected a number and s, m, h or d, as 10m"},
      {{"--keep-age", "1.5.0d"}, "--keep-age: \"1.5.0d\" is no time"},
      {{"--sync-interval", "-1"}, "--sync-interval: \"-1\" is no time"},
      {{"--keep-total", "much"}, "--keep-total"},
      {{"--keep-files", "0"}, "--keep-files"},
      {{"--keep-before", "0s"}, "--keep-before: \"0\" would keep nothing"},
      {{"--max-file-time-aligned"}, "goes with --max-file-time"},
  };
  for (const auto& lCase : CASES) {
    const Outcome lRun = record(lCase.mLimits);
    EXPECT_EQ(lRun.mExit, 2) << lCase.mpError;
    EXPECT_NE(lRun.mErrors.find(lCase.mpError), std::string::npos) << lRun.mErrors;
  }
}

}  // namespace
