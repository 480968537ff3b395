#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "LogRecords.h"
#include "NfwLogReader.h"
#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwSysLogReader.h"
#include "PlatformSeams.h"
#include "PlayClock.h"
#include "PlayTimeline.h"
#include "Replays.h"
#include "TempDir.h"

namespace {

using nfwtest::Notes;
using Strings = std::vector<std::string>;

const int IDS[] = {1, 2};
const unsigned int LEAD = 1000;

struct DataLog {
  using Service = nfw::Logger;
  using Reader = nfw::LogReader;
  static const unsigned int RESTART_GAP = 4000;  // by the dates
  static std::string record(int nId, uint32_t nTime, const std::string& nData, int nSecond = 9) {
    return nfwtest::logRecord(nId, nTime, nData).replace(17, 2, nSecond < 10 ? "0" + std::to_string(nSecond) : "13");
  }
};

struct SensorLog {
  using Service = nfw::SensorSysLoggerManager;
  using Reader = nfw::SysLogReader;
  static const unsigned int RESTART_GAP = 1000;
  static std::string record(int nId, uint32_t nTime, const std::string& nData, int /*nSecond*/ = 0) {
    return nfwtest::sensorRecord(nId, 1, nTime, nData);
  }
};

template <class Log>
class PlayControlTest : public testing::Test {
 protected:
  PlayControlTest() {
    nfw::Logger::initializeMaxPlayerNum(1);
    nfw::Logger::initializeMaxLogTypeNum(2);
    nfw::Logger::initializeMaxLogFieldSize(1200);
    mpService = Log::Service::get();
    EXPECT_TRUE(mpService->initialize());
    EXPECT_TRUE(mpService->attachPlayer(&mPlayer));
    for (unsigned int i = 0; i < 2; ++i) EXPECT_TRUE(mpService->attachPlayListener(IDS[i], &mListeners[i]));
  }
  ~PlayControlTest() override {
    mpService->stopPlay();
    Log::Service::destroy();
    nfw::Logger::destroy();
  }

  std::string write(const std::string& nName, const std::string& nRecords) {
    nfwtest::writeFile(mDir / nName, nRecords);
    return mDir / nName;
  }
  /// A record's data is where it lies.
  std::string records(const std::vector<uint32_t>& nOffsets, uint32_t nFirstTime = 5000) {
    std::string lBytes;
    for (const uint32_t lOffset : nOffsets) lBytes += Log::record(1, nFirstTime + lOffset, std::to_string(lOffset));
    return lBytes;
  }
  bool start(const Strings& nPaths) {
    std::vector<const char*> lPaths;
    for (const auto& lPath : nPaths) lPaths.push_back(lPath.c_str());
    return mpService->startPlay(lPaths.data(), static_cast<unsigned int>(lPaths.size()));
  }
  /// What was noted, without the ticks.
  Strings heard() const {
    Strings lAll = mNotes.all();
    for (auto& lNote : lAll) {
      if (lNote.find(':') != std::string::npos) lNote.erase(0, lNote.find_last_of(": ") + 1);
    }
    return lAll;
  }
  bool pumpTo(size_t nCount) {
    return nfwtest::pump(mClock, [&] { return mNotes.count() >= nCount; });
  }
  unsigned int position() const { return mpService->getPlayPosition().mPositionMs; }

  nfwtest::TempDir mDir;
  seams::CapturedLog mLog;
  seams::ManualClock mClock{100000};
  Notes mNotes;
  nfwtest::Player mPlayer{mNotes};
  nfwtest::PlayListener mListeners[2] = {nfwtest::PlayListener{mNotes}, nfwtest::PlayListener{mNotes}};
  typename Log::Service* mpService = nullptr;
};

using Logs = testing::Types<DataLog, SensorLog>;
TYPED_TEST_SUITE(PlayControlTest, Logs);

// Rotated without a gap, after a pause, and from the next start of the system on.
TYPED_TEST(PlayControlTest, SeveralFilesAreOneRecording) {
  const Strings lFiles = {this->write("a", this->records({0, 100})), this->write("b", this->records({100, 350})),
                          this->write("c", TypeParam::record(1, 70, "last", 13)), this->write("empty", "")};
  EXPECT_FALSE(this->start(lFiles));
  EXPECT_FALSE(this->start({lFiles[0], this->mDir / "none"}));
  const uint32_t lZero = this->mClock.tick() + LEAD;
  ASSERT_TRUE(this->start({lFiles[0], lFiles[1], lFiles[2]}));
  EXPECT_EQ(350 + TypeParam::RESTART_GAP, this->mpService->getPlayPosition().mLengthMs);
  EXPECT_TRUE(this->pumpTo(7));
  EXPECT_EQ((Strings{"start", "0", "100", "100", "350", "last", "end 0"}), this->heard());
  EXPECT_GE(std::stoul(this->mNotes.all()[5]), lZero + 350 + TypeParam::RESTART_GAP);
  EXPECT_EQ(350 + TypeParam::RESTART_GAP, this->position());
}

TYPED_TEST(PlayControlTest, NothingComesBeforeItsTimeAtAnyRate) {
  const std::string lFile = this->write("a", this->records({0, 7, 20, 21, 400, 1001, 1002, 2000}));
  for (const unsigned int lRate : {100000u, 10000u, 1000u, 100u}) {
    this->mNotes.clear();
    const uint32_t lZero = this->mClock.tick() + LEAD;
    ASSERT_TRUE(this->mpService->startPlay(lFile.c_str()));
    EXPECT_TRUE(this->mpService->setPlayRate(lRate));
    EXPECT_TRUE(this->pumpTo(10));
    EXPECT_EQ((Strings{"start", "0", "7", "20", "21", "400", "1001", "1002", "2000", "end 0"}), this->heard());
    for (const auto& lNote : this->mNotes.all()) {
      if (lNote.find(':') == std::string::npos) continue;
      const auto lOffset = static_cast<uint32_t>(std::stoul(lNote.substr(lNote.find_last_of(": ") + 1)));
      EXPECT_GE(std::stoul(lNote), lZero + lOffset * 1000ull / lRate) << lNote << " at " << lRate;
    }
    this->mpService->stopPlay();
  }
}

TYPED_TEST(PlayControlTest, ANewRateHoldsForWhatIsWaitedFor) {
  ASSERT_TRUE(this->start({this->write("a", this->records({0, 10000}))}));
  EXPECT_TRUE(this->pumpTo(2));
  EXPECT_TRUE(this->mpService->setPlayRate(10000));
  this->mClock.advance(1000);
  EXPECT_TRUE(nfwtest::eventually([&] { return this->mNotes.count() >= 3; }));
}

TYPED_TEST(PlayControlTest, APauseHoldsEverythingButWhatIsSteppedTo) {
  EXPECT_FALSE(this->mpService->pausePlay());
  ASSERT_TRUE(this->start({this->write("a", this->records({0, 10, 10, 10, 30, 500}))}));
  EXPECT_TRUE(this->mpService->pausePlay());
  EXPECT_TRUE(this->mpService->getPlayPosition().mIsPaused);
  this->mClock.advance(60000);
  EXPECT_EQ(0u, this->position());
  const Strings lSteps[] = {{"start", "0"}, {"10", "10", "10"}, {"30"}};
  Strings lHeard;
  for (const Strings& lStep : lSteps) {
    EXPECT_TRUE(this->mpService->stepPlay());
    lHeard.insert(lHeard.end(), lStep.begin(), lStep.end());
    EXPECT_TRUE(this->pumpTo(lHeard.size()));
    this->mClock.advance(10000);
  }
  EXPECT_EQ(30u, this->position());
  EXPECT_TRUE(this->mpService->resumePlay());
  this->mClock.advance(469);
  EXPECT_EQ(lHeard, this->heard());
  EXPECT_TRUE(this->pumpTo(8));
  EXPECT_EQ("end 0", this->heard().back());
}

TYPED_TEST(PlayControlTest, ASeekGoesAnywhereAndTellsTheEndAgain) {
  const std::string lFile = this->write("a", this->records({0, 100, 200, 300}) + this->records({1300, 1400}, 4000));
  EXPECT_FALSE(this->mpService->seekPlay(0));
  ASSERT_TRUE(this->mpService->startPlay(lFile.c_str()));
  const unsigned int lLast = this->mpService->seekPlay(0) ? this->mpService->getPlayPosition().mLengthMs : 0;
  EXPECT_FALSE(this->mpService->seekPlay(lLast + 1));
  EXPECT_TRUE(this->mpService->seekPlay(200));
  EXPECT_TRUE(this->pumpTo(8));
  EXPECT_TRUE(this->mpService->seekPlay(lLast));
  EXPECT_TRUE(this->pumpTo(11));
  EXPECT_TRUE(this->mpService->pausePlay());
  EXPECT_TRUE(this->mpService->seekPlay(101));
  EXPECT_TRUE(this->mpService->stepPlay());
  EXPECT_TRUE(this->pumpTo(13));
  EXPECT_EQ(
      (Strings{"start", "seek", "seek", "200", "300", "1300", "1400", "end 0", "seek", "1400", "end 0", "seek", "200"}),
      this->heard());
}

// A player goes round and round; a listener pauses at each record.
TYPED_TEST(PlayControlTest, CallbacksMayControl) {
  this->mPlayer.mOnEnd = [&] { EXPECT_TRUE(this->mpService->seekPlay(50)); };
  this->mListeners[0].mOnData = [&] { EXPECT_TRUE(this->mpService->pausePlay()); };
  ASSERT_TRUE(this->start({this->write("a", this->records({0, 100, 200}))}));
  for (size_t lRound = 0; lRound < 8; ++lRound) {
    EXPECT_TRUE(nfwtest::pump(this->mClock, [&] { return this->mpService->getPlayPosition().mIsPaused; }));
    EXPECT_TRUE(this->mpService->resumePlay());
  }
  EXPECT_TRUE(this->pumpTo(10));
  Strings lHeard = this->heard();
  lHeard.resize(10);
  EXPECT_EQ((Strings{"start", "0", "100", "200", "end 0", "seek", "100", "200", "end 0", "seek"}), lHeard);
  EXPECT_TRUE(this->mpService->stopPlay());
}

// Whatever is done: behind a seek comes the first record from there on, then each next one of its type. NFW_CONTROLS in
// the environment does it more often.
TYPED_TEST(PlayControlTest, ListenersHearWhatTheControlsSay) {
  const char* const lpNum = ::getenv("NFW_CONTROLS");
  const int lNum = lpNum != nullptr ? std::stoi(lpNum) : 300;
  std::mt19937 lRandom(7);
  const size_t lCount = 200;
  std::vector<uint32_t> lOffsets(lCount);
  std::string lBytes;
  for (size_t i = 0; i < lCount; ++i) {  // odd ones of one type, even ones of the other
    if (i > 0) lOffsets[i] = lOffsets[i - 1] + static_cast<uint32_t>(lRandom() % 40);
    lBytes += TypeParam::record(IDS[i % 2], lOffsets[i], std::to_string(i));
  }
  const Strings lFiles = {this->write("a", lBytes)};
  ASSERT_TRUE(this->start(lFiles));
  std::vector<uint32_t> lTargets = {0};
  for (int i = 0; i < lNum; ++i) {
    const auto lValue = static_cast<uint32_t>(lRandom());
    switch (lValue % 6) {
      case 0:
        lTargets.push_back(lValue / 6 % (lOffsets.back() + 1));
        EXPECT_TRUE(this->mpService->seekPlay(lTargets.back()));
        break;
      case 1:
        EXPECT_TRUE(this->mpService->setPlayRate(100 + lValue / 6 % 10000));
        break;
      case 2:
        EXPECT_TRUE(this->mpService->pausePlay() && this->mpService->stepPlay());
        break;
      case 3:
        EXPECT_TRUE(lValue / 6 % 8 > 0 || (this->mpService->stopPlay() && this->start(lFiles)));
        break;
      default:
        EXPECT_TRUE(this->mpService->resumePlay());
    }
    for (uint32_t lStep = lValue >> 16 & 63; lStep > 0; --lStep) this->mClock.advance(1);
  }
  EXPECT_TRUE(this->mpService->resumePlay());
  EXPECT_TRUE(nfwtest::pump(this->mClock, [&] { return this->heard().back() == "end 0"; }));
  size_t lSeeks = 0;
  size_t lNext[2] = {0, 1};
  for (const std::string& lNote : this->heard()) {
    if (lNote == "seek") {
      const uint32_t lTarget = lTargets.at(++lSeeks);
      for (size_t i = 0; i < 2; ++i) {
        for (lNext[i] = i; lNext[i] < lCount && lOffsets[lNext[i]] < lTarget;) lNext[i] += 2;
      }
    } else if (lNote == "start") {
      lNext[0] = 0, lNext[1] = 1;
    } else if (lNote != "stop" && lNote != "end 0") {
      const size_t lHeard = std::stoul(lNote);
      ASSERT_EQ(lNext[lHeard % 2], lHeard);
      lNext[lHeard % 2] += 2;
    }
  }
  EXPECT_EQ(lTargets.size(), lSeeks + 1);
  EXPECT_EQ(lCount, lNext[0]);
  EXPECT_EQ(lCount + 1, lNext[1]);
}

// Found by bisection, as a reader of everything would find it.
TYPED_TEST(PlayControlTest, AMomentIsFoundInFilesThatBeginAnew) {
  std::mt19937 lRandom(3);
  const nfw::RecordFormat& lFormat = TypeParam::Reader::recordFormat();
  for (int lRound = 0; lRound < 20; ++lRound) {
    std::string lBytes;
    std::vector<std::pair<size_t, uint32_t>> lAll;  // position, offset
    uint32_t lTime = static_cast<uint32_t>(lRandom()) | 0xFFFF0000u, lOffset = 0;
    const size_t lCount = 2000, lRestart = 500 + lRandom() % 1000;
    for (size_t i = 0; i < lCount; ++i) {
      const uint32_t lStep = static_cast<uint32_t>(lRandom()) % 200;
      if (i > 0) lOffset += i == lRestart ? (lFormat.mTextSize > 0 ? 0 : 1000) : lStep;
      lTime = i == lRestart ? lTime - 0x100000 : lTime + (i > 0 ? lStep : 0);
      lAll.emplace_back(lBytes.size(), lOffset);
      lBytes += TypeParam::record(static_cast<int>(lRandom() % 4), lTime, std::string(lRandom() % 90, '\x07'));
    }
    const std::string lPath = this->write("a", lBytes);
    const char* lpPath = lPath.c_str();
    const char* lpBad = nullptr;
    nfw::PlayTimeline lTimeline;
    ASSERT_TRUE(lTimeline.build(lFormat, &lpPath, 1, &lpBad));
    ASSERT_EQ(lAll.back().second, lTimeline.length());
    for (int i = 0; i < 20; ++i) {
      const uint32_t lWanted = static_cast<uint32_t>(lRandom()) % lTimeline.length();
      const auto lPlace = lTimeline.find(lFormat, lWanted);
      const auto lIsThere = [&](const auto& nRecord) { return nRecord.first == lPlace.mPosition; };
      const auto lFound = std::find_if(lAll.begin(), lAll.end(), lIsThere);
      ASSERT_NE(lAll.end(), lFound);
      EXPECT_LE(lFound->second, lWanted);
      EXPECT_GE(lFound->second + 2200, lWanted);
    }
  }
}

}  // namespace
