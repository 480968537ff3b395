#include <gtest/gtest.h>

#include <cstring>
#include <deque>

#include "GpsdFilter.h"
#include "SentenceList.h"
#include "SourceReader.h"

namespace {

using namespace drive;

TEST(SourceAddress, namesWhatCanBeOpened) {
  struct Case {
    const char* mpText;
    SourceAddress::Kind mKind;
    const char* mpPath;
    const char* mpHost;
    const char* mpPort;
    unsigned int mBaud;
  };
  const Case CASES[] = {
      {"sim", SourceAddress::SIMULATOR, "", "", "", 4800},
      {"-", SourceAddress::STDIN, "", "", "", 4800},
      {"drive.nmea", SourceAddress::FILE, "drive.nmea", "", "", 4800},
      {"/no/such:9600", SourceAddress::FILE, "/no/such:9600", "", "", 4800},
      {"/dev/null", SourceAddress::FILE, "/dev/null", "", "", 4800},
      {"/dev/ttyNONE0", SourceAddress::SERIAL, "/dev/ttyNONE0", "", "", 4800},
      {"/dev/ttyNONE0:115200", SourceAddress::SERIAL, "/dev/ttyNONE0", "", "", 115200},
      {"tcp://phone.local:11123", SourceAddress::TCP, "", "phone.local", "11123", 4800},
      {"tcp://[::1]:2947", SourceAddress::TCP, "", "::1", "2947", 4800},
  };
  for (const Case& lCase : CASES) {
    SCOPED_TRACE(lCase.mpText);
    SourceAddress lAddress;
    std::string lReason;
    ASSERT_TRUE(parseSourceAddress(lCase.mpText, 4800, &lAddress, &lReason)) << lReason;
    EXPECT_EQ(lAddress.mKind, lCase.mKind);
    EXPECT_EQ(lAddress.mPath, lCase.mpPath);
    EXPECT_EQ(lAddress.mHost, lCase.mpHost);
    EXPECT_EQ(lAddress.mPort, lCase.mpPort);
    EXPECT_EQ(lAddress.mBaud, lCase.mBaud);
  }
  const char* const REFUSED[][2] = {
      {"tcp://host", "tcp://HOST:PORT"},          {"tcp://:1", "tcp://HOST:PORT"},
      {"tcp://host:0", "tcp://HOST:PORT"},        {"tcp://host:70000", "tcp://HOST:PORT"},
      {"tcp://host:x", "tcp://HOST:PORT"},        {"/dev/ttyNONE0:123", "123 baud"},
      {"udp://:10110", "tcp://HOST:PORT"},        {"gpsd://localhost:2947", "tcp://localhost:2947"},
      {"localhost:2947", "tcp://localhost:2947"}, {"[::1]:2947", "tcp://[::1]:2947"}};
  for (const auto& [lpText, lpReason] : REFUSED) {
    SourceAddress lAddress;
    std::string lReason;
    EXPECT_FALSE(parseSourceAddress(lpText, 4800, &lAddress, &lReason)) << lpText;
    EXPECT_NE(lReason.find(lpReason), std::string::npos) << lReason;
  }
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
}

TEST(GpsdFilter, leavesAPlainStreamAlone) {
  GpsdFilter lFilter;
  std::string lText = "$GPGLL*1\r\n{\"class\":\"VERSION\"}\r\n";
  EXPECT_EQ(lFilter.filter(lText.data(), lText.size()), lText.size());
  EXPECT_FALSE(lFilter.takeGreeting());
}

// Plays what a test wrote down: open results, then the texts of each opening.
class ScriptedSource : public SentenceSource {
 public:
  OpenResult open(std::string* npReason) override {
    const OpenResult lResult = mOpens.front();
    mOpens.pop_front();
    *npReason = "not today";
    return lResult;
  }
  int read(char* npBuffer, size_t, std::string* npReason) override {
    *npReason = "torn";
    if (mTexts.empty()) return mEnd;
    const std::string lText = mTexts.front();
    mTexts.pop_front();
    std::memcpy(npBuffer, lText.data(), lText.size());
    return static_cast<int>(lText.size());
  }
  std::deque<OpenResult> mOpens;
  std::deque<std::string> mTexts;
  int mEnd = END;
};

class Reading : public SourceReader::Listener {
 public:
  SourceReader::Result run(SourceAddress::Kind nKind, const std::string& nName) {
    mSpec.mKind = nKind;
    mSpec.mName = nName;
    SourceReader lReader(mSpec, mSource, mLines, mStopper, *this);
    return lReader.run(mList, &mReason);
  }
  void onSourceOpen() override { ++mOpened; }
  // Ends the wait that follows, so that no test waits.
  void onSourceTrouble(const std::string& nMessage) override {
    mTrouble = nMessage;
    mStopper.request();
  }
  ScriptedSource mSource;
  SourceAddress mSpec;
  tool::Stopper mStopper;
  tool::LineCounts mCounts;
  tool::LineReader mLines{mCounts};
  SentenceList mList;
  std::string mReason;
  std::string mTrouble;
  int mOpened = 0;
};

TEST(SourceReader, readsAFileToItsEnd) {
  Reading lReading;
  lReading.mSource.mOpens = {SentenceSource::OPENED};
  lReading.mSource.mTexts = {"$GPGLL,,,,,,V", ",N*64\n$GPG"};
  EXPECT_EQ(lReading.run(SourceAddress::FILE, "x.nmea"), SourceReader::ENDED);
  EXPECT_EQ(lReading.mList.mSentences, std::vector<std::string>{"$GPGLL,,,,,,V,N*64"});
  EXPECT_EQ(lReading.mCounts.get(tool::LINE_CUT), 1u);
  EXPECT_EQ(lReading.mOpened, 1);
}

TEST(SourceReader, tellsWhyASourceCannotBeRead) {
  Reading lUnopened;
  lUnopened.mSource.mOpens = {SentenceSource::OPEN_FAILED};
  EXPECT_EQ(lUnopened.run(SourceAddress::SERIAL, "/dev/ttyS9"), SourceReader::UNREADABLE);
  EXPECT_EQ(lUnopened.mReason, "/dev/ttyS9: not today");
  Reading lTorn;
  lTorn.mSource.mOpens = {SentenceSource::OPENED};
  lTorn.mSource.mEnd = SentenceSource::BROKEN;
  EXPECT_EQ(lTorn.run(SourceAddress::FILE, "x.nmea"), SourceReader::UNREADABLE);
  EXPECT_EQ(lTorn.mReason, "x.nmea: torn");
}

TEST(SourceReader, saysThatItTriesALiveSourceAgain) {
  Reading lUnopened;
  lUnopened.mSource.mOpens = {SentenceSource::OPEN_LATER};
  EXPECT_EQ(lUnopened.run(SourceAddress::TCP, "tcp://h:1"), SourceReader::ENDED);
  EXPECT_EQ(lUnopened.mTrouble, "tcp://h:1: not today; trying again in 1 s");
  Reading lTorn;
  lTorn.mSource.mOpens = {SentenceSource::OPENED};
  lTorn.mSource.mTexts = {"$GPGLL,,,,,,V,N*64\n$GP"};
  lTorn.mSource.mEnd = SentenceSource::BROKEN;
  EXPECT_EQ(lTorn.run(SourceAddress::TCP, "tcp://h:1"), SourceReader::ENDED);
  EXPECT_EQ(lTorn.mTrouble, "tcp://h:1: torn; trying again in 1 s");
  EXPECT_EQ(lTorn.mCounts.get(tool::LINE_CUT), 1u);
}

}  // namespace
