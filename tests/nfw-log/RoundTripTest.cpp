// What nfw-log makes of recordings, as the library replays it.
#include "LogToolRun.h"
#include "Positioning.h"

namespace {

using namespace nfwtest;
using logtest::runTool;

const int EPOCHS = 12;
const unsigned int EPOCH_MS = 100;

std::string sentence(const std::string& nHead, int nSecond, const std::string& nTail) {
  const std::string lText = nHead + std::to_string(nSecond + 10) + nTail;
  unsigned int lXor = 0;
  for (size_t i = 1; i < lText.size(); ++i) lXor ^= static_cast<unsigned char>(lText[i]);
  char lSum[16];
  snprintf(lSum, sizeof lSum, "*%02x\r\n", lXor);
  return lText + lSum;
}
std::string gga(int nSecond) {
  return sentence("$GPGGA,0927", nSecond, ".000,4717.11399,N,00833.91590,E,1,08,1.01,499.6,M,48.0,M,,");
}
std::string rmc(int nSecond) {
  return sentence("$GPRMC,0927", nSecond, ".000,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,3.1,W,A");
}

/// A recording of both kinds, made by the library: an epoch every 100 ms.
class RoundTrip : public testing::TestWithParam<bool> {
 protected:
  RoundTrip() {
    mLogs.startRecord();
    for (int i = 0; i < EPOCHS; ++i) {
      const std::string lLine = "line " + std::to_string(i);
      write(GNSS_LOGGER_ID, gga(i)), write(DEAD_RECKONING_LOGGER_ID, rmc(i)), write(255, lLine);
      writeSensor(0, sensorData(gga(i))), writeSensor(1, sensorData(makeReport(2, static_cast<unsigned int>(i))));
      writeSensor(9, lLine);
      mClock.advance(EPOCH_MS);
    }
    mLogs.stopRecord();
    mFile = isLog() ? mLogs.textFile() : mLogs.sensorFile();
    mIds = isLog() ? std::vector<int>{GNSS_LOGGER_ID, DEAD_RECKONING_LOGGER_ID} : std::vector<int>{0, 1};
  }

  static void write(int nId, const std::string& nData) {
    nfw::Logger::write(nId, nData.data(), static_cast<unsigned int>(nData.size()));
  }
  static void writeSensor(int nId, std::string nData) {
    nfw::SensorSysLoggerManager::write(nId, 1, nData.data(), static_cast<unsigned int>(nData.size()));
  }
  static bool isLog() { return GetParam(); }

  /// What a listener of the id receives.
  Strings replay(const std::string& nPath, int nId) {
    return isLog() ? replayOf(*nfw::Logger::get(), mPlayer, nPath, nId)
                   : replayOf(*nfw::SensorSysLoggerManager::get(), mSysPlayer, nPath, nId);
  }
  template <class Service, class ItsPlayer>
  Strings replayOf(Service& nService, ItsPlayer& nPlayer, const std::string& nPath, int nId) {
    Notes lNotes;
    PlayListener lListener(lNotes);
    lListener.mHasTicks = false;
    mPlayerNotes.clear();
    EXPECT_TRUE(nService.attachPlayer(&nPlayer) && nService.attachPlayListener(nId, &lListener));
    EXPECT_TRUE(nService.startPlay(nPath.c_str()));
    EXPECT_TRUE(pump(
        mClock, [&] { return mPlayerNotes.count() >= 2; }, 50));
    nService.stopPlay(), nService.detachPlayListener(&lListener), nService.detachPlayer(&nPlayer);
    return lNotes.all();
  }
  Strings replay(const std::string& nPath) {
    Strings lAll;
    for (const int lId : mIds) {
      for (const std::string& lNote : replay(nPath, lId)) lAll.push_back(std::to_string(lId) + " " + lNote);
    }
    return lAll;
  }

  seams::CapturedLog mLog;
  seams::ManualClock mClock;
  Notes mPlayerNotes;
  Player mPlayer{mPlayerNotes, "player"};
  SysPlayer mSysPlayer{mPlayerNotes};
  LogServices mLogs;
  TempDir mDir;
  std::string mFile;
  std::vector<int> mIds;
};
INSTANTIATE_TEST_SUITE_P(BothKinds, RoundTrip, testing::Bool());

TEST_P(RoundTrip, CutPlaysFromTheFirstRecordOnAndMergePutsThePartsTogether) {
  const std::string lHead = mDir / "head", lTail = mDir / "tail", lWhole = mDir / "whole";
  EXPECT_EQ(0, runTool({"cut", "--to", "450ms", mFile, "-o", lHead}));
  EXPECT_EQ(0, runTool({"cut", "--from", "450ms", mFile, "-o", lTail}));
  EXPECT_EQ(readFile(mFile), readFile(lHead) + readFile(lTail));
  const Strings lAll = replay(mFile, mIds[0]), lLate = replay(lTail, mIds[0]);
  ASSERT_EQ(static_cast<size_t>(EPOCHS), lAll.size());
  EXPECT_EQ(Strings(lAll.begin(), lAll.begin() + 5), replay(lHead, mIds[0]));
  EXPECT_EQ(Strings(lAll.begin() + 5, lAll.end()), lLate);
  EXPECT_EQ(0, runTool({"merge", lTail, lHead, "-o", lWhole}));
  EXPECT_EQ(readFile(mFile), readFile(lWhole));
}

TEST_P(RoundTrip, FilterKeepsWhatIsAskedFor) {
  struct Case {
    Strings mLog, mSensor;  // options
    bool mHas[2];           // what plays of both ids
  };
  const Case CASES[] = {{{"--id", "20"}, {"--id", "0"}, {true, false}},
                        {{"--type", "rmc"}, {"--type", "DR"}, {false, true}},
                        {{"--id", "0x15,20", "--type", "GGA,RMC"}, {"--id", "1,0"}, {true, true}},
                        {{"--type", "LOG"}, {"--type", "DATA"}, {false, false}}};
  int lCount = 0;
  for (const Case& lCase : CASES) {
    const std::string lOut = mDir / ("out" + std::to_string(lCount++));
    Strings lArguments = {"filter", mFile, "-o", lOut};
    for (const std::string& lOption : isLog() ? lCase.mLog : lCase.mSensor) lArguments.push_back(lOption);
    ASSERT_EQ(0, runTool(lArguments));
    for (const size_t i : {0u, 1u}) {
      EXPECT_EQ(lCase.mHas[i] ? replay(mFile, mIds[i]) : Strings{}, replay(lOut, mIds[i])) << lCount;
    }
  }
}

TEST_P(RoundTrip, MergeOfTheIdsPlaysAsTheWholeDoes) {
  const std::string lFirst = mDir / "first", lSecond = mDir / "second", lBoth = mDir / "both";
  EXPECT_EQ(0, runTool({"filter", "--id", std::to_string(mIds[0]), mFile, "-o", lFirst}));
  EXPECT_EQ(0, runTool({"filter", "--id", std::to_string(mIds[1]), mFile, "-o", lSecond}));
  EXPECT_EQ(0, runTool({"merge", lFirst, lSecond, "-o", lBoth}));
  EXPECT_EQ(replay(mFile), replay(lBoth));
}

TEST_P(RoundTrip, RecoverKeepsTheWholeRecordsOfACutFile) {
  const std::string lBytes = readFile(mFile), lCut = mDir / "cut", lOut = mDir / "out";
  const size_t lLast = isLog() ? 49u + 7u : 7u + 7u;  // of an id that is not played
  const Strings lAll = replay(mFile);
  for (const size_t lLost : {size_t{1}, lLast - 1, lLast}) {
    writeFile(lCut, lBytes.substr(0, lBytes.size() - lLost));
    std::string lErrors;
    ASSERT_EQ(0, runTool({"recover", lCut, "-o", lOut, "--force"}, nullptr, &lErrors));
    EXPECT_EQ(lBytes.substr(0, lBytes.size() - lLast), readFile(lOut));
    const std::string lRest = std::to_string(lLast - lLost) + (lLast - lLost == 1 ? " byte lost" : " bytes lost");
    EXPECT_NE(std::string::npos, lErrors.find(", " + lRest + (lLost == lLast ? " at 0 places" : " at 1 place")))
        << lErrors;
    EXPECT_EQ(lAll, replay(lOut));
  }
}

TEST_P(RoundTrip, SentencesComeOutAsTheyWentIn) {
  std::string lOutput, lExpected;
  EXPECT_EQ(0, runTool({"convert", "--to", "nmea", "--id", std::to_string(mIds[0]), mFile}, &lOutput));
  for (int i = 0; i < EPOCHS; ++i) lExpected += gga(i);
  EXPECT_EQ(lExpected, lOutput);
  // Of a report everything that a listener of the framework is given.
  EXPECT_EQ(0, runTool({"convert", "--to", "nmea", "--id", std::to_string(mIds[1]), mFile}, &lOutput));
  size_t lLines = 0;
  for (int i = 0; i < EPOCHS; ++i) lLines += isLog() ? 1u : 4u + 2u + static_cast<size_t>(i);
  EXPECT_EQ(lLines, static_cast<size_t>(std::count(lOutput.begin(), lOutput.end(), '\n')));
}

}  // namespace
