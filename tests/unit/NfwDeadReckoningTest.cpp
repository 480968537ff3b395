#include "LogRecords.h"
#include "NfwDeadReckoning.h"
#include "NfwDeadReckoningLoggerPlayer.h"
#include "NfwDeadReckoningSdkDataReceiver.h"
#include "NfwThreadMsgProfilerManager.h"
#include "Positioning.h"
#include "SharedThread.h"

namespace {

using namespace nfwtest;
using nfw::DeadReckoningNmeaSentence;
using nfw::NmeaSentenceData;

void put(NmeaSentenceData& nSlot, const std::string& nText) {
  memcpy(nSlot.mText, nText.data(), nText.size());
  nSlot.mLength = static_cast<uint32_t>(nText.size());
}

class DeadReckoningTest : public testing::Test {
 protected:
  /// What came of a source's messages and of those that it made of them.
  Strings settled() {
    mThread.settle();
    mThread.settle();
    return mNotes.take();
  }
  void attach() { EXPECT_TRUE(mDispatcher.attachDeadReckoningNmeaDataListener(&mListener)); }

  seams::CapturedLog mLog;
  const seams::ManualClock mClock;
  Notes mNotes;
  DeadReckoningListener mListener{mNotes}, mOther{mNotes, "other "};
  SharedThread mThread{nfw::ThreadMsgProfilerManager::profiledSize(nfw::THREAD_MSG_DEAD_RECKONING)};
  nfw::DeadReckoningDataDispatcher mDispatcher{mThread.get(), 1};
};

// --- the dispatcher

TEST_F(DeadReckoningTest, ASetIsHandedOnSentenceBySentence) {
  attach();
  mDispatcher.dispatch(DeadReckoningNmeaSentence());
  EXPECT_EQ((Strings{"", "", "", ""}), settled());
  DeadReckoningNmeaSentence lSet;
  put(lSet.mRmc, "rmc"), put(lSet.mVtg, "vtg"), put(lSet.mGga, std::string(256, 'g')), put(lSet.mPubx, "pubx");
  for (unsigned int i = 0; i < 4; ++i) put(lSet.mGsa[i], "gsa" + std::to_string(i));
  for (unsigned int i = 0; i < 32; ++i) put(lSet.mGsv[i], "gsv" + std::to_string(i));
  lSet.mGsaCount = 2;
  mDispatcher.dispatch(lSet);
  EXPECT_EQ((Strings{"rmc", "vtg", std::string(256, 'g'), "gsa0", "gsa1", "pubx"}), settled());
  lSet.mGsaCount = 5, lSet.mGsvCount = 33;  // more than there are
  mDispatcher.dispatch(lSet);
  const Strings lAll = settled();
  ASSERT_EQ(40U, lAll.size());
  EXPECT_EQ("gsa3", lAll[6]);
  EXPECT_EQ("gsv31", lAll[38]);
  EXPECT_EQ("pubx", lAll[39]);
  const seams::Failing lFailing(seams::POST);
  mDispatcher.dispatch(lSet);
  EXPECT_EQ(Strings{"nfw::DeadReckoningNmeaDataDispatcher::dispatch(): Can't send thread"}, errors(mLog));
}

TEST_F(DeadReckoningTest, ASentenceGoesToAllListenersBeforeTheNextOne) {
  DeadReckoningNmeaSentence lSet;
  put(lSet.mRmc, "rmc"), put(lSet.mVtg, "vtg"), put(lSet.mGga, "gga"), put(lSet.mPubx, "pubx");
  mOther.mOnCall = [this] {
    if (mNotes.all().back() == "other vtg") mDispatcher.detachDeadReckoningNmeaDataListener(&mOther);
  };
  attach();
  EXPECT_TRUE(mDispatcher.attachDeadReckoningNmeaDataListener(&mOther));
  mDispatcher.dispatch(lSet);
  EXPECT_EQ((Strings{"other rmc", "rmc", "other vtg", "vtg", "gga", "pubx"}), settled());
}

// --- the live source

TEST_F(DeadReckoningTest, AReportIsHandedOnWhileOnAndRecordedInAnyCase) {
  LogServices lLogs;
  nfw::DeadReckoningSdkDataReceiver lReceiver(&mDispatcher, mThread.get(), DEAD_RECKONING_LOGGER_ID);
  attach();
  EXPECT_TRUE(lReceiver.initialize());
  lLogs.startRecord();
  deadreckoninghost::feed(makeReport(1, 2));
  lReceiver.onNotifyLocationInfoForTervin(nullptr);
  EXPECT_EQ(Strings{}, settled());
  lReceiver.on();
  deadreckoninghost::feed(makeReport(1, 2));
  const Strings lSentences = settled();
  ASSERT_EQ(7U, lSentences.size());
  lReceiver.finalize();
  deadreckoninghost::feed(makeReport(0, 0));
  mThread.stop();
  lReceiver.onNotifyLocationInfoForTervin(nullptr);
  lLogs.stopRecord();
  Strings lTexts;
  for (const auto& lRecord : parseLogRecords(readFile(lLogs.textFile()))) lTexts.push_back(lRecord.mData);
  Strings lTwice = lSentences;
  lTwice.insert(lTwice.end(), lSentences.begin(), lSentences.end());
  EXPECT_EQ(lTwice, lTexts);
  const std::string lRecord = sensorRecord(1, 1, 100000, sensorData(makeReport(1, 2)));
  EXPECT_EQ(lRecord + lRecord, readFile(lLogs.sensorFile()));
  EXPECT_EQ(Strings{}, errors(mLog));
}

TEST_F(DeadReckoningTest, AReportThatCannotBeConvertedIsNeitherHandedOnNorRecorded) {
  const std::string lClass = "nfw::DeadReckoningSdkDataReceiver";
  const std::string lCallback = lClass + "::onNotifyLocationInfoForTervin(): ";
  nfw::DeadReckoningSdkDataReceiver lReceiver(&mDispatcher, mThread.get(), DEAD_RECKONING_LOGGER_ID);
  attach();
  lReceiver.on();
  auto lReport = makeReport(1, 1);
  lReport.gsv[0].view = 129;
  lReceiver.onNotifyLocationInfoForTervin(&lReport);
  EXPECT_TRUE(mLog.has(lCallback + "nfw::convertFromDeadReckoningData() failed"));
  EXPECT_EQ(Strings{}, settled());
  expectRefusals(mLog, lReceiver, lClass);
  {
    const seams::Failing lFailing(seams::POST);
    lReport.gsv[0].view = 4;
    lReceiver.onNotifyLocationInfoForTervin(&lReport);
  }
  EXPECT_EQ((Strings{"nfw::DeadReckoningNmeaDataDispatcher::dispatch(): Can't send thread",
                     lCallback + "Can't post thread: MsgId=-2147480574 "}),
            errors(mLog));
}

// --- the replays

TEST_F(DeadReckoningTest, TextsAreGatheredFromRmcToPubx) {
  nfw::DeadReckoningLoggerPlayer lPlayer(&mDispatcher, mThread.get(), 21);
  attach();
  const auto lPlay = [&](const Strings& nTexts) {
    for (const std::string& lText : nTexts) {
      lPlayer.receiveLogPlayData(21, reinterpret_cast<const unsigned char*>(lText.data()),
                                 static_cast<unsigned int>(lText.size()));
    }
    return settled();
  };
  const std::string r = "$GPRMC,1", s = "$GPRMC,2", v = "$GPVTG,", g = "$GPGGA,", a = "$GPGSA,", p = "$PUBX,", e;
  const std::string lLong = "$GPGGA," + std::string(249, 'x');
  EXPECT_EQ(Strings{}, lPlay({r, p}));  // off
  lPlayer.on();
  const std::tuple<const char*, Strings, Strings> CASES[] = {
      {"whole", {r, v, g, a, a, "$GPGSV,1", "$GPGSV,2", p}, {r, v, g, a, a, "$GPGSV,1", "$GPGSV,2", p}},
      {"the least", {r, p}, {r, e, e, p}},
      {"another order", {r, g, "$GPGSV,1", a, v, p}, {r, v, g, a, "$GPGSV,1", p}},
      {"an unfinished one is lost", {r, v, a, s, p}, {s, e, e, p}},
      {"nothing without RMC", {v, g, p}, {}},
      {"one set of one PUBX", {r, p, p}, {r, e, e, p}},
      {"others do not count", {r, "$GPZDA,", "$GPGLL,", "junk", e, p}, {r, e, e, p}},
      {"a fifth GSA has no slot", {r, a, a, a, a, a, p}, {r, e, e, a, a, a, a, p}},
      {"256 bytes, 257 bytes", {r, lLong, v + lLong, p}, {r, e, lLong, p}},
  };
  for (const auto& [lpName, lTexts, lSets] : CASES) EXPECT_EQ(lSets, lPlay(lTexts)) << lpName;
  Strings lMany(1, r);
  lMany.insert(lMany.end(), 33, "$GPGSV,");
  lMany.push_back(p);
  EXPECT_EQ(4U + 32, lPlay(lMany).size());
  lPlayer.receiveLogPlayData(20, reinterpret_cast<const unsigned char*>(r.data()), 8);
  EXPECT_EQ(Strings{}, lPlay({p}));
  lPlay({r, v});
  lPlayer.off(), lPlayer.on();
  EXPECT_EQ(Strings{}, lPlay({g, p})) << "a set of the replay before";
}

}  // namespace
