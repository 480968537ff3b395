#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "Resolved.h"
#include "Roads.h"
#include "TempDir.h"
#include "ToolRun.h"

namespace {

using namespace drive;

ServeAddress addressOf(const std::string& nText) {
  ServeAddress lAddress;
  std::string lReason;
  EXPECT_TRUE(lAddress.parse(nText, &lReason)) << lReason;
  return lAddress;
}

TEST(ServeAddress, namesAWayOutOrWhatIsMissing) {
  const char* const CASES[][2] = {{"tcp://:2000", "0||2000|"},
                                  {"tcp://[::1]:0", "0|::1|0|"},
                                  {"udp://239.1.2.3:10110", "1|239.1.2.3|10110|"},
                                  {"pty:/tmp/gps", "2||/tmp/gps|"},
                                  {"tcp://2000", "needs a port: tcp://[ADDR]:PORT"},
                                  {"tcp://:65536", "needs a port: tcp://[ADDR]:PORT"},
                                  {"udp://:0", "needs a port: udp://[ADDR]:PORT"},
                                  {"pty:", "needs a path: pty:PATH"},
                                  {"sim", "is none of tcp://[ADDR]:PORT, udp://[ADDR]:PORT and pty:PATH"}};
  for (const auto& [lpText, lpExpected] : CASES) {
    ServeAddress l;
    std::string lReason;
    const bool lIsOne = l.parse(lpText, &lReason);
    const std::string lWhere = l.mKind == ServeAddress::PTY ? "|" + l.mPath : l.mWhere.mHost + "|" + l.mWhere.mPort;
    EXPECT_EQ(lIsOne ? std::to_string(l.mKind) + "|" + lWhere + "|" : lReason, lpExpected);
  }
}

// A reader on the loopback that may be stopped.
class Reader {
 public:
  explicit Reader(const std::string& nName, int nBuffer = 1 << 20) {
    HostPort lWhere;
    EXPECT_TRUE(lWhere.parse(nName.substr(6)));
    const Resolved lFound(lWhere, SOCK_STREAM);
    const timeval lLimit = {60, 0};
    ::setsockopt(mFd, SOL_SOCKET, SO_RCVBUF, &nBuffer, sizeof(nBuffer));
    ::setsockopt(mFd, SOL_SOCKET, SO_RCVTIMEO, &lLimit, sizeof(lLimit));
    EXPECT_EQ(::connect(mFd, lFound.first()->ai_addr, lFound.first()->ai_addrlen), 0);
  }
  ~Reader() { ::close(mFd); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  std::string read(size_t nSize) const {
    std::string lText(nSize, '\0');
    lText.resize(static_cast<size_t>(std::max<ssize_t>(0, ::recv(mFd, lText.data(), nSize, MSG_WAITALL))));
    return lText;
  }

 private:
  const int mFd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

// By what one may be behind, and by the time for which it takes nothing.
TEST(Roads, nineClientsGetEverythingBesideOneThatDoesNotRead) {
  for (const RoadLimits& lLimits :
       {RoadLimits{64 * 1024, std::chrono::hours(1)}, RoadLimits{1 << 24, std::chrono::milliseconds(1)}}) {
    Roads lRoads({addressOf("tcp://:0")}, lLimits);
    std::string lReason;
    ASSERT_TRUE(lRoads.open(&lReason) && lRoads.start()) << lReason;
    const Road& lRoad = *lRoads.get().front();
    const Reader lStopped(lRoad.getName(), 4096);
    std::vector<std::unique_ptr<Reader>> lReaders;
    for (int i = 0; i < 9; ++i) lReaders.push_back(std::make_unique<Reader>(lRoad.getName()));
    while (lRoad.getCounts().mClients < 10) std::this_thread::yield();
    for (unsigned int i = 0; i < 200; ++i) {
      std::string lExpected;
      for (unsigned int j = 0; j < 100; ++j) {
        const std::string lSentence = "$GPTXT," + std::to_string(i * 100 + j) + std::string(60, 'x');
        lRoads.send(j % 2 == 0 ? lSentence : lSentence + "\r\n");
        lExpected += lSentence + "\r\n";
      }
      for (const auto& lpReader : lReaders) ASSERT_EQ(lpReader->read(lExpected.size()), lExpected);
    }
    lRoads.finish(std::chrono::seconds(10));
    for (const auto& lpReader : lReaders) EXPECT_EQ(lpReader->read(1), "") << "closed";
    EXPECT_EQ(lRoad.getCounts().getLoss(), "1 of 10 clients did not read");
  }
}

// Bytes pass as they are. What is no link to a terminal stays where it is, and ends the run before it begins.
TEST(Roads, aTerminalIsAnsweredUnderItsName) {
  const nfwtest::TempDir lDirectory;
  const std::string lPath = lDirectory / "gps";
  std::string lReason;
  ASSERT_EQ(::symlink("/dev/pts/of-a-run-that-was-killed", lPath.c_str()), 0);
  {
    Roads lRoads({addressOf("pty:" + lPath)}, {});
    ASSERT_TRUE(lRoads.open(&lReason) && lRoads.start()) << lReason;
    const int lFd = ::open(lPath.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_EQ(::write(lFd, "?\r\n", 3), 3);
    while (lRoads.get().front()->getCounts().mClients < 1) std::this_thread::yield();
    lRoads.send("$GPTXT,\x7F\x03\x04");
    char lText[64] = "";
    EXPECT_EQ(::read(lFd, lText, sizeof(lText)), 12);
    EXPECT_STREQ(lText, "$GPTXT,\x7F\x03\x04\r\n");
    ::close(lFd);
  }
  EXPECT_NE(::access(lPath.c_str(), F_OK), 0);
  nfwtest::writeFile(lPath, "mine");
  const Outcome lRun = runQuietly({"sim", "--serve", "pty:" + lPath});
  EXPECT_EQ(lRun.mExit, 2);
  EXPECT_EQ(lRun.mErrors, "nfw-drive: --serve pty:" + lPath + ": File exists\n");
  EXPECT_EQ(nfwtest::readFile(lPath), "mine");
}

TEST(Roads, anotherDatagramForEachSentence) {
  const int lFd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  HostPort lWhere;
  ASSERT_TRUE(lWhere.parse(":0"));
  const Resolved lFound(lWhere, SOCK_DGRAM);
  ASSERT_EQ(::bind(lFd, lFound.first()->ai_addr, lFound.first()->ai_addrlen), 0);
  std::string lReason, lText(100, '\0');
  Roads lRoads({addressOf("udp://" + localText(lFd))}, {});
  ASSERT_TRUE(lRoads.open(&lReason) && lRoads.start()) << lReason;
  for (const std::string lSentence : {"$GPTXT,1\r\n", "$GPTXT,2\r\n"}) lRoads.send(lSentence);
  for (const std::string lSentence : {"$GPTXT,1\r\n", "$GPTXT,2\r\n"}) {
    const ssize_t lSize = ::recv(lFd, lText.data(), lText.size(), 0);
    EXPECT_EQ(lText.substr(0, static_cast<size_t>(lSize)), lSentence);
  }
  ::close(lFd);
}

// A position daemon hears it, its own client gets what it hears, and another program finds a track in that.
TEST(Roads, realProgramsReadWhatIsServed) {
  for (const char* const lpProgram : {"gpsd", "gpspipe", "gpsbabel"}) {
    const std::string lCall = "PATH=$PATH:/usr/sbin; command -v " + std::string(lpProgram) + " >/dev/null";
    if (std::system(lCall.c_str()) != 0) GTEST_SKIP() << lpProgram << " is not installed";
  }
  const int lFd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);  // a port that nobody has
  ASSERT_EQ(::listen(lFd, 1), 0);
  const std::string lPort = localText(lFd).substr(8);
  ::close(lFd);
  const nfwtest::TempDir lDirectory;
  ToolRun lRun({"sim", "--speed", "5", "--serve", "tcp://:0"}, STDERR_FILENO);
  std::string lLine = lRun.readLine();
  while (!lLine.empty() && lLine.find("serving ") == std::string::npos) lLine = lRun.readLine();
  const std::string lCall = "PATH=$PATH:/usr/sbin; cd " + lDirectory.path() + " && (exec timeout 60 gpsd -N -n -S " +
                            lPort + " " + lLine.substr(lLine.find("tcp:")) + " 2>/dev/null) & G=$!; " +
                            "N=0; until timeout 20 gpspipe -r -n 120 localhost:" + lPort + " >" + lDirectory / "heard" +
                            " 2>/dev/null || [ $((N += 1)) -gt 2000 ]; do :; done; kill $G; " +
                            "gpsbabel -t -i nmea -f " + lDirectory / "heard" + " -o gpx -F " + lDirectory / "track.gpx";
  EXPECT_EQ(std::system(lCall.c_str()), 0) << lCall;
  const std::string lTrack = nfwtest::readFile(lDirectory / "track.gpx");
  EXPECT_NE(lTrack.find("<trkpt lat=\"35.6"), std::string::npos) << lTrack << nfwtest::readFile(lDirectory / "heard");
  lRun.signal(SIGINT);
  EXPECT_EQ(lRun.wait(), 0);
}

}  // namespace
