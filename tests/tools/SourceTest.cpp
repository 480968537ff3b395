#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <deque>

#include "GpsdFilter.h"
#include "Resolved.h"
#include "SentenceList.h"
#include "SerialSource.h"
#include "SourceReader.h"
#include "UdpSource.h"

namespace {

using namespace drive;

TEST(SourceAddress, namesWhatCanBeOpenedAndWhyOtherThingsCannot) {
  const char* const CASES[][2] = {
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
      {"[::1]:2947", "is no file; of a server: tcp://[::1]:2947"},
  };
  const char* const KINDS[] = {"simulator", "file", "stdin", "serial", "tcp", "udp"};
  for (const auto& [lpText, lpExpected] : CASES) {
    SourceAddress l;
    std::string lReason;
    const bool lIsOne = parseSourceAddress(lpText, 4800, &l, &lReason);
    const std::string lAddress = std::string(KINDS[l.mKind]) + " " + std::to_string(l.mBaud) + " " + l.mPath + "|" +
                                 l.mWhere.mHost + "|" + l.mWhere.mPort + "|";
    EXPECT_EQ(lIsOne ? lAddress : lReason, lpExpected) << lpText;
  }
}

// Another program of the system says what the line is set to. A line that has worked may come back.
TEST(SerialSource, setsTheLineToTheSpeedAndReadsIt) {
  const int lFd = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  ASSERT_TRUE(::grantpt(lFd) == 0 && ::unlockpt(lFd) == 0);
  const std::string lLine = ::ptsname(lFd);
  const int lKept = ::open(lLine.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
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

// Plays what a test wrote down.
class ScriptedSource : public SentenceSource {
 public:
  ScriptedSource(OpenResult nOpen, std::deque<std::string> nTexts, int nEnd)
      : mOpen(nOpen), mTexts(std::move(nTexts)), mEnd(nEnd) {}
  OpenResult open(std::string* npReason) override {
    *npReason = "not today";
    return mOpen;
  }
  int read(char* npBuffer, size_t, std::string* npReason) override {
    *npReason = "torn";
    if (mTexts.empty()) return mEnd;
    const std::string lText = mTexts.front();
    mTexts.pop_front();
    return static_cast<int>(lText.copy(npBuffer, lText.size()));
  }

 private:
  const OpenResult mOpen;
  std::deque<std::string> mTexts;
  const int mEnd;
};

class Reading : public SourceReader::Listener {
 public:
  void onSourceOpen() override { mTold += "open, "; }
  // Ends the wait that follows, so that no test waits.
  void onSourceTrouble(const std::string& nMessage) override {
    mTold += nMessage;
    mStopper.request();
  }
  tool::Stopper mStopper;
  std::string mTold;
};

// A file is read to its end, a live source is tried again; what a break cuts off is counted.
TEST(SourceReader, readsToTheEndOrTellsWhyNot) {
  using Is = SourceAddress;
  using From = SentenceSource;
  const struct {
    SourceAddress::Kind mKind;
    SentenceSource::OpenResult mOpen;
    int mEnd;
    SourceReader::Result mResult;
    const char* mpTold;
    size_t mSentences, mCut;
    bool mIsAwaited = false;
  } CASES[] = {
      {Is::FILE, From::OPENED, From::END, SourceReader::ENDED, "open, ", 1, 1},
      {Is::FILE, From::OPENED, From::STOPPED, SourceReader::ENDED, "open, ", 1, 0},
      {Is::FILE, From::OPENED, From::BROKEN, SourceReader::UNREADABLE, "open, x: torn", 1, 1},
      {Is::SERIAL, From::OPEN_FAILED, 0, SourceReader::UNREADABLE, "x: not today", 0, 0},
      {Is::SERIAL, From::OPEN_FAILED, 0, SourceReader::ENDED, "x: not today; waiting for it", 0, 0, true},
      {Is::TCP, From::OPEN_LATER, 0, SourceReader::ENDED, "x: not today; trying again in 1 s", 0, 0},
      {Is::TCP, From::OPENED, From::BROKEN, SourceReader::ENDED, "open, x: torn; trying again in 1 s", 1, 1},
  };
  for (const auto& lCase : CASES) {
    SCOPED_TRACE(lCase.mpTold);
    ScriptedSource lSource{lCase.mOpen, {"$GPGLL,,,,,,V", ",N*64\n$GPG"}, lCase.mEnd};
    SourceAddress lAddress;
    lAddress.mKind = lCase.mKind;
    lAddress.mName = "x";
    lAddress.mIsAwaited = lCase.mIsAwaited;
    Reading lReading;
    tool::LineCounts lCounts;
    tool::LineReader lLines(lCounts);
    SentenceList lList;
    std::string lReason;
    const auto lResult = SourceReader(lAddress, lSource, lLines, lReading.mStopper, lReading).run(lList, &lReason);
    EXPECT_EQ(lResult, lCase.mResult);
    EXPECT_EQ(lReading.mTold + (lResult == SourceReader::UNREADABLE ? lReason : ""), lCase.mpTold);
    EXPECT_EQ(lList.mSentences, std::vector<std::string>(lCase.mSentences, "$GPGLL,,,,,,V,N*64"));
    EXPECT_EQ(lCounts.get(tool::LINE_CUT), lCase.mCut);
  }
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
  }
}

}  // namespace
