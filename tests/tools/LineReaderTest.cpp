#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "LineReader.h"
#include "Simulator.h"

namespace {

using namespace tool;
using Sentences = std::vector<std::string>;
using Verdicts = std::map<LineVerdict, uint64_t>;

const std::string GLL = "$GPGLL,,,,,,V,N*64";
const std::string VTG = "$GPVTG,,T,,M,,N,,K,N*2C";

class Reading : private SentenceSink {
 public:
  explicit Reading(bool nJudged = true) : mReader(mCounts, nJudged) {}
  Reading& feed(const std::string& nText) {
    EXPECT_TRUE(mReader.feed(nText.data(), nText.size(), *this));
    return *this;
  }
  Reading& finish() {
    EXPECT_TRUE(mReader.finish(*this));
    return *this;
  }
  Verdicts verdicts() const {
    Verdicts lVerdicts;
    for (int i = 0; i < LINE_VERDICT_NUM; ++i) {
      const auto lVerdict = static_cast<LineVerdict>(i);
      if (mCounts.get(lVerdict) > 0) lVerdicts[lVerdict] = mCounts.get(lVerdict);
    }
    return lVerdicts;
  }
  LineCounts mCounts;
  Sentences mSentences;

 private:
  bool onSentence(std::string_view nSentence) override {
    mSentences.emplace_back(nSentence);
    return true;
  }
  LineReader mReader;
};

std::string simulatedStream() {
  std::string lStream;
  drive::Simulator({}).writeEpoch(&lStream);
  return lStream;
}

TEST(LineReader, judgesEachPieceOnce) {
  const std::string lLong(300, 'A'), lLongest = "$GPGLL" + std::string(LineReader::MAX_SENTENCE - 6, 'A');
  const struct {
    const char* mpName;
    std::string mText;
    Sentences mSentences;
    Verdicts mVerdicts;
    bool mIsJudged = true;
  } CASES[] = {
      {"nothing", "", {}, {}},
      {"line ends only", "\r\n\n\r\r\n", {}, {}},
      {"every line end", GLL + "\r" + GLL + "\n" + GLL + "\r\n", {GLL, GLL, GLL}, {{LINE_CHECKED, 3}}},
      {"blanks around", "  " + GLL + " \t\r\n", {GLL}, {{LINE_CHECKED, 1}}},
      {"lower-case checksum", "$GPVTG,,T,,M,,N,,K,N*2c\n", {"$GPVTG,,T,,M,,N,,K,N*2c"}, {{LINE_CHECKED, 1}}},
      {"no line end at the end", GLL, {GLL}, {{LINE_CHECKED, 1}}},
      {"no line end between", GLL + VTG + "\n", {GLL, VTG}, {{LINE_CHECKED, 2}}},
      {"noise before", "xyz" + GLL + "\n", {GLL}, {{LINE_NOISE, 1}, {LINE_CHECKED, 1}}},
      {"text lines", "# comment\n\n" + GLL + "\n", {GLL}, {{LINE_NOISE, 1}, {LINE_CHECKED, 1}}},
      {"binary lines", std::string("\0\x80\xFF\n", 4) + GLL + "\n", {GLL}, {{LINE_NOISE, 1}, {LINE_CHECKED, 1}}},
      {"binary inside", "$GPGLL,,\x80,,,,V,N*64\n" + GLL + "\n", {GLL}, {{LINE_BINARY, 1}, {LINE_CHECKED, 1}}},
      {"zero inside", std::string("$GPGLL,,\0,\n", 11), {}, {{LINE_BINARY, 1}}},
      {"cut by the next", "$GPGLL,,," + GLL + "\n", {GLL}, {{LINE_CUT, 1}, {LINE_CHECKED, 1}}},
      {"cut by another start", "$GPGLL,,!AIVDM,1*00\n", {}, {{LINE_CUT, 1}, {LINE_BAD_CHECKSUM, 1}}},
      {"cut by the end", GLL + "\n$GPGLL,,,,,", {GLL}, {{LINE_CHECKED, 1}, {LINE_CUT, 1}}},
      {"cut in the checksum", GLL + "\n$GPGLL,,,,,,V,N*6", {GLL}, {{LINE_CHECKED, 1}, {LINE_CUT, 1}}},
      {"no address", "$\n!\n$1\n$0,N,13944.70000,E,0.000,60.00*33\n", {}, {{LINE_NOISE, 4}}},
      {"address cut", "$GPGL\n", {}, {{LINE_CUT, 1}}},
      {"wrong checksum", "$GPGLL,,,,,,V,N*65\n", {}, {{LINE_BAD_CHECKSUM, 1}}},
      {"malformed checksum", "$GPGLL,V,N*6G\n$GPGLL*\n$GPGLL,,,,,,V,N*64x\n", {}, {{LINE_BAD_CHECKSUM, 3}}},
      {"two stars", "$GPGLL,,,*,,,V,N*64\n", {}, {{LINE_BAD_CHECKSUM, 1}}},
      {"too long", "$GPGLL" + lLong + "\n" + GLL + "\n", {GLL}, {{LINE_TOO_LONG, 1}, {LINE_CHECKED, 1}}},
      {"a start ends the too long", "$GPGLL" + lLong + GLL + "\n", {GLL}, {{LINE_TOO_LONG, 1}, {LINE_CHECKED, 1}}},
      {"old receiver", "$GPGLL,V,N\n", {"$GPGLL,V,N"}, {{LINE_UNCHECKED, 1}}},
      {"tail lost", GLL + "\n$GPGLL,V,N\n", {GLL}, {{LINE_CHECKED, 1}, {LINE_NO_CHECKSUM, 1}}},
      {"the longest", lLongest + "\n" + lLongest + "A\n", {lLongest}, {{LINE_UNCHECKED, 1}, {LINE_TOO_LONG, 1}}},
      {"not judged",
       GLL + "\n$GPGLL,V,N*00\n$GPGLL,V,N\n$GPGLL,\x01\n$GPGLL,",
       {GLL, "$GPGLL,V,N*00", "$GPGLL,V,N"},
       {{LINE_CHECKED, 1}, {LINE_UNCHECKED, 2}, {LINE_BINARY, 1}, {LINE_CUT, 1}},
       false},
  };
  for (const auto& lCase : CASES) {
    SCOPED_TRACE(lCase.mpName);
    Reading lReading(lCase.mIsJudged);
    lReading.feed(lCase.mText).finish();
    EXPECT_EQ(lReading.mSentences, lCase.mSentences);
    EXPECT_EQ(lReading.verdicts(), lCase.mVerdicts);
  }
}

TEST(LineReader, aStreamCutAnywhereLosesAtMostTheSentenceUnderWayAndGoesOnWithIt) {
  const std::string lStream = simulatedStream();
  Reading lWhole;
  lWhole.feed(lStream).finish();
  for (size_t i = 0; i <= lStream.size(); ++i) {
    const std::string lHead = lStream.substr(0, i);
    Reading lCut, lInTwo;
    lCut.feed(lHead).finish();
    lInTwo.feed(lHead).feed(lStream.substr(i)).finish();
    ASSERT_EQ(lInTwo.mSentences, lWhole.mSentences) << i;
    ASSERT_EQ(lInTwo.verdicts(), lWhole.verdicts()) << i;
    const Sentences& lRead = lCut.mSentences;
    const auto lBegun = static_cast<uint64_t>(std::count(lHead.begin(), lHead.end(), '$'));
    ASSERT_EQ(lCut.mCounts.total(), lBegun) << i;
    ASSERT_LE(lBegun - lCut.mCounts.accepted(), 1u) << i;
    ASSERT_TRUE(std::equal(lRead.begin(), lRead.end(), lWhole.mSentences.begin())) << i;
  }
}

TEST(LineReader, aSpoiltByteNeverInventsASentence) {
  const std::string lBefore = GLL + "\n";  // from here on the source is known to send checksums
  const std::string lStream = simulatedStream();
  Reading lWhole;
  lWhole.feed(lStream).finish();
  Sentences lGood = lWhole.mSentences;
  lGood.push_back(GLL);
  for (size_t i = 0; i < lStream.size(); ++i) {
    std::string lSpoilt = lStream;
    lSpoilt[i] = static_cast<char>(lSpoilt[i] ^ 0x11);
    Reading lReading;
    lReading.feed(lBefore + lSpoilt).finish();
    ASSERT_GE(lReading.mSentences.size() + 2, lGood.size()) << i;
    for (const std::string& lSentence : lReading.mSentences) {
      ASSERT_NE(std::find(lGood.begin(), lGood.end(), lSentence), lGood.end()) << i << " " << lSentence;
    }
  }
}

}  // namespace
