#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "LogRecords.h"
#include "TempDir.h"
#include "ToolRun.h"

namespace {

using nlohmann::json;

std::vector<json> objects(const std::string& nOutput) {
  std::vector<json> lObjects;
  std::istringstream lLines(nOutput);
  for (std::string lLine; std::getline(lLines, lLine);) lObjects.push_back(json::parse(lLine));
  return lObjects;
}

std::vector<std::string> quiet(std::vector<std::string> nArguments) {
  nArguments.insert(nArguments.end(), {"--log-level", "0"});
  return nArguments;
}

void expectAllPhases(const json& nSummary) {
  for (const char* const lpPhase : {"before quick boot", "after quick boot", "start", "stop", "shutdown", "finalize"}) {
    EXPECT_TRUE(nSummary["phases_ms"][lpPhase].is_number()) << lpPhase;
  }
}

TEST(Drive, aSimulatedMinutePassesThroughAllPhases) {
  int lExit = -1;
  const auto lObjects =
      objects(ToolRun::output(quiet({"sim", "--speed", "max", "--for", "60", "--format", "json"}), &lExit));
  EXPECT_EQ(lExit, 0);
  ASSERT_EQ(lObjects.size(), 721u);  // a GSV group is one record
  const json& lSummary = lObjects.back();
  EXPECT_EQ(lSummary["type"], "summary");
  EXPECT_EQ(lSummary["lines"], 1020);
  EXPECT_EQ(lSummary["accepted"], 1020);
  EXPECT_EQ(lSummary["delivered_sentences"], 1020);
  EXPECT_EQ(lSummary["delivered_combined"], 60);
  EXPECT_EQ(lSummary["kinds"]["GSV"]["delivered"], 180);
  expectAllPhases(lSummary);
}

TEST(Drive, linesAreOneAnEpoch) {
  int lExit = -1;
  const std::string lOutput = ToolRun::output(quiet({"--speed", "max", "--for", "2", "--rate", "5"}), &lExit);
  EXPECT_EQ(lExit, 0);
  EXPECT_EQ(
      lOutput.find("2026-01-31 08:00:00.000  35.6580000 139.7450000  0.0 km/h  60.0 deg  3D, gps  26 satellites\n"),
      0u);
  EXPECT_NE(lOutput.find("\n2026-01-31 08:00:01.800  "), std::string::npos);
  EXPECT_EQ(lOutput.find("08:00:02.000"), std::string::npos);
}

TEST(Drive, aSignalStopsThroughThePhases) {
  for (const int lSignal : {SIGINT, SIGTERM}) {
    ToolRun lRun(quiet({"sim", "--format", "json"}));
    EXPECT_NE(lRun.readLine(), "");
    lRun.signal(lSignal);
    const json lSummary = objects(lRun.readAll()).back();
    EXPECT_EQ(lSummary["end"], "stopped by a signal");
    expectAllPhases(lSummary);
    EXPECT_EQ(lRun.wait(), 0);
  }
}

TEST(Drive, endsQuietlyWhenTheReaderOfItsOutputGoesAway) {
  ToolRun lRun(quiet({"sim", "--speed", "max", "--format", "json"}));
  EXPECT_NE(lRun.readLine(), "");
  lRun.closeOutput();
  EXPECT_EQ(lRun.wait(), 0);
}

TEST(Drive, tellsUsageFromFailure) {
  struct Case {
    std::vector<std::string> mArguments;
    int mExit;
  };
  const Case CASES[] = {
      {{"--version"}, 0},     {{"--help"}, 0},          {{"/no/such/file"}, 2}, {{"/"}, 2},
      {{"/dev/ttyNONE0"}, 2}, {{"--speed", "fast"}, 2}, {{"--rate", "11"}, 2},  {{"tcp://127.0.0.1"}, 2},
      {{"sim", "sim"}, 2},
  };
  for (const Case& lCase : CASES) {
    int lExit = -1;
    ToolRun::output(quiet(lCase.mArguments), &lExit);
    EXPECT_EQ(lExit, lCase.mExit) << lCase.mArguments.front();
  }
}

// What a program opens must not become its standard output, nor its messages part of a file.
TEST(Drive, bothToolsBearClosedDescriptors) {
  if (*NFW_EMULATOR != '\0') GTEST_SKIP() << "the emulator opens files of its own";
  const nfwtest::TempDir lDirectory;
  nfwtest::writeFile(lDirectory / "bad.log", nfwtest::logRecord(20, 1000, "$GPGLL") + std::string(100, '\xA5'));
  const struct {
    std::string mCommand;
    int mExit;
  } CASES[] = {
      {NFW_DRIVE_PROGRAM " - <&-", 2},
      {NFW_DRIVE_PROGRAM " sim --speed max --for 1 >&-", 1},
      {NFW_DRIVE_PROGRAM " sim --speed max --for 1 --format none 2>&-", 0},
      {NFW_LOG_PROGRAM " recover " + lDirectory / "bad.log" + " -o " + lDirectory / "whole.log 2>&-", 0},
  };
  for (const auto& lCase : CASES) {
    const int lStatus = std::system(("timeout -s KILL 20 " + lCase.mCommand).c_str());
    EXPECT_EQ(WEXITSTATUS(lStatus), lCase.mExit) << lCase.mCommand;
  }
  EXPECT_EQ(nfwtest::readFile(lDirectory / "whole.log"), nfwtest::logRecord(20, 1000, "$GPGLL"));
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
    int lExit = -1;
    const std::string lLines = "\n" + ToolRun::errors(nMore, &lExit);
    size_t lCount = 0;
    for (size_t i = lLines.find("\nERR "); i != std::string::npos; i = lLines.find("\nERR ", i + 1)) ++lCount;
    EXPECT_EQ(lLines.find(": 30 times") != std::string::npos, lCount < 20) << lLines;
    return lCount;
  };
  EXPECT_LT(lErrorLines({}), 20u);
  EXPECT_GT(lErrorLines({"--log-level", "3"}), 60u);
}

// A server on the loopback with a port of its own.
class Server {
 public:
  Server() {
    sockaddr_in lAddress = {};
    lAddress.sin_family = AF_INET;
    lAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t lSize = sizeof(lAddress);
    EXPECT_EQ(::bind(mFd, reinterpret_cast<sockaddr*>(&lAddress), lSize), 0);
    EXPECT_EQ(::listen(mFd, 1), 0);
    EXPECT_EQ(::getsockname(mFd, reinterpret_cast<sockaddr*>(&lAddress), &lSize), 0);
    mPort = ntohs(lAddress.sin_port);
  }
  ~Server() {
    hangUp();
    ::close(mFd);
  }
  std::string source() const { return "tcp://127.0.0.1:" + std::to_string(mPort); }
  void accept() { mClient = ::accept(mFd, nullptr, nullptr); }
  void send(const std::string& nText) const {
    EXPECT_EQ(::send(mClient, nText.data(), nText.size(), MSG_NOSIGNAL), static_cast<ssize_t>(nText.size()));
  }
  std::string receive(size_t nSize) const {
    std::string lText(nSize, '\0');
    lText.resize(static_cast<size_t>(std::max<ssize_t>(0, ::recv(mClient, lText.data(), nSize, MSG_WAITALL))));
    return lText;
  }
  void hangUp() {
    if (mClient >= 0) ::close(mClient);
    mClient = -1;
  }

 private:
  const int mFd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  int mClient = -1;
  uint16_t mPort = 0;
};

const std::string WATCH = "?WATCH={\"enable\":true,\"nmea\":true};\n";

TEST(Drive, listensToGpsdAndToAPlainServerAndComesBackAfterABreak) {
  Server lServer;
  ToolRun lRun(quiet({lServer.source(), "--format", "json"}));
  lServer.accept();
  lServer.send("{\"class\":\"VERSION\",\"release\":\"3.22\"}\r\n");
  EXPECT_EQ(lServer.receive(WATCH.size()), WATCH);
  lServer.send("{\"class\":\"WATCH\"}\r\n$GPVTG,,T,,M,,N,,K,N*2C\r\n");
  EXPECT_EQ(json::parse(lRun.readLine())["mode"], "not valid");
  lServer.hangUp();
  lServer.accept();  // a second later
  lServer.send("$GPVTG,054.7,T,034.4,M,005.5,N,010.2,K,A*25\r\n");
  EXPECT_EQ(json::parse(lRun.readLine())["course"], 54.7);
  lRun.signal(SIGINT);
  const json lSummary = objects(lRun.readAll()).back();
  EXPECT_EQ(lSummary["lines"], 2);
  EXPECT_EQ(lSummary["accepted"], 2);
  EXPECT_EQ(lRun.wait(), 0);
}

// A peer that is gone without a word: the connection stays, and nothing comes.
TEST(Drive, triesASilentServerAgain) {
  Server lServer;
  ToolRun lRun({lServer.source(), "--silence", "0.3", "--log-level", "2"}, STDERR_FILENO);
  lServer.accept();
  lServer.send("$GPVTG,,T,,M,,N,,K,N*2C\r\n$GPV");
  ASSERT_EQ(lRun.readLine(),
            "WRN <NAVI>DRIVE  source " + lServer.source() + ": nothing received for 0.3 s; trying again in 1 s");
  lServer.hangUp();
  lServer.accept();
  lRun.signal(SIGINT);
  EXPECT_EQ(lRun.wait(), 0);
}

}  // namespace
