#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <csignal>
#include <cstdlib>
#include <map>
#include <sstream>

#include "LogRecords.h"
#include "Recordings.h"
#include "Split.h"
#include "TempDir.h"
#include "ToolRun.h"

namespace {

using nlohmann::json;
using Strings = std::vector<std::string>;

// In the order in which they are given.
void expectTexts(const std::string& nOutput, const Strings& nTexts) {
  size_t lAt = 0;
  for (const std::string& lText : nTexts) {
    const size_t lFound = nOutput.find(lText, lAt);
    EXPECT_NE(lFound, std::string::npos) << "\"" << lText << "\" is not behind " << lAt << " in\n" << nOutput;
    if (lFound != std::string::npos) lAt = lFound + lText.size();
  }
}

json lastOf(const std::string& nOutput) {
  return json::parse(nOutput.substr(nOutput.rfind('\n', nOutput.size() - 2) + 1));
}

// To the last digit, and in the order of the sentence; a block of no satellite and an empty position are none.
TEST(Drive, jsonlRawSaysWhatTheSentenceSays) {
  const char* const CASES[][2] = {
      {"$GNGGA,000102.25,0000.0001,S,00833.91590,W,2,08,1.01,-49.6,M,48.0,M,7,0120*00",
       R"({"type":"GGA","system":"combined","utc":"00:01:02","millisecond":25,)"
       R"("latitude":{"value":0.0001,"direction":"S","degrees":-1.6666666666666667e-06},)"
       R"("longitude":{"value":833.9159,"direction":"W","degrees":-8.565265},"quality":"differential",)"
       R"("satellites":8,"hdop":1.01,"altitude":-49.6,"geoid_separation":48,"dgps_age":7,"dgps_station":120})"},
      {"$GPGGA,000102.5,,,,,0,,,,M,,M,,*00", R"("millisecond":5,"latitude":null,"longitude":null,"quality":"invalid")"},
      {"$GLGLL,8959.99999999,N,17959.5,E,225444,A,D*00",
       R"({"type":"GLL","system":"GLONASS","utc":"22:54:44","millisecond":0,)"
       R"("latitude":{"value":8959.99999999,"direction":"N","degrees":89.99999999983332},)"
       R"("longitude":{"value":17959.5,"direction":"E","degrees":179.99166666666667},"valid":true,)"
       R"("mode":"differential"})"},
      {"$GNGSA,A,3,01,,302,,,,,,,,,,1.5,0.9,1.2*00",
       R"({"type":"GSA","system":"combined","selection":"automatic","fix":"3D","satellites":[1,302],)"
       R"("pdop":1.5,"hdop":0.9,"vdop":1.2})"},
      {"$GPGSV,1,1,05,01,40,083,46,02,17,308,,,,,*00",
       R"({"type":"GSV","system":"GPS","messages":1,"message":1,"in_view":5,"satellites":[)"
       R"({"id":1,"elevation":40,"azimuth":83,"snr":46,"valid":true},)"
       R"({"id":2,"elevation":17,"azimuth":308,"snr":0,"valid":false}]})"},
      {"$GPRMC,123519.000,V,4807.038,N,01131.000,W,022.4,084.4,230394,003.1,W,E*00",
       R"({"type":"RMC","system":"GPS","date":"2094-03-23","utc":"12:35:19","millisecond":0,"valid":false,"latitude":)"},
      {"$GPRMC,123519.000,V,4807.038,N,01131.000,W,022.4,084.4,230394,003.1,W,E*00",
       R"(},"speed_knots":22.4,"course":84.4,"magnetic_variation":-3.1,"mode":"estimated"})"},
      {"$GAVTG,054.7,T,034.4,M,005.5,N,010.2,K,N*00",
       R"({"type":"VTG","system":"Galileo","course":54.7,"course_magnetic":34.4,"speed_knots":5.5,"speed_kmh":10.2,)"
       R"("mode":"not valid"})"},
      {"$GPZDA,235959.999,31,12,2026,12,30*00",
       R"({"type":"ZDA","system":"GPS","date":"2026-12-31","utc":"23:59:59","millisecond":999,"zone_hours":12,)"
       R"("zone_minutes":30})"},
      {"$PUBX,00,081350.00,4717.11,N,00833.91,E,546.589,RK,2.1,2.0,0.007,77.52,0.008,5,0.92,1.19,0.77,9,0,1*00",
       R"(},"altitude":546.589,"status":"RK","horizontal_accuracy":2.1,"vertical_accuracy":2,"speed_kmh":0.007,)"
       R"("course":77.52,"vertical_velocity":0.008,"dgps_age":5,"hdop":0.92,"vdop":1.19,"tdop":0.77,"satellites":9,)"
       R"("dead_reckoning":false})"},
  };
  const nfwtest::TempDir lDirectory;
  std::string lLines;
  for (const auto& [lpSentence, lpJson] : CASES) lLines += std::string(lpSentence) + "\n";
  nfwtest::writeFile(lDirectory / "in.nmea", lLines);
  const Outcome lRun = runQuietly({lDirectory / "in.nmea", "--no-checksum", "--speed", "max", "--format", "jsonl-raw"});
  for (const auto& [lpSentence, lpJson] : CASES) expectTexts(lRun.mOutput, {lpJson});
}

TEST(Drive, showsALineAnEpochAndTheSummary) {
  const Outcome lRun = runQuietly({"--speed", "max", "--for", "60", "--tunnel", "30-50"});
  EXPECT_EQ(lRun.mOutput.find("2026-01-31 08:00:00.000  35.6580000 139.7450000  0.0 km/h  60.0 deg  3D, gps  26 sat"),
            0u);
  expectTexts(
      lRun.mOutput,
      {"\n2026-01-31 08:00:24.000  35.6564400 139.7459578  50.0 km/h  158.8 deg  3D, gps  26 satellites\n",
       "\n2026-01-31 08:00:30.000  35.", " 139.", " km/h", "  no fix, reckoned  0 satellites\n2026-01-31 08:00:31",
       "2026-01-31 08:00:59.000  ", "  3D, gps  26 satellites\nSource      sim: the source ended\n",
       "Lines       1020 read = 1020 accepted + 0 rejected + 0 of other kinds\n",
       "Accepted    GGA 60  GLL 60  GSA 180  GSV 480  RMC 60  VTG 60  ZDA 60  PUBX 60  \n",
       "Rejected    noise 0  cut 0  too long 0  binary 0  bad checksum 0  no checksum 0  unparsable 0\n",
       "Checksums   1020 right, 0 sentences without or not judged\n",
       "Delivered   sentences 1020  GGA 60  GLL 60  GSA 180  GSV 180  RMC 60  VTG 60  ZDA 60  PUBX 60  combined 60"
       "  dead-reckoning 900\n",
       "Phases      before quick boot ", " ms, after quick boot ", " ms, finalize "});
}

TEST(Drive, showsThePositionOfWhateverTellsIt) {
  const nfwtest::TempDir lDirectory;
  nfwtest::writeFile(lDirectory / "in",
                     "$GPRMC,123519,A,4807.038,N,01131.000,W,022.4,084.4,280226,,,A\n"
                     "$GPGLL,,,,,123520,V,N\n$GPRMC,123520,V,,,,,,,280226,,,N\n$GPVTG,,T,,M,,N,,K,N\n");
  const Outcome lRun = runQuietly({lDirectory / "in", "--speed", "max", "--dr"});
  expectTexts(lRun.mOutput, {"dead reckoning  $GPRMC,123519.000,A,4807.03800,N,01131.00000,W,22.400,84.40,280226,"});
  expectTexts(
      lRun.mOutput,
      {"2026-02-28 12:35:19.000  48.1173000 -11.5166667  41.5 km/h  84.4 deg  no fix, invalid  0 satellites\n",
       "2026-02-28 12:35:20.000  48.1173102 -11.5165122  41.5 km/h  84.4 deg  no fix, reckoned  0 satellites\n"});
}

// What it has drawn goes; the last fix stays, and what the log has complained of.
TEST(Drive, leavesTheLastFixOnATerminal) {
  if (!NFW_HAS_LIVE_VIEW) GTEST_SKIP() << "nfw-drive was built without ncurses";
  const Outcome lPlain = runQuietly({"sim", "--speed", "max", "--for", "40", "--tunnel", "30-50", "--format", "lines"});
  ToolRun lRun({"sim", "--speed", "max", "--for", "40", "--tunnel", "30-50", "--log-level", "2"}, ToolRun::TERMINAL);
  const std::string lText = lRun.readAll();
  EXPECT_EQ(lRun.wait(), 0);
  expectTexts(
      lText,
      {"Time         2026-01-31T08:00:39.000Z\r\nPosition     no position\r\nSpeed        no speed   course -\r\n"
       "Fix          reckoned   PDOP 99.99 HDOP 99.99 VDOP 99.99\r\n"
       "Reckoned     35.6546710 139.7468427   64.4 km/h   149.8 deg\r\n"
       "Satellites   0 used of 29 in view: GPS 10 GLONASS 8 Galileo 11\r\nSource"});
  expectTexts(lPlain.mOutput,
              {"2026-01-31 08:00:39.000  35.6546710 139.7468427  64.4 km/h  149.8 deg  no fix, reckoned"});
}

// Every member is there. A position is that of its epoch, however far dead reckoning is ahead.
TEST(Drive, jsonSaysAnEpochByItsSchema) {
  const json lSchema = json::parse(nfwtest::readFile(NFW_EPOCH_SCHEMA));
  const Outcome lRun = runQuietly({"sim", "--speed", "20", "--for", "9", "--tunnel", "3-5", "--format", "json"});
  std::istringstream lLines(lRun.mOutput);
  std::string lFixes;
  for (std::string lLine; std::getline(lLines, lLine) && lLine.find("summary") == std::string::npos;) {
    const json lEpoch = json::parse(lLine);
    for (const json& lKey : lSchema["required"]) EXPECT_TRUE(lEpoch.contains(lKey)) << lKey << lLine;
    EXPECT_EQ(lEpoch.size(), lSchema["required"].size());
    EXPECT_EQ(lEpoch["satellites"].size(), 29u);
    EXPECT_EQ(lEpoch["satellites"][0].size(), lSchema["properties"]["satellites"]["items"]["required"].size());
    EXPECT_EQ(lEpoch["latitude"].is_number() && lEpoch["speed"].is_number(), lEpoch["fix"] != "none") << lLine;
    lFixes += lEpoch["time"].get<std::string>().substr(18, 1) + lEpoch["fix"].get<std::string>() + " ";
  }
  EXPECT_EQ(lFixes, "03D 13D 23D 3reckoned 4reckoned 53D 63D 73D 83D ");
}

TEST(Drive, aSignalStopsThroughThePhases) {
  for (const int lSignal : {SIGINT, SIGTERM}) {
    ToolRun lRun(
        {"sim", "--speed", "0.001", "--format", "jsonl-raw", "--log-level", "0"});  // for an epoch in 17 minutes
    EXPECT_NE(lRun.readLine(), "");
    lRun.signal(lSignal);
    EXPECT_EQ(lastOf(lRun.readAll())["end"], "stopped by a signal");
    EXPECT_EQ(lRun.wait(), 0);
  }
}

// Each option by what it changes in the summary; a file of three sentences, one spoilt, one of a kind that is not
// parsed, and the beginning of another.
TEST(Drive, heedsItsOptions) {
  const nfwtest::TempDir lDirectory;
  const std::string lFile = lDirectory / "in.nmea";
  nfwtest::writeFile(
      lFile, "$GPVTG,,T,,M,,N,,K,N*2C\n$GPVTG,,T,,M,,N,,K,N*2D\n$GPRMC,120000,V,,,,,,,280226,,,N*00\n$GPTXT,1*00\n$GP");
  const struct {
    ToolRun::Words mArguments;
    json mExpected;
  } CASES[] = {
      {{lFile}, {{"lines", 5}, {"accepted", 1}, {"rejected_total", 4}, {"ignored", 0}, {"source", lFile}}},
      {{lFile, "--no-checksum"}, {{"lines", 5}, {"accepted", 3}, {"rejected_total", 1}, {"ignored", 1}}},
      {{"sim", "--for", "60"},
       {{"kinds/GSV/expected", 180}, {"delivered_sentences", 1020}, {"delivered_combined", 60}}},
      {{"sim", "--for", "2", "--rate", "10"}, {{"lines", 178}, {"accepted", 178}, {"kinds/GSV/accepted", 16}}},
      {{"sim", "--for", "1", "--systems", "gps,galileo"}, {{"accepted", 14}, {"delivered_dead_reckoning", 12}}},
      {{"sim", "--for", "10", "--seed", "3", "--tunnel", "1-3,5-6"}, {{"accepted", 170}, {"end", "the source ended"}}},
  };
  for (const auto& lCase : CASES) {
    SCOPED_TRACE(json(lCase.mArguments));
    ToolRun::Words lArguments = lCase.mArguments;
    lArguments.insert(lArguments.end(), {"--speed", "max", "--format", "json"});
    const Outcome lRun = runQuietly(lArguments);
    EXPECT_EQ(lRun.mExit, 0);
    for (const auto& [lKey, lValue] : lCase.mExpected.items())
      EXPECT_EQ(lRun.mSummary.at(json::json_pointer("/" + lKey)), lValue) << lKey;
  }
}

// What it says about sentences of real receivers adds up.
TEST(Drive, accountsForEverySentence) {
  const auto lRecordings = nfwtest::recordings();
  if (lRecordings.empty()) GTEST_SKIP() << nfwtest::NO_RECORDINGS;
  const nfwtest::TempDir lDirectory;
  for (const Strings& lLines : lRecordings) {
    SCOPED_TRACE(lLines[0]);
    std::string lText;
    for (const std::string& lLine : lLines) lText += lLine + "\n";
    nfwtest::writeFile(lDirectory / "in.nmea", lText);
    const Outcome lRun = runQuietly({lDirectory / "in.nmea", "--speed", "max", "--format", "jsonl-raw"});
    std::map<std::string, uint64_t> lObjects;
    for (const std::string& lLine : nfwtest::split(lRun.mOutput, '\n')) {
      if (!lLine.empty()) ++lObjects[json::parse(lLine)["type"]];
    }
    const json& lSummary = lRun.mSummary;
    uint64_t lNum = lSummary["accepted"].get<uint64_t>() + lSummary["ignored"].get<uint64_t>();
    EXPECT_EQ(lRun.mExit, lNum > 0 ? 0 : 1) << "one receiver sends nothing that can be parsed";
    for (const auto& lRejected : lSummary["rejected"]) lNum += lRejected.get<uint64_t>();
    EXPECT_EQ(lSummary["lines"], lNum);
    for (const auto& [lKind, lCounts] : lSummary["kinds"].items()) {
      EXPECT_EQ(lCounts["delivered"], lObjects[lKind]) << lKind;
      EXPECT_EQ(lCounts["delivered"], lCounts[lKind == "GSV" ? "expected" : "accepted"]) << lKind;
    }
  }
}

// What a program opens must not become its standard output, nor its messages part of a file; the work is done whoever
// takes the messages.
TEST(Drive, bothToolsBearDescriptorsThatAreClosedFullOrLeft) {
  if (*NFW_EMULATOR != '\0') GTEST_SKIP() << "the emulator opens files of its own";
  const nfwtest::TempDir lDirectory;
  const std::string lGood = nfwtest::logRecord(20, 1000, "$GPGLL"), lBad = lDirectory / "bad.log ";
  nfwtest::writeFile(lDirectory / "bad.log", lGood + std::string(100, '\xA5'));
  const std::string lToOut = lBad + "--force -o " + lDirectory / "out ";
  const struct {
    std::string mCommand;
    int mExit;
  } CASES[] = {
      {NFW_DRIVE_PROGRAM " - <&-", 2},
      {NFW_DRIVE_PROGRAM " sim --speed max --for 1 >&-", 1},
      {NFW_DRIVE_PROGRAM " sim --speed max --for 1 >/dev/full", 1},
      {NFW_DRIVE_PROGRAM " sim --speed max --format json | head -n 1 >/dev/null; exit ${PIPESTATUS[0]}", 0},
      {NFW_DRIVE_PROGRAM " sim --speed max --for 1 --format none 2>&-", 0},
      {NFW_LOG_PROGRAM " cat " + lBad + ">/dev/full", 1},
      {NFW_LOG_PROGRAM " convert --to gpx " + lToOut + "2>/dev/full", 0},
      {NFW_LOG_PROGRAM " cat " + lToOut + "2> >(:)", 0},
      {NFW_LOG_PROGRAM " cut " + lToOut + "2>/dev/full", 0},
      {NFW_LOG_PROGRAM " recover " + lToOut + "2>&-", 0},
  };
  for (const auto& lCase : CASES) {
    const int lStatus = std::system(("exec 2>/dev/null; timeout -s KILL 20 bash -c '" + lCase.mCommand + "'").c_str());
    EXPECT_EQ(WEXITSTATUS(lStatus), lCase.mExit) << lCase.mCommand;
  }
  EXPECT_EQ(nfwtest::readFile(lDirectory / "out"), lGood);
  EXPECT_EQ(lDirectory.files().size(), 2u) << "no temporary one";
}

// A receiver of kinds and qualities that the library does not know: its errors are told once of a kind, and counted.
TEST(Drive, countsTheLinesOfTheLibraryThatRepeat) {
  const nfwtest::TempDir lDirectory;
  std::string lText;
  for (int i = 10; i < 40; ++i) {
    lText += "$GPRMC,1200" + std::to_string(i) + ",A,3559.0,N,13900.0,E,0,0,280226,,,S\n$GPTXT,1,1," +
             std::to_string(i) + "\n";
  }
  nfwtest::writeFile(lDirectory / "odd.nmea", lText);
  const auto lErrorLines = [&](std::vector<std::string> nMore) {
    nMore.insert(nMore.begin(), {lDirectory / "odd.nmea", "--speed", "max", "--format", "none"});
    const std::string lLines = "\n" + run(nMore).mErrors;
    size_t lCount = 0;
    for (size_t i = lLines.find("\nERR "); i != std::string::npos; i = lLines.find("\nERR ", i + 1)) ++lCount;
    EXPECT_EQ(lLines.find(": 30 times") != std::string::npos, lCount < 20) << lLines;
    return lCount;
  };
  EXPECT_LT(lErrorLines({}), 20u);
  EXPECT_GT(lErrorLines({"--log-level", "3"}), 60u);
  ToolRun lTerminal({lDirectory / "odd.nmea", "--speed", "max"}, ToolRun::TERMINAL);
  expectTexts(lTerminal.readAll(), {NFW_HAS_LIVE_VIEW ? "\r\n30 x ERR " : "ERR "});
}

// A server on the loopback with a port of its own, and the last client that it has accepted.
class Server {
 public:
  Server() {
    sockaddr_in lAddress = {};
    lAddress.sin_family = AF_INET;
    lAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t lSize = sizeof(lAddress);
    EXPECT_EQ(::bind(mFd, reinterpret_cast<sockaddr*>(&lAddress), lSize), 0);
    EXPECT_EQ(::getsockname(mFd, reinterpret_cast<sockaddr*>(&lAddress), &lSize), 0);
    mPort = ntohs(lAddress.sin_port);
  }
  ~Server() { ::close(mClient), ::close(mFd); }
  std::string source() const { return "tcp://127.0.0.1:" + std::to_string(mPort); }
  void accept() {
    EXPECT_EQ(::listen(mFd, 1), 0);
    ::close(mClient);
    mClient = ::accept(mFd, nullptr, nullptr);
  }
  void send(const std::string& nText) const {
    EXPECT_EQ(::send(mClient, nText.data(), nText.size(), MSG_NOSIGNAL), static_cast<ssize_t>(nText.size()));
  }
  std::string receive() const {
    char lText[100] = "";
    EXPECT_GT(::recv(mClient, lText, sizeof(lText) - 1, 0), 0);
    return lText;
  }

 private:
  const int mFd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  int mClient = -1;
  uint16_t mPort = 0;
};

TEST(Drive, listensToGpsdAndToAPlainServerAndComesBackAfterABreak) {
  Server lServer;
  ToolRun lRun({lServer.source(), "--format", "jsonl-raw", "--log-level", "0"});
  lServer.accept();
  lServer.send("{\"class\":\"VERSION\",\"release\":\"3.22\"}\r\n");
  EXPECT_EQ(lServer.receive(), "?WATCH={\"enable\":true,\"nmea\":true};\n");
  lServer.send("{\"class\":\"WATCH\"}\r\n$GPVTG,,T,,M,,N,,K,N*2C\r\n$GP");
  EXPECT_EQ(json::parse(lRun.readLine())["mode"], "not valid");
  lServer.accept();  // a second later
  lServer.send("x\r\n$GPVTG,054.7,T,034.4,M,005.5,N,010.2,K,A*25\r\n$GP");
  EXPECT_EQ(json::parse(lRun.readLine())["course"], 54.7);
  lRun.signal(SIGINT);
  const json lSummary = lastOf(lRun.readAll());
  EXPECT_EQ(lSummary["lines"], 4) << "two, the one that the break has cut, and noise; our stop cuts none";
  EXPECT_EQ(lSummary["accepted"], 2);
  for (const char* const lpPhase : {"before quick boot", "after quick boot", "start", "stop", "shutdown", "finalize"}) {
    EXPECT_TRUE(lSummary["phases_ms"][lpPhase].is_number()) << lpPhase;
  }
  EXPECT_EQ(lRun.wait(), 0);
}

// One that never was there, one that breaks and comes back.
TEST(Drive, severalSourcesAreToldApartAndOneThatFailsEndsNoOther) {
  Server lRoof, lDash;
  ToolRun lRun({"roof=" + lRoof.source(), "none=/no/such", "dash=" + lDash.source(), "--format", "jsonl-raw",
                "--log-level", "0"});
  const auto lExpect = [&](const Server& nServer, const char* npName, const char* npText) {
    nServer.send(npText);
    const json lObject = json::parse(lRun.readLine());
    EXPECT_EQ(lObject["source"], npName) << lObject;
  };
  lRoof.accept(), lDash.accept();
  lExpect(lRoof, "roof", "$GPVTG,,T,,M,,N,,K,N*2C\r\n$GPZDA,,,,,,*48\r\n$GP");
  lExpect(lDash, "dash", "$GPVTG,,T,,M,,N,,K,N*2C\r\n");
  lRoof.accept();  // a second later
  lExpect(lDash, "dash", "$GPVTG,054.7,T,034.4,M,005.5,N,010.2,K,A*25\r\n");
  lExpect(lRoof, "roof", "$GPVTG,,T,,M,,N,,K,N*2C\r\n");
  lRun.signal(SIGINT);
  const json lSources = lastOf(lRun.readAll())["sources"];
  EXPECT_EQ(lSources[0]["lines"], 4) << "one is cut, and one has no time";
  EXPECT_EQ(lSources[0]["accepted"], 2);
  EXPECT_EQ(lSources[1]["failure"], "none=/no/such: No such file or directory");
  EXPECT_EQ(lSources[2]["accepted"], 2);
  EXPECT_EQ(lRun.wait(), 2);
}

// A peer that is gone without a word: the connection stays, and nothing comes. What came ends the growth of the waits.
TEST(Drive, triesASilentServerAgain) {
  Server lServer;
  ToolRun lRun({lServer.source(), "--silence", "0.3", "--log-level", "2"}, STDERR_FILENO);
  const std::string lName = "WRN <NAVI>DRIVE  source " + lServer.source();
  ASSERT_EQ(lRun.readLine(), lName + ": Connection refused; trying again in 1 s");
  lServer.accept();
  lServer.send("$GPVTG,,T,,M,,N,,K,N*2C\r\n$GPV");
  ASSERT_EQ(lRun.readLine(), lName + ": nothing received for 0.3 s; trying again in 1 s");
  lRun.signal(SIGINT);
  EXPECT_EQ(lRun.wait(), 0);
}

}  // namespace
