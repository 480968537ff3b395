#include <gtest/gtest.h>
#include <pty.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <thread>
#include <vector>

#include "GpsdFilter.h"
#include "Pacer.h"
#include "Resolved.h"
#include "SentenceTime.h"
#include "SerialSource.h"
#include "SourceAddress.h"
#include "Turns.h"
#include "UdpSource.h"

namespace {

using namespace drive;

TEST(SourceAddress, namesWhatCanBeOpenedAndWhyOtherThingsCannot) {
  const std::string CASES[][2] = {
      {"sim", "simulator 4800 |||"},
      {"-", "stdin 4800 |||"},
      {"drive.nmea", "file 4800 drive.nmea|||"},
      {"/no/such:9600", "file 4800 /no/such:9600|||"},
      {"/dev/null", "file 4800 /dev/null|||"},
      {"/dev/ttyNONE0", "serial 4800 /dev/ttyNONE0|||"},
      {"/dev/ttyNONE0:115200", "serial 115200 /dev/ttyNONE0|||"},
      {"/dev/serial/x", "serial 4800 /dev/serial/x|||"},
      {"/dev/rfcomm1:9600", "serial 9600 /dev/rfcomm1|||"},
      {"/dev/pts/none", "serial 4800 /dev/pts/none|||"},
      {"tcp://phone.local:65535", "tcp 4800 |phone.local|65535|"},
      {"tcp://[::1]:1", "tcp 4800 |::1|1|"},
      {"tcp://host", "needs a port: tcp://HOST:PORT"},
      {"tcp://:1", "needs a host: tcp://HOST:PORT"},
      {"tcp://host:0", "needs a port: tcp://HOST:PORT"},
      {"tcp://host:65536", "needs a port: tcp://HOST:PORT"},
      {"tcp://host:1x", "needs a port: tcp://HOST:PORT"},
      {"/dev/ttyNONE0:123", "has no speed of 123 baud"},
      {"/dev/gps-none:9600", "serial 9600 /dev/gps-none|||"},
      {"udp://239.1.2.3:10110", "udp 4800 |239.1.2.3|10110|"},
      {"udp://:1", "udp 4800 ||1|"},
      {"udp://host", "needs a port: udp://[ADDR]:PORT"},
      {"gpsd://localhost", "tcp 4800 |localhost|2947|"},
      {"gpsd://[::1]:1", "tcp 4800 |::1|1|"},
      {"gpsd://[::1]", "tcp 4800 |::1|2947|"},
      {"gpsd://:2947", "needs a host: gpsd://HOST[:PORT]"},
      {"ftp://localhost:2947",
       "is of a kind that cannot be opened: a source is sim, FILE, -, /dev/TTY[:BAUD], tcp://HOST:PORT, "
       "gpsd://HOST[:PORT] or udp://[ADDR]:PORT, as tcp://localhost:2947"},
      {"localhost:2947", "is no file; of a server: tcp://localhost:2947"},
      {"roof_1=/dev/ttyNONE0:115200", "serial 115200 /dev/ttyNONE0|||"},
      {"/no/such=sim", "file 4800 /no/such=sim|||"},
      {"a b=sim", "is no NAME=SOURCE: a name has letters, digits, - and _"},
      {"=sim", "is no NAME=SOURCE: a name has letters, digits, - and _"},
      {"roof=", "names no source: NAME=SOURCE"},
      {"[::1]:2947", "is no file; of a server: tcp://[::1]:2947"},
  };
  const char* const KINDS[] = {"simulator", "file", "stdin", "serial", "tcp", "udp"};
  for (const auto& [lText, lExpected] : CASES) {
    SourceAddress l;
    std::string lReason;
    const bool lIsOne = parseSourceAddress(lText, 4800, &l, &lReason);
    const std::string lAddress = std::string(KINDS[l.mKind]) + " " + std::to_string(l.mBaud) + " " + l.mPath + "|" +
                                 l.mWhere.mHost + "|" + l.mWhere.mPort + "|";
    EXPECT_EQ(lIsOne ? lAddress : lReason, lExpected) << lText;
  }
}

TEST(SourceAddress, severalNeedANameEachAndAnInputOfTheirOwn) {
  const struct {
    std::vector<const char*> mTexts;
    const char* mpReason;
  } CASES[] = {
      {{"sim", "b=sim", "tcp://h:1"}, ""},
      {{"sim", "sim"}, "sim and sim: of several sources each needs a name of its own, as NAME=SOURCE"},
      {{"sim", "a=-", "b=-"}, "a=standard input and b=standard input: each would get a part of the same"},
      {{"a=/dev/tty", "b=/dev/pts/../tty"}, "a=/dev/tty and b=/dev/pts/../tty: each would get a part of the same"}};
  for (const auto& lCase : CASES) {
    std::string lReason;
    std::vector<SourceAddress> lSources(lCase.mTexts.size());
    for (size_t i = 0; i < lSources.size(); ++i)
      ASSERT_TRUE(parseSourceAddress(lCase.mTexts[i], 4800, &lSources[i], &lReason));
    EXPECT_EQ(canBeTogether(lSources, &lReason), *lCase.mpReason == '\0');
    EXPECT_EQ(lReason, lCase.mpReason);
  }
}

// What belongs together comes together, and in turn. An epoch that stays open holds others up for a while only.
TEST(Turns, keepEpochsTogetherAndPassByWhoIsSilentOrDoesNotEnd) {
  const auto LONG = std::chrono::hours(1), SHORT = std::chrono::hours(0);
  Turns lTurns(2, {LONG, LONG});
  std::vector<size_t> lUses;
  const auto lUse = [&](size_t nSource) {
    for (size_t i = 1; i <= 5000; ++i) lTurns.use(nSource, i % 5 == 0, [&] { return lUses.push_back(nSource), true; });
  };
  std::thread lOther([&] { lUse(1); });
  lUse(0);
  lOther.join();
  ASSERT_EQ(lUses.size(), 10000u);
  for (size_t i = 0; i < lUses.size(); ++i) ASSERT_EQ(lUses[i], lUses[i / 5 * 5]) << i;
  for (const Turns::Limits& lLimits : {Turns::Limits{SHORT, LONG}, Turns::Limits{LONG, SHORT}}) {
    Turns lOpen(2, lLimits);
    for (size_t i = 0; i < 4; ++i) EXPECT_TRUE(lOpen.use(i % 2, false, [] { return true; }));
  }
  lTurns.use(0, false, [] { return true; });
  lTurns.close();
  EXPECT_FALSE(lTurns.use(1, false, [] { return true; }));
}

// Another program of the system says what the line is set to. A line that has worked may come back.
TEST(SerialSource, setsTheLineToTheSpeedAndReadsIt) {
  int lFd = -1, lKept = -1;
  ASSERT_EQ(::openpty(&lFd, &lKept, nullptr, nullptr, nullptr), 0);
  const std::string lLine = ::ptsname(lFd);
  tool::Stopper lStopper;
  std::string lReason;
  for (const unsigned int lBaud :
       {1200u, 2400u, 4800u, 9600u, 19200u, 38400u, 57600u, 115200u, 230400u, 460800u, 921600u}) {
    if (lBaud > 460800 && *NFW_EMULATOR != '\0') continue;  // the emulator knows no more
    EXPECT_EQ(SerialSource(lLine, lBaud, lStopper).open(&lReason), SentenceSource::OPENED) << lReason;
    const std::string lState =
        "case $(stty -a -F " + lLine + ") in *'speed " + std::to_string(lBaud) +
        " baud'*'min = 1; time = 0;'*' cread clocal '*' -icanon '*' -echo '*) ;; *) exit 1; esac";
    EXPECT_EQ(std::system(lState.c_str()), 0) << lState;
  }
  SerialSource lSource(lLine, 4800, lStopper);
  char lText[8] = "";
  EXPECT_EQ(lSource.open(&lReason), SentenceSource::OPENED) << lReason;
  EXPECT_EQ(::write(lFd, "$GP", 3), 3);
  EXPECT_EQ(lSource.read(lText, sizeof(lText), &lReason), 3);
  ::close(lKept), ::close(lFd);
  EXPECT_EQ(lSource.read(lText, sizeof(lText), &lReason), SentenceSource::BROKEN);
  EXPECT_EQ(lSource.open(&lReason), SentenceSource::OPEN_LATER);
  EXPECT_EQ(SerialSource(lLine, 4800, lStopper).open(&lReason), SentenceSource::OPEN_FAILED);
}

TEST(SentenceTime, readsTheTimeWhereItStands) {
  const struct {
    const char* mpSentence;
    int64_t mTime;
  } CASES[] = {
      {"$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47", 45319000},
      {"$GNRMC,000000.000,A", 0},
      {"$GPZDA,235959.99,31,12,2026,00,00*00", 86399990},
      {"$GPGLL,4916.45,N,12311.12,W,225444.5,A,A*00", 82484500},
      {"$PUBX,00,081350.05,4717.1,N*00", 29630050},
  };
  for (const auto& lCase : CASES) EXPECT_EQ(tool::sentenceTime(lCase.mpSentence), lCase.mTime) << lCase.mpSentence;
  for (const char* const lpNone :
       {"$PUBX,04,081350.00,1*00", "$GPVTG,054.7,T,034.4,M*00", "$GPGGA,,4807.038,N*00", "$GPGGA,12a519*00",
        "$GPGGA,12351*00", "$GPGGA,240000*00", "$GPGGA*00", "$GPGLL,4916.45*00", "$GGA,123519*00", ""}) {
    EXPECT_EQ(tool::sentenceTime(lpNone), -1) << lpNone;
  }
}

TEST(Pacer, followsTheTimesOfTheSentences) {
  const int64_t lMidnight = tool::MS_PER_DAY;
  const struct {
    const char* mpName;
    std::vector<int64_t> mTimes, mOffsets;
  } CASES[] = {
      {"steps", {5000, 5000, 6000, 6100}, {0, 0, 1000, 1100}},
      {"midnight", {lMidnight - 500, 500, 1500}, {0, 1000, 2000}},
      {"a minute is a step", {0, 60000}, {0, 60000}},
      {"more is a break", {0, 60001, 61001}, {0, 1000, 2000}},
      {"a little back is due at once", {5000, 6000, 5000, 4000, 7000}, {0, 1000, 1000, 1000, 2000}},
      {"far back is a break", {50000, 40000, 41000}, {0, 1000, 2000}},
      {"back across midnight is a lag", {500, lMidnight - 500, 1500}, {0, 0, 1000}},
  };
  for (const auto& lCase : CASES) {
    SCOPED_TRACE(lCase.mpName);
    Pacer lPacer;
    std::vector<int64_t> lOffsets;
    for (const int64_t lTime : lCase.mTimes) lOffsets.push_back(lPacer.offset(lTime));
    EXPECT_EQ(lOffsets, lCase.mOffsets);
  }
  EXPECT_EQ(Pacer::realTime(1500, 10.0), 150000000);
  EXPECT_EQ(Pacer::realTime(1500, 0.5), 3000000000);
}

TEST(GpsdFilter, takesObjectsOutHoweverTheyArrive) {
  const std::string lStream =
      "{\"class\":\"VERSION\",\"release\":\"3.22\"}\r\n{\"class\":\"DEVICES\"}\r\n$GPGLL*1\r\n{\"x\":1}\r\n!AIVDM*"
      "2\r\n";
  for (size_t i = 0; i <= lStream.size(); ++i) {
    GpsdFilter lFilter;
    std::string lLeft;
    for (std::string lPart : {lStream.substr(0, i), lStream.substr(i)}) {
      lPart.resize(lFilter.filter(lPart.data(), lPart.size()));
      lLeft += lPart;
    }
    ASSERT_EQ(lLeft, "$GPGLL*1\r\n!AIVDM*2\r\n") << i;
    ASSERT_TRUE(lFilter.takeGreeting());
    ASSERT_FALSE(lFilter.takeGreeting());
  }
  GpsdFilter lPlain;
  std::string lText = "$GPGLL*1\r\n" + lStream;
  EXPECT_EQ(lPlain.filter(lText.data(), lText.size()), lText.size());
  EXPECT_FALSE(lPlain.takeGreeting());
}

// More than there is room for: what is read and what is lost is what was sent, where the system tells.
void loseSome(const addrinfo& nWhere, UdpSource& nSource) {
  const int lFd = openSocket(nWhere), lOn = 1;
  const bool lIsTold = ::setsockopt(lFd, SOL_SOCKET, SO_RXQ_OVFL, &lOn, sizeof(lOn)) == 0;
  uint64_t lCount = 0, lMarks = 0, lSent = 0;
  const auto lSend = [&](const std::string& n) {
    return ::sendto(lFd, n.data(), n.size(), 0, nWhere.ai_addr, nWhere.ai_addrlen) > 0;
  };
  for (int i = 0; i < 4000; ++i) lSent += lSend(std::string(1000, 'x')) ? 1u : 0u;
  std::string lRead(2000, ' '), lReason;
  while (nSource.read(lRead.data(), lRead.size(), &lReason) == 1001) {
    if (++lCount % 10 == 0) lSend("$" + std::to_string(lMarks++));  // as soon as there is room again
  }
  ::close(lFd);
  EXPECT_TRUE(!lIsTold || lCount + nSource.lost() == lSent + std::stoul(lRead.substr(1)))
      << lCount << " " << lSent << " " << nSource.lost() << lRead.substr(0, 9);
}

// A datagram ends its last sentence; that of a group is heard by each program that listens to it.
TEST(UdpSource, hearsWhatIsServedByDatagrams) {
  for (const char* const lpWhere : {":0", "239.255.77.77:20177"}) {
    HostPort lWhere;
    ASSERT_TRUE(lWhere.parse(lpWhere));
    if (lWhere.mPort == "0") {  // one that nobody has
      const Resolved lFound(lWhere, SOCK_DGRAM);
      const int lFd = openSocket(*lFound.first());
      ASSERT_EQ(::bind(lFd, lFound.first()->ai_addr, lFound.first()->ai_addrlen), 0);
      ASSERT_TRUE(lWhere.parse(localText(lFd)));
      ::close(lFd);
    }
    tool::Stopper lStopper;
    std::string lReason, lText(100, '\0');
    UdpSource lFirst(lWhere, lStopper), lSecond(lWhere, lStopper);
    ASSERT_EQ(lFirst.open(&lReason), SentenceSource::OPENED) << lReason;
    const bool lIsShared = lSecond.open(&lReason) == SentenceSource::OPENED;
    EXPECT_EQ(lIsShared, lWhere.mHost[0] == '2') << lReason;
    const Resolved lFound(lWhere, SOCK_DGRAM);
    const int lFd = openSocket(*lFound.first());
    if (::sendto(lFd, "$GPTXT,1", 8, 0, lFound.first()->ai_addr, lFound.first()->ai_addrlen) != 8) {
      ::close(lFd);
      GTEST_SKIP() << "no way to a group here: " << std::strerror(errno);
    }
    ::close(lFd);
    for (UdpSource* const lpSource : {&lFirst, lIsShared ? &lSecond : nullptr}) {
      if (lpSource == nullptr) continue;
      EXPECT_EQ(lpSource->read(lText.data(), lText.size(), &lReason), 9);
      EXPECT_EQ(lText.substr(0, 9), "$GPTXT,1\n");
    }
    if (!lIsShared) loseSome(*lFound.first(), lFirst);
  }
}

}  // namespace
