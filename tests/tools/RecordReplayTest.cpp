#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

#include "LogRecords.h"
#include "Recordings.h"
#include "Split.h"
#include "TempDir.h"
#include "ToolRun.h"

// The program records, and plays back what it recorded: the summary compares.

namespace {

const char* const SAME = "the same as the recording, and as the run that made it";

class RecordReplay : public testing::Test {
 protected:
  std::string path(const char* npName) const { return mDirectory / npName; }
  Outcome record(ToolRun::Words nSource) {
    std::filesystem::create_directory(path("log"));
    nSource.insert(nSource.end(), {"--speed", "max", "--format", "json", "--dr", "--record", path("log"),
                                   "--sys-record", path("sensor.bin")});
    return runQuietly(nSource);
  }

  std::string recording() const {
    for (const auto& lEntry : std::filesystem::directory_iterator(path("log"))) return lEntry.path();
    return {};
  }

  nfwtest::TempDir mDirectory;
};

/// The last sentence of each kind of real receivers, where there are recordings of them.
std::string oneOfEachKind() {
  std::map<std::string, std::string> lKinds;
  for (const auto& lLines : nfwtest::recordings()) {
    for (const std::string& lLine : lLines) lKinds[lLine.substr(0, 7)] = lLine + "\n";
  }
  std::string lAll;
  for (const auto& lKind : lKinds) lAll += lKind.second;
  return lAll;
}

// A replay waits for nobody, and each service queues 256 messages: what is no more than that no load can overrun.
TEST_F(RecordReplay, bothLogsGiveListenersTheSameAsTheRun) {
  nfwtest::writeFile(path("in.nmea"), oneOfEachKind());
  std::vector<ToolRun::Words> lSources = {{"sim", "--for", "8", "--tunnel", "3-5", "--systems", "galileo"}};
  if (!nfwtest::recordings().empty()) lSources.push_back({path("in.nmea")});
  for (const ToolRun::Words& lSource : lSources) {
    const Outcome lLive = record(lSource);
    ASSERT_EQ(lLive.mExit, 0) << lLive.mErrors;
    for (const ToolRun::Words& lWhat :
         {ToolRun::Words{"--replay", recording()}, {"--sys-replay", path("sensor.bin")}}) {
      SCOPED_TRACE(lSource[0] + lWhat[0]);
      const Outcome lReplay = runQuietly({lWhat[0], lWhat[1], "--format", "json", "--dr"});
      EXPECT_EQ(lReplay.mExit, 0) << lReplay.mErrors;
      EXPECT_EQ(lReplay.mSummary["end"], "the replay ended");
      EXPECT_EQ(lReplay.mSummary["replay"], SAME);
      EXPECT_EQ(lReplay.mSummary["lateness_ms"]["early"], 0.0);
      for (const char* const lpCount : {"delivered_combined", "delivered_dead_reckoning"}) {
        EXPECT_EQ(lReplay.mSummary[lpCount], lLive.mSummary[lpCount]) << lpCount;
        EXPECT_LT(lReplay.mSummary[lpCount], 256) << lpCount;
      }
    }
    std::filesystem::remove_all(path("log")), std::filesystem::remove(path("sensor.bin"));
  }
}

TEST_F(RecordReplay, aDirectoryIsBackedUpBesideTheRecording) {
  std::filesystem::create_directories(path("kept/below"));
  nfwtest::writeFile(path("kept/below/it"), "mine");
  ASSERT_EQ(record({"sim", "--for", "1", "--backup", path("kept"), "--prefix", "trip"}).mExit, 0);
  std::string lFound;
  for (const auto& lEntry : std::filesystem::recursive_directory_iterator(path("log"))) {
    const std::string lName = lEntry.path().filename();
    if (lEntry.is_regular_file()) lFound += lName == "it" ? nfwtest::readFile(lEntry.path()) : lName.substr(0, 5);
  }
  EXPECT_TRUE(lFound == "minetrip_" || lFound == "trip_mine") << lFound;
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
  std::vector<ToolRun::Words> lRuns;
  for (const char* const lpPart : {"first", "second", "filtered"}) {
    lRuns.push_back({"--replay", path(lpPart), "--format", "json", "--log-level", "0"});
  }
  for (const Outcome& lPart : runAll(lRuns)) {
    EXPECT_EQ(lPart.mExit, 0) << lPart.mErrors;
    EXPECT_EQ(lPart.mSummary["replay"], "the same as the recording") << lPart.mErrors;
  }
}

TEST_F(RecordReplay, nmeaWritesTheSentencesAsTheyCame) {
  const std::string lSource = path("in.nmea");
  nfwtest::writeFile(lSource, runQuietly({"sim", "--for", "3", "--speed", "max", "--format", "nmea"}).mOutput);
  ASSERT_EQ(record({lSource}).mExit, 0);
  const Outcome lLog = runQuietly({"--replay", recording(), "--format", "nmea"});
  EXPECT_EQ(lLog.mOutput, nfwtest::readFile(lSource));
}

TEST_F(RecordReplay, tellsUsageFromFailure) {
  nfwtest::writeFile(path("foreign"), "no recording at all\n");
  for (const std::string& lWords : std::vector<std::string>{
           "/no/such/file", "/", "/dev/ttyNONE0", "--speed|fast", "--rate|11", "tcp://127.0.0.1", "sim|sim",
           "tcp://a b:1", "sim|--record|" + path("missing"), "sim|--sys-record|" + path("foreign"),
           "sim|--sys-record|" + path("no/where"), "--replay|" + path("missing"), "--replay|" + path("foreign"),
           "--sys-replay|" + path("foreign"), "sim|--tunnel|35-20", "sim|--max-file-size|1",
           "sim|--settings|/proc/none"}) {
    EXPECT_EQ(runQuietly(nfwtest::split(lWords, '|')).mExit, 2) << lWords;
  }
  for (const char* const lpAsked : {"--version", "--help"}) EXPECT_EQ(runQuietly({lpAsked}).mExit, 0) << lpAsked;
}

TEST_F(RecordReplay, settingsAreKeptAndTheCommandLineGoesBeforeThem) {
  const std::string lSettings = path("settings");
  EXPECT_EQ(runQuietly({"sim", "--speed", "max", "--for", "1", "--settings", lSettings}).mExit, 0);
  EXPECT_EQ(nfwtest::readFile(lSettings), "Source=sim\nSpeed=max\nLogLevel=0\n");
  const Outcome lAgain =
      runQuietly({"--for", "600", "--format", "json", "--settings", lSettings});  // at the kept speed
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
    const Outcome lRun = runQuietly(
        {"--for", "1", "--format", "none", "--speed", "max", "--prefix", "a", "--settings", path("settings")});
    EXPECT_EQ(lRun.mExit, lCase.mpFound != nullptr ? 2 : 0);
    EXPECT_NE(lRun.mErrors.find(lCase.mpFound != nullptr ? lCase.mpFound : ""), std::string::npos) << lRun.mErrors;
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
  nfwtest::writeFile(path("long"), nfwtest::logRecord(20, 0, "$GPGLL") + nfwtest::logRecord(20, 3600000, "$GPGLL"));
  nfwtest::writeFile(path("cut"), nfwtest::logRecord(20, 0, "$GPGLL") + "2024/05/06 07:08");
  const struct {
    std::vector<std::string> mArguments;
    int mExit;
    const char* mpText;
  } CASES[] = {
      {{recording()}, 2, "is a recording: use --replay"},
      {{path("sensor.bin")}, 2, "is a recording of the sensor log: use --sys-replay"},
      {{path("text.gz")}, 2, "/text.gz: is compressed"},
      {{"--replay", path("sensor.bin")}, 2, "but of the sensor log: use --sys-replay"},
      {{"--sys-replay", recording()}, 2, "but of the data logger: use --replay"},
      {{"/dev/null"}, 1, "no sentence came"},
      {{path("text")}, 1, "is it NMEA 0183"},
      {{path("spoilt")}, 1, "no sentence with a right checksum"},
      {{path("old")}, 1, "no sentence could be parsed: unparsable 2 (2 without a mode field: NMEA before 2.3)"},
      {{"--replay", path("notes"), "--format", "nmea"}, 0, "holds no sentences"},
      {{"--replay", path("late"), "--for", "0.01"}, 1, "ended before the first sentence"},
      {{"--replay", path("cut")}, 1, "nfw-log recover"},
      {{"--replay", path("cut")}, 1, "\nReplay      the recording is damaged, and cannot be played"},
      {{"--replay", path("long"), "--for", "1"}, 0, ""},
      {{"--replay", recording(), "--sys-replay", path("sensor.bin")}, 0, ""},
      {{"sim", "--record", "/proc"}, 1, "/proc: no recording can be begun there"},
  };
  std::vector<ToolRun::Words> lRuns;
  for (const auto& lCase : CASES) lRuns.push_back(lCase.mArguments);
  const std::vector<Outcome> lOutcomes = runAll(lRuns);
  for (const auto& lCase : CASES) {
    const Outcome& lRun = lOutcomes[static_cast<size_t>(&lCase - CASES)];
    EXPECT_EQ(lRun.mExit, lCase.mExit) << lCase.mpText;
    EXPECT_NE((lRun.mErrors + lRun.mOutput).find(lCase.mpText), std::string::npos) << lRun.mErrors << lRun.mOutput;
  }
}

}  // namespace
