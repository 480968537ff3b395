#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "LogRecords.h"
#include "TempDir.h"
#include "ToolRun.h"

// The program records, and plays back what it recorded: the summary compares.

namespace {

using nlohmann::json;

struct Outcome {
  std::string mOutput;
  json mSummary;
  int mExit = -1;
};

Outcome run(std::vector<std::string> nArguments) {
  nArguments.insert(nArguments.end(), {"--log-level", "0"});
  Outcome lRun;
  lRun.mOutput = ToolRun::output(nArguments, &lRun.mExit);
  const size_t lLast = lRun.mOutput.rfind("{\"type\":\"summary\"");
  if (lLast != std::string::npos) lRun.mSummary = json::parse(lRun.mOutput.substr(lLast));
  return lRun;
}

class RecordReplay : public testing::Test {
 protected:
  std::string path(const char* npName) const { return mDirectory / npName; }
  Outcome record(std::vector<std::string> nSource) {
    std::filesystem::create_directory(path("log"));
    nSource.insert(nSource.end(), {"--speed", "max", "--format", "json", "--dr", "--record", path("log"),
                                   "--sys-record", path("sensor.bin")});
    return run(nSource);
  }

  std::string recording() const {
    for (const auto& lEntry : std::filesystem::directory_iterator(path("log"))) return lEntry.path();
    return {};
  }

  nfwtest::TempDir mDirectory;
};

TEST_F(RecordReplay, bothLogsGiveListenersTheSameAsTheRun) {
  const Outcome lLive = record({"sim", "--for", "30", "--tunnel", "10-20", "--rate", "2"});
  ASSERT_EQ(lLive.mExit, 0) << lLive.mOutput;

  const Outcome lLog = run({"--replay", recording(), "--format", "json", "--dr"});
  EXPECT_EQ(lLog.mExit, 0);
  EXPECT_EQ(lLog.mSummary["end"], "the replay ended");
  EXPECT_EQ(lLog.mSummary["replay"], "the same as the recording, and as the run that made it");
  EXPECT_EQ(lLog.mSummary["lateness_ms"]["early"], 0.0);
  for (const char* const lpCount : {"delivered_sentences", "delivered_combined", "delivered_dead_reckoning"}) {
    EXPECT_EQ(lLog.mSummary[lpCount], lLive.mSummary[lpCount]) << lpCount;
    EXPECT_GT(lLog.mSummary[lpCount], 0) << lpCount;
  }

  const Outcome lSensor = run({"--sys-replay", path("sensor.bin"), "--format", "json"});
  EXPECT_EQ(lSensor.mExit, 0);
  EXPECT_EQ(lSensor.mSummary["replay"], "the same as the recording, and as the run that made it");
}

TEST_F(RecordReplay, tellsWhereARecordingIsDamaged) {
  ASSERT_EQ(record({"sim", "--for", "5"}).mExit, 0);
  const std::string lFile = recording();
  std::filesystem::resize_file(lFile, std::filesystem::file_size(lFile) - 30);
  const Outcome lLog = run({"--replay", lFile, "--format", "json"});
  EXPECT_EQ(lLog.mExit, 1);
  EXPECT_EQ(lLog.mSummary["replay"].get<std::string>().find("the recording is damaged, and cannot be played"), 0u);
}

// Files that begin and end within a report of dead reckoning, or hold chosen kinds only, are no less whole.
TEST_F(RecordReplay, partsOfARecordingAreTheSameAsTheirReplay) {
  ASSERT_EQ(record({"sim", "--for", "3"}).mExit, 0);
  const std::string lBytes = nfwtest::readFile(recording());
  const size_t lCut = lBytes.find(" ID00000015: ", lBytes.size() / 2) - 23;  // a record in the midst
  nfwtest::writeFile(path("first"), lBytes.substr(0, lCut));
  nfwtest::writeFile(path("second"), lBytes.substr(lCut));
  const std::string lFilter = NFW_EMULATOR " " NFW_LOG_PROGRAM " filter " + recording() + " --type GGA,PUBX -o ";
  ASSERT_EQ(std::system((lFilter + path("filtered")).c_str()), 0);
  for (const char* const lpPart : {"first", "second", "filtered"}) {
    const Outcome lPart = run({"--replay", path(lpPart), "--format", "json"});
    EXPECT_EQ(lPart.mExit, 0) << lpPart;
    EXPECT_EQ(lPart.mSummary["replay"], "the same as the recording") << lpPart;
  }
}

TEST_F(RecordReplay, nmeaWritesTheSentencesAsTheyCame) {
  const std::string lSource = path("in.nmea");
  nfwtest::writeFile(lSource, run({"sim", "--for", "3", "--speed", "max", "--format", "nmea"}).mOutput);
  ASSERT_EQ(record({lSource}).mExit, 0);
  const Outcome lLog = run({"--replay", recording(), "--format", "nmea"});
  EXPECT_EQ(lLog.mOutput, nfwtest::readFile(lSource));
}

// Another program reads what a replay writes, and finds the positions of the run, in their order.
TEST_F(RecordReplay, itsSentencesAreReadByGpsbabel) {
  if (std::system("command -v gpsbabel >/dev/null") != 0) GTEST_SKIP() << "gpsbabel is not installed";
  const Outcome lLive = record({"sim", "--for", "20"});
  nfwtest::writeFile(path("replayed.nmea"), run({"--replay", recording(), "--format", "nmea"}).mOutput);
  ASSERT_EQ(
      std::system(("gpsbabel -t -i nmea -f " + path("replayed.nmea") + " -o csv -F " + path("track.csv")).c_str()), 0);
  std::istringstream lTrack(nfwtest::readFile(path("track.csv")));
  std::istringstream lRecords(lLive.mOutput);
  size_t lFound = 0;
  double lLatitude = 0.0;
  double lLongitude = 0.0;
  char lComma = 0;
  for (std::string lPoint; std::getline(lTrack, lPoint);) {
    std::istringstream(lPoint) >> lLatitude >> lComma >> lLongitude;
    for (std::string lLine; std::getline(lRecords, lLine);) {
      const json lRecord = json::parse(lLine);
      if (lRecord["type"] != "GGA" && lRecord["type"] != "RMC") continue;
      if (std::abs(lRecord["latitude"]["degrees"].get<double>() - lLatitude) > 1e-5) continue;
      if (std::abs(lRecord["longitude"]["degrees"].get<double>() - lLongitude) > 1e-5) continue;
      ++lFound;
      break;
    }
  }
  EXPECT_GE(lFound, 19u);
}

TEST_F(RecordReplay, tellsWhatCannotBeRecordedOrPlayed) {
  nfwtest::writeFile(path("foreign"), "no recording at all\n");
  const std::vector<std::string> CASES[] = {
      {"sim", "--record", path("missing")},
      {"sim", "--sys-record", path("foreign")},
      {"sim", "--sys-record", path("no/where")},
      {"--replay", path("missing")},
      {"--replay", path("foreign")},
      {"--sys-replay", path("foreign")},
      {"sim", "--tunnel", "35-20"},
      {"sim", "--max-file-size", "1"},
  };
  for (const auto& lCase : CASES) EXPECT_EQ(run(lCase).mExit, 2) << lCase[lCase.size() - 2] << ' ' << lCase.back();
}

TEST_F(RecordReplay, settingsAreKeptAndTheCommandLineGoesBeforeThem) {
  const std::string lSettings = path("settings");
  EXPECT_EQ(run({"sim", "--speed", "max", "--for", "1", "--settings", lSettings}).mExit, 0);
  EXPECT_EQ(nfwtest::readFile(lSettings), "Source=sim\nSpeed=max\nLogLevel=0\n");
  const Outcome lAgain = run({"--for", "600", "--format", "json", "--settings", lSettings});  // at the kept speed
  EXPECT_EQ(lAgain.mSummary["end"], "the source ended");
}

// People write in it, too: what they wrote stays, and what cannot be understood is left to them.
TEST_F(RecordReplay, aFileOfSettingsIsTheUsers) {
  const struct {
    const char* mpText;
    const char* mpFound;  // what the message names; null: it is understood
    const char* mpAfter;  // null: not written
  } CASES[] = {
      {"# mine\n  Speed = max \t\r\n\n Other = 7 # x\nLogLevel=0\nRecordPrefix=a", nullptr, nullptr},
      {"# mine\n Speed = 7 \r\nLogLevel=\n#\nX", ":5: expected KEY=VALUE or # and a comment, found \"X\"", nullptr},
      {"#\n Speed = 7 \r\nMine=1\nLogLevel=", nullptr, "#\n Speed = max \r\nMine=1\nLogLevel=0\nRecordPrefix=a\n"},
      {"Speed=max\nlogLevel=0", ":2: expected KEY=VALUE or # and a comment, found \"logLevel\" for LogLevel", nullptr},
      {"Mine=1\nMine=2\nSpeed=1\nSpeed=2", "found Speed again, which line 3 gives", nullptr},
      {"RecordDirectory=\x07", ":1: expected KEY=VALUE or # and a comment, found a control character", nullptr},
      {"\n\nSource=tcp://h\n", ":3: Source: tcp://h: needs a port", nullptr},
  };
  for (const auto& lCase : CASES) {
    SCOPED_TRACE(lCase.mpText);
    nfwtest::writeFile(path("settings"), lCase.mpText);
    int lExit = -1;
    const std::string lErrors = ToolRun::errors({"--for", "1", "--format", "none", "--speed", "max", "--log-level", "0",
                                                 "--prefix", "a", "--settings", path("settings")},
                                                &lExit);
    EXPECT_EQ(lExit, lCase.mpFound != nullptr ? 2 : 0);
    EXPECT_NE(lErrors.find(lCase.mpFound != nullptr ? lCase.mpFound : ""), std::string::npos) << lErrors;
    EXPECT_EQ(nfwtest::readFile(path("settings")), lCase.mpAfter != nullptr ? lCase.mpAfter : lCase.mpText);
  }
}

// What gives nothing ends with a reason, and with the way on where there is one.
TEST_F(RecordReplay, tellsWhyNothingIsHeard) {
  ASSERT_EQ(record({"sim", "--for", "2"}).mExit, 0);
  nfwtest::writeFile(path("text"), "hello\n");
  nfwtest::writeFile(path("text.gz"), "\x1F\x8B\x08");
  nfwtest::writeFile(path("old"), "$GPRMC,120000,A,3559.0,N,13900.0,E,0,0,280226,,\n$GPVTG,0,T,,M,36,N,66,K\n");
  nfwtest::writeFile(path("spoilt"), "$GPGLL,,,,,,V,N*65\n");
  const std::string lNote = nfwtest::logRecord(200, 0, "a note").replace(26, 8, "000000C8");
  nfwtest::writeFile(path("notes"), lNote);
  nfwtest::writeFile(path("late"), lNote + nfwtest::logRecord(20, 60000, "$GPGLL"));
  nfwtest::writeFile(path("cut"), nfwtest::logRecord(20, 0, "$GPGLL") + "2024/05/06 07:08");
  const struct {
    std::vector<std::string> mArguments;
    int mExit;
    const char* mpError;
  } CASES[] = {
      {{recording()}, 2, "is a recording: use --replay"},
      {{path("sensor.bin")}, 2, "is a recording of the sensor log: use --sys-replay"},
      {{path("text.gz")}, 2, "is compressed"},
      {{"--replay", path("sensor.bin")}, 2, "but of the sensor log: use --sys-replay"},
      {{"--sys-replay", recording()}, 2, "but of the data logger: use --replay"},
      {{"/dev/null"}, 1, "no sentence came"},
      {{path("text")}, 1, "is it NMEA 0183"},
      {{path("spoilt")}, 1, "no sentence with a right checksum"},
      {{path("old")}, 1, "no sentence could be parsed: unparsable 2 (2 without a mode field: NMEA before 2.3)"},
      {{"--replay", path("notes"), "--format", "nmea"}, 0, "holds no sentences"},
      {{"--replay", path("late"), "--for", "0.01"}, 1, "ended before the first sentence"},
      {{"--replay", path("cut")}, 1, "nfw-log recover"},
      {{"--replay", recording(), "--speed", "2"}, 2, "--speed: a replay keeps the pace of its recording"},
      {{"--replay", recording(), "--for", "0.5"}, 0, ""},
  };
  for (const auto& lCase : CASES) {
    int lExit = -1;
    const std::string lErrors = ToolRun::errors(lCase.mArguments, &lExit);
    EXPECT_EQ(lExit, lCase.mExit) << lCase.mpError;
    EXPECT_NE(lErrors.find(lCase.mpError), std::string::npos) << lErrors;
  }
}

}  // namespace
