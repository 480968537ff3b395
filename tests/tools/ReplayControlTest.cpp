#include <gtest/gtest.h>

#include <csignal>

#include "LogRecords.h"
#include "TempDir.h"
#include "ToolRun.h"

// The program plays files as one recording, parts of them, faster and again; the summary compares what was asked for.

namespace {

class ReplayControl : public testing::Test {
 protected:
  ReplayControl() {
    std::filesystem::create_directory(mDirectory / "log");
    write("log/drive_20260101-000000_00.log", 0);
    write("log/drive_20260101-000002_00.log", 2000);
    nfwtest::writeFile(mDirectory / "log/drive_20260101-000003_00.log", "");  // just begun
    nfwtest::writeFile(mDirectory / "log/other", "");
  }

  // Ten sentences, one each tenth of a second.
  void write(const std::string& nName, unsigned int nTick) const {
    std::string lBytes;
    for (unsigned int i = 0; i < 10; ++i) {
      lBytes += nfwtest::logRecord(20, nTick + i * 100, "$GPGLL," + std::to_string(nTick + i));
    }
    nfwtest::writeFile(path(nName.c_str()), lBytes);
  }
  std::string path(const char* npName) const { return mDirectory / npName; }

  nfwtest::TempDir mDirectory;
};

TEST_F(ReplayControl, playsWhatIsAskedForAndNothingElse) {
  const std::string lFirst = path("log/drive_20260101-000000_00.log"),
                    lOther = path("log/drive_20260101-000002_00.log");
  const struct {
    ToolRun::Words mArguments;
    unsigned int mSentences;
    const char* mpVerdict;
  } CASES[] = {
      {{path("log"), "--rate", "10"}, 20, "the same as the recording"},
      {{lOther, lFirst, "--speed", "10"}, 20, "the same as the recording"},
      {{path("log"), "--rate", "10", "--from", "0:00.5"}, 15, "the same as this part of the recording"},
      {{path("log"), "--rate", "10", "--from", "0.45", "--to", "0:00:02.3"}, 8, "the same as this part"},
      {{path("log"), "--rate", "0.2", "--to", "0.001"}, 1, "the same as this part"},
      {{path("log"), "--rate", "100", "--from", "1", "--to", "1.9"}, 0, "this part of the recording holds no sent"},
      {{path("log"), "--rate", "0.5", "--for", "1.5"}, 10, "ended early: not compared"},  // between the files
  };
  std::vector<ToolRun::Words> lRuns;
  for (const auto& lCase : CASES) {
    lRuns.push_back({"--log-level", "0", "--format", "json", "--replay"});
    lRuns.back().insert(lRuns.back().end(), lCase.mArguments.begin(), lCase.mArguments.end());
  }
  const std::vector<Outcome> lOutcomes = runAll(lRuns);
  for (const auto& lCase : CASES) {
    const Outcome& lRun = lOutcomes[static_cast<size_t>(&lCase - CASES)];
    EXPECT_EQ(lRun.mExit, 0) << lRun.mErrors;
    EXPECT_EQ(lRun.mSummary["delivered_sentences"], lCase.mSentences) << lCase.mpVerdict;
    EXPECT_EQ(lRun.mSummary["replay"].get<std::string>().find(lCase.mpVerdict), 0u) << lRun.mSummary["replay"];
  }
}

TEST_F(ReplayControl, aLoopComparesEachRound) {
  for (const ToolRun::Words& lPart : {ToolRun::Words{"--to", "2.2"}, {"--from", "2.2"}}) {
    ToolRun lRun({"--replay", path("log"), "--rate", "50", "--loop", lPart[0], lPart[1], "--format", "nmea"});
    const std::string lFirst = lRun.readLine();
    int lRounds = 0;
    for (std::string lLine = lFirst; lRounds < 3 && !lLine.empty(); lRounds += lLine == lFirst) lLine = lRun.readLine();
    EXPECT_EQ(lRounds, 3);
    lRun.signal(SIGINT);
    lRun.readAll();
    EXPECT_EQ(lRun.wait(), 0) << lRun.errors();
    EXPECT_NE(lRun.errors().find(" whole rounds the same as the recording; the last one "), std::string::npos)
        << lRun.errors();
  }
}

TEST_F(ReplayControl, tellsWhatCannotBePlayedSo) {
  write("log/trip_20260101-000000_00.log", 0);
  std::filesystem::create_directory(path("empty"));
  const struct {
    ToolRun::Words mArguments;
    const char* mpError;
  } CASES[] = {
      {{"--replay", path("log")}, "holds the recordings drive trip: name one of them with --prefix"},
      {{"--replay", path("empty")}, "no recording of the data logger in this directory"},
      {{"--sys-replay", path("log")}, "no recording of the sensor log in this directory"},
      {{"--replay", path("log"), "--prefix", "trip", "--from", "1"}, "ends 0:00:00.9 behind its first record"},
      {{"--replay", "/dev/null"}, "/dev/null: neither a file nor a directory"},
      {{"--replay", path("log/other")}, "offset 0: no record of the data logger"},
      {{"--replay", path("log"), path("missing"), "--prefix", "drive"}, "missing: No such file or directory"},
      {{"--replay", path("log"), "--prefix", "drive", "--rate", "101"}, "\"101\" is no number of 0.01 to 100"},
      {{"--replay", path("log"), "--prefix", "drive", "--speed", "max"}, "\"max\" is no number of 0.01 to 100"},
      {{"--replay", path("log"), "--prefix", "drive", "--to", "1:70"}, "\"1:70\" is no time"},
      {{"--replay", path("log"), "--prefix", "drive", "--from", "2", "--to", "2"}, "is not behind the beginning"},
      {{"--replay", path("log"), "sim", "--prefix", "drive", "--loop"}, "--loop: goes with one replay alone"},
      {{"--from", "1"}, "--from: goes with --replay"},
      {{"sim", "--rate", "1.5"}, "\"1.5\" is no whole number of 1 to 10"},
  };
  for (const auto& lCase : CASES) {
    const Outcome lRun = runQuietly(lCase.mArguments);
    EXPECT_EQ(lRun.mExit, 2) << lCase.mpError;
    EXPECT_NE(lRun.mErrors.find(lCase.mpError), std::string::npos) << lRun.mErrors;
  }
}

}  // namespace
