#include <gtest/gtest.h>

#include <functional>

#include "NfwGnssDataDispatcher.h"
#include "NfwNmeaDataDispatcher.h"
#include "NfwParsedGgaDataDispatcher.h"
#include "NfwParsedGllDataDispatcher.h"
#include "NfwParsedGsaDataDispatcher.h"
#include "NfwParsedGsvDataDispatcher.h"
#include "NfwParsedNmeaDataDispatcher.h"
#include "NfwParsedPubxDataDispatcher.h"
#include "NfwParsedRmcDataDispatcher.h"
#include "NfwParsedVtgDataDispatcher.h"
#include "NfwParsedZdaDataDispatcher.h"
#include "NfwThreadMsgProfilerManager.h"
#include "PlatformSeams.h"
#include "SharedThread.h"

namespace {

using Notes = std::vector<std::string>;

class RawListener : public nfw::NmeaDataListener {
 public:
  RawListener(std::string nName, Notes& nNotes) : mName(std::move(nName)), mNotes(nNotes) {}
  void onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) override {
    mNotes.push_back(mName + ":" + std::string(reinterpret_cast<const char*>(npData), nSize));
    if (mOnCall) mOnCall();
  }
  std::function<void()> mOnCall;

 private:
  const std::string mName;
  Notes& mNotes;
};

class DispatcherTest : public testing::Test {
 protected:
  void dispatch(const std::string& nText) {
    mDispatcher.dispatch(reinterpret_cast<const unsigned char*>(nText.data()), static_cast<unsigned int>(nText.size()));
    mThread.settle();
  }

  seams::CapturedLog mLog;
  Notes mNotes;
  nfwtest::SharedThread mThread{nfw::GnssDataDispatcher::getMaxMsgDataSize()};
  nfw::NmeaDataDispatcher mDispatcher{2, mThread.get()};
  RawListener mA{"A", mNotes}, mB{"B", mNotes}, mC{"C", mNotes};
};

TEST_F(DispatcherTest, CallsEachListenerOnceLastAttachedFirst) {
  for (RawListener* lpListener : {&mA, &mB, &mA, &mC}) EXPECT_TRUE(mDispatcher.attachListener(lpListener));
  EXPECT_TRUE(mDispatcher.attachListener(nullptr));
  EXPECT_TRUE(mDispatcher.detachListener(nullptr));
  dispatch("x");
  EXPECT_EQ((Notes{"C:x", "B:x", "A:x"}), mNotes);
  EXPECT_TRUE(mDispatcher.detachListener(&mB));
  EXPECT_TRUE(mDispatcher.detachListener(&mB));
  mNotes.clear();
  dispatch("y");
  EXPECT_EQ((Notes{"C:y", "A:y"}), mNotes);
}

TEST_F(DispatcherTest, DeliversUpTo256BytesAndDropsMoreSilently) {
  mDispatcher.attachListener(&mA);
  mDispatcher.dispatch(nullptr, 5);
  dispatch(std::string(257, 'x'));
  EXPECT_TRUE(mNotes.empty());
  dispatch(std::string(256, 'x'));
  dispatch("");
  EXPECT_EQ((Notes{"A:" + std::string(256, 'x'), "A:"}), mNotes);
  EXPECT_TRUE(mLog.texts().empty());
}

TEST_F(DispatcherTest, ListenersComeAndGoInsideACall) {
  const struct {
    const char* mpName;
    std::function<void()> mOnC;
    Notes mFirst, mSecond;
  } CASES[] = {
      {"itself", [this] { mDispatcher.detachListener(&mC); }, {"C:1", "B:1", "A:1"}, {"B:2", "A:2"}},
      {"the next", [this] { mDispatcher.detachListener(&mB); }, {"C:1", "A:1"}, {"C:2", "A:2"}},
      {"all",
       [this] {
         for (RawListener* lpListener : {&mA, &mB, &mC}) mDispatcher.detachListener(lpListener);
       },
       {"C:1"},
       {}},
      {"itself and again",
       [this] {
         mDispatcher.detachListener(&mC);
         mDispatcher.attachListener(&mC);
       },
       {"C:1", "B:1", "A:1"},
       {"C:2", "B:2", "A:2"}},
  };
  for (const auto& lCase : CASES) {
    mNotes.clear();
    mC.mOnCall = nullptr;
    for (RawListener* lpListener : {&mC, &mB, &mA}) mDispatcher.detachListener(lpListener);
    for (RawListener* lpListener : {&mA, &mB, &mC}) mDispatcher.attachListener(lpListener);
    mC.mOnCall = lCase.mOnC;
    dispatch("1");
    EXPECT_EQ(lCase.mFirst, mNotes) << lCase.mpName;
    mNotes.clear();
    mC.mOnCall = nullptr;
    dispatch("2");
    EXPECT_EQ(lCase.mSecond, mNotes) << lCase.mpName;
  }
}

/// The five failure lines of a dispatcher whose thread does not run.
template <class Dispatcher, class Record, class Listener>
void expectFailureLines(const char* npKind, nfwtest::SharedThread& nThread, Listener* npListener) {
  seams::CapturedLog lLog;
  Dispatcher lDispatcher(1, nThread.get());
  EXPECT_FALSE(lDispatcher.attachListener(npListener));
  EXPECT_FALSE(lDispatcher.detachListener(npListener));
  lDispatcher.dispatch(Record());
  nfwtest::RawMsg lNoId;
  nfwtest::RawMsg lUnknown(static_cast<int>(0x80000C05u));
  lDispatcher.receiveMsg(1, lNoId);
  lDispatcher.receiveMsg(1, lUnknown);
  const std::string lClass = std::string("nfw::Parsed") + npKind + "DataDispatcher::";
  EXPECT_EQ((Notes{lClass + "attachListener(): Can't send thread", lClass + "detachListener(): Can't send thread",
                   lClass + "dispatch(): Can't send thread", lClass + "receiveMsg(): Can't get MsgId",
                   lClass + "receiveMsg(): UnknownMsg: MsgId=-2147480571"}),
            lLog.texts());
}

/// Receives every kind and notes it.
class AnyListener : public nfw::ParsedNmeaDataListener,
                    public nfw::ParsedGgaDataListener,
                    public nfw::ParsedGllDataListener,
                    public nfw::ParsedGsaDataListener,
                    public nfw::ParsedGsvDataListener,
                    public nfw::ParsedRmcDataListener,
                    public nfw::ParsedVtgDataListener,
                    public nfw::ParsedZdaDataListener,
                    public nfw::ParsedPubxDataListener {
 public:
  explicit AnyListener(Notes& nNotes) : mNotes(nNotes) {}
  void onNotifyParsedNmeaData(const nfw::NmeaSentence& nRecord) override {
    note("Nmea", nRecord.gsv.satellite[127].azimuth);
  }
  void onNotifyParsedGgaData(const nfw::GgaSentence& nRecord) override { note("Gga", nRecord.dgpsStationId); }
  void onNotifyParsedGllData(const nfw::GllSentence& nRecord) override { note("Gll", nRecord.utcTime.second); }
  void onNotifyParsedGsaData(const nfw::GsaSentence& nRecord) override { note("Gsa", nRecord.satelliteId[35]); }
  void onNotifyParsedGsvData(const nfw::GsvSentence& nRecord) override { note("Gsv", nRecord.satellite[127].azimuth); }
  void onNotifyParsedRmcData(const nfw::RmcSentence& nRecord) override { note("Rmc", nRecord.date.year); }
  void onNotifyParsedVtgData(const nfw::VtgSentence& nRecord) override { note("Vtg", unsigned(nRecord.speedKmh)); }
  void onNotifyParsedZdaData(const nfw::ZdaSentence& nRecord) override { note("Zda", nRecord.localZoneMinute); }
  void onNotifyParsedPubxData(const nfw::PubxSentence& nRecord) override { note("Pubx", nRecord.drMode ? 1 : 0); }

 private:
  void note(const char* npKind, unsigned int nValue) { mNotes.push_back(npKind + std::to_string(nValue)); }
  Notes& mNotes;
};

TEST_F(DispatcherTest, EveryKindNamesItselfInItsFailures) {
  AnyListener lAny(mNotes);
  mThread.stop();
  mDispatcher.attachListener(&mA);
  mDispatcher.detachListener(&mA);
  mDispatcher.dispatch(nullptr, 0);
  EXPECT_EQ((Notes{"nfw::NmeaDataDispatcher::attachListener(): Can't send thread",
                   "nfw::NmeaDataDispatcher::detachListener(): Can't send thread",
                   "nfw::NmeaDataDispatcher::dispatch(): Can't send thread"}),
            mLog.texts());
  expectFailureLines<nfw::ParsedNmeaDataDispatcher, nfw::NmeaSentence>("Nmea", mThread, &lAny);
  expectFailureLines<nfw::ParsedGgaDataDispatcher, nfw::GgaSentence>("Gga", mThread, &lAny);
  expectFailureLines<nfw::ParsedGllDataDispatcher, nfw::GllSentence>("Gll", mThread, &lAny);
  expectFailureLines<nfw::ParsedGsaDataDispatcher, nfw::GsaSentence>("Gsa", mThread, &lAny);
  expectFailureLines<nfw::ParsedGsvDataDispatcher, nfw::GsvSentence>("Gsv", mThread, &lAny);
  expectFailureLines<nfw::ParsedRmcDataDispatcher, nfw::RmcSentence>("Rmc", mThread, &lAny);
  expectFailureLines<nfw::ParsedVtgDataDispatcher, nfw::VtgSentence>("Vtg", mThread, &lAny);
  expectFailureLines<nfw::ParsedZdaDataDispatcher, nfw::ZdaSentence>("Zda", mThread, &lAny);
  expectFailureLines<nfw::ParsedPubxDataDispatcher, nfw::PubxSentence>("Pubx", mThread, &lAny);
  mThread.start();
}

TEST_F(DispatcherTest, GnssRecordsReachTheListenersOfTheirOwnKindWhole) {
  nfw::GnssDataDispatcher lGnss(mThread.get(), 0, 1, 1, 1, 1, 1, 1, 1, 1, 1);
  AnyListener lAny(mNotes);
  EXPECT_TRUE(lGnss.attachParsedGgaDataListener(&lAny) && lGnss.attachParsedGllDataListener(&lAny) &&
              lGnss.attachParsedGsaDataListener(&lAny) && lGnss.attachParsedGsvDataListener(&lAny) &&
              lGnss.attachParsedVtgDataListener(&lAny) && lGnss.attachParsedZdaDataListener(&lAny) &&
              lGnss.attachParsedRmcDataListener(&lAny) && lGnss.attachParsedPubxDataListener(&lAny) &&
              lGnss.attachParsedNmeaDataListener(&lAny) && lGnss.attachNmeaDataListener(&mA));
  nfw::NmeaSentence lAll;
  lAll.gsv.satellite[127].azimuth = 359;
  lAll.gga.dgpsStationId = 1023;
  lAll.gll.utcTime.second = 59;
  lAll.gsa.satelliteId[35] = 300;
  lAll.rmc.date.year = 2026;
  lAll.vtg.speedKmh = 98.5;
  nfw::ZdaSentence lZda;
  lZda.localZoneMinute = 30;
  nfw::PubxSentence lPubx;
  lPubx.drMode = true;

  lGnss.dispatch(lAll);
  lGnss.dispatch(lAll.gga);
  lGnss.dispatch(lAll.gll);
  lGnss.dispatch(lAll.gsa);
  lGnss.dispatch(lAll.gsv);
  lGnss.dispatch(lAll.rmc);
  lGnss.dispatch(lAll.vtg);
  lGnss.dispatch(lZda);
  lGnss.dispatch(lPubx);
  lGnss.dispatch(reinterpret_cast<const unsigned char*>("$GP"), 3);
  mThread.settle();
  EXPECT_EQ((Notes{"Nmea359", "Gga1023", "Gll59", "Gsa300", "Gsv359", "Rmc2026", "Vtg98", "Zda30", "Pubx1", "A:$GP"}),
            mNotes);

  EXPECT_TRUE(lGnss.detachParsedNmeaSentenceListener(&lAny) && lGnss.detachParsedGgaDataListener(&lAny));
  mNotes.clear();
  lGnss.dispatch(lAll);
  lGnss.dispatch(lAll.gga);
  lGnss.dispatch(lAll.vtg);
  mThread.settle();
  EXPECT_EQ(Notes{"Vtg98"}, mNotes);
}

TEST(ThreadMsgProfileTest, SizesAreThoseOfTheThirtyTwoBitCount) {
  EXPECT_EQ(2074U, nfw::GnssDataDispatcher::getMaxMsgDataSize());
  nfw::ThreadMsgProfilerManager::profiling(99);
  EXPECT_EQ(0U, nfw::ThreadMsgProfilerManager::getMaxMsgDataSize(99));
}

}  // namespace
