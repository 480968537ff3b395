#include <cstring>

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
#include "Positioning.h"
#include "RecordFields.h"

namespace {

using namespace nfwtest;

class DispatcherTest : public testing::Test {
 protected:
  /// What came of it.
  Strings dispatch(const std::string& nText) {
    mDispatcher.dispatch(reinterpret_cast<const unsigned char*>(nText.data()), static_cast<unsigned int>(nText.size()));
    mThread.settle();
    return mNotes.take();
  }

  seams::CapturedLog mLog;
  Notes mNotes;
  SharedThread mThread{nfw::GnssDataDispatcher::getMaxMsgDataSize()};
  nfw::NmeaDataDispatcher mDispatcher{2, mThread.get()};
  AnyListener mA{mNotes, "A:"}, mB{mNotes, "B:"}, mC{mNotes, "C:"};
};

TEST_F(DispatcherTest, DeliversUpTo256BytesAndDropsMoreSilently) {
  mDispatcher.attachListener(&mA);
  mDispatcher.dispatch(nullptr, 5);
  EXPECT_EQ(Strings(), dispatch(std::string(257, 'x')));
  EXPECT_EQ(Strings{"A:" + std::string(256, 'x')}, dispatch(std::string(256, 'x')));
  EXPECT_EQ(Strings{"A:"}, dispatch(""));
  EXPECT_EQ(Strings(), mLog.texts());
}

TEST_F(DispatcherTest, ListenersComeAndGoInsideACall) {
  const struct {
    const char* mpName;
    std::vector<AnyListener*> mLeaving, mComing;
    Strings mFirst, mSecond;
  } CASES[] = {{"itself", {&mC}, {}, {"C:1", "B:1", "A:1"}, {"B:2", "A:2"}},
               {"the next", {&mB}, {}, {"C:1", "A:1"}, {"C:2", "A:2"}},
               {"all", {&mA, &mB, &mC}, {}, {"C:1"}, {}},
               {"itself and again", {&mC}, {&mC}, {"C:1", "B:1", "A:1"}, {"C:2", "B:2", "A:2"}},
               {"the next and again", {&mB}, {&mB}, {"C:1", "A:1"}, {"B:2", "C:2", "A:2"}}};
  for (const auto& lCase : CASES) {
    for (AnyListener* lpListener : {&mC, &mB, &mA}) EXPECT_TRUE(mDispatcher.detachListener(lpListener));
    for (AnyListener* lpListener : {&mA, &mB, &mA, &mC}) EXPECT_TRUE(mDispatcher.attachListener(lpListener));
    mC.mOnCall = [&] {
      for (AnyListener* lpListener : lCase.mLeaving) EXPECT_TRUE(mDispatcher.detachListener(lpListener));
      for (AnyListener* lpListener : lCase.mComing) EXPECT_TRUE(mDispatcher.attachListener(lpListener));
    };
    EXPECT_EQ(lCase.mFirst, dispatch("1")) << lCase.mpName;
    mC.mOnCall = [] {};
    EXPECT_EQ(lCase.mSecond, dispatch("2")) << lCase.mpName;
  }
}

/// The failure lines of a dispatcher whose thread does not run.
template <class Dispatcher, class Listener, class... Record>
void expectFailureLines(const std::string& nClass, SharedThread& nThread, Listener* npListener, Record... nRecord) {
  seams::CapturedLog lLog;
  Dispatcher lDispatcher(1, nThread.get());
  EXPECT_TRUE(lDispatcher.attachListener(nullptr) && lDispatcher.detachListener(nullptr));
  EXPECT_FALSE(lDispatcher.attachListener(npListener) || lDispatcher.detachListener(npListener));
  lDispatcher.dispatch(nRecord...);
  EXPECT_EQ((Strings{nClass + "::attachListener(): Can't send thread", nClass + "::detachListener(): Can't send thread",
                     nClass + "::dispatch(): Can't send thread"}),
            errors(lLog));
  expectRefusals(lLog, lDispatcher, nClass);
}

TEST_F(DispatcherTest, EveryKindNamesItselfInItsFailures) {
  GnssListener lAny(mNotes);
  mThread.stop();
  expectFailureLines<nfw::NmeaDataDispatcher>("nfw::NmeaDataDispatcher", mThread, &lAny, nullptr, 0U);
  const std::string lClass = "nfw::Parsed", lEnd = "DataDispatcher";
  expectFailureLines<nfw::ParsedNmeaDataDispatcher>(lClass + "Nmea" + lEnd, mThread, &lAny, nfw::NmeaSentence());
  expectFailureLines<nfw::ParsedGgaDataDispatcher>(lClass + "Gga" + lEnd, mThread, &lAny, nfw::GgaSentence());
  expectFailureLines<nfw::ParsedGllDataDispatcher>(lClass + "Gll" + lEnd, mThread, &lAny, nfw::GllSentence());
  expectFailureLines<nfw::ParsedGsaDataDispatcher>(lClass + "Gsa" + lEnd, mThread, &lAny, nfw::GsaSentence());
  expectFailureLines<nfw::ParsedGsvDataDispatcher>(lClass + "Gsv" + lEnd, mThread, &lAny, nfw::GsvSentence());
  expectFailureLines<nfw::ParsedRmcDataDispatcher>(lClass + "Rmc" + lEnd, mThread, &lAny, nfw::RmcSentence());
  expectFailureLines<nfw::ParsedVtgDataDispatcher>(lClass + "Vtg" + lEnd, mThread, &lAny, nfw::VtgSentence());
  expectFailureLines<nfw::ParsedZdaDataDispatcher>(lClass + "Zda" + lEnd, mThread, &lAny, nfw::ZdaSentence());
  expectFailureLines<nfw::ParsedPubxDataDispatcher>(lClass + "Pubx" + lEnd, mThread, &lAny, nfw::PubxSentence());
  mThread.start();
}

TEST_F(DispatcherTest, GnssRecordsReachTheListenersOfTheirOwnKindWhole) {
  nfw::GnssDataDispatcher lGnss(mThread.get(), 0, 1, 1, 1, 1, 1, 1, 1, 1, 1);
  GnssListener lAny(mNotes);
  nfw::NmeaSentence lAll;
  unsigned char lNext = 1;
  const auto lFill = [&lNext](auto& nField) {  // any bytes will do but for flags
    std::memset(&nField, std::is_same_v<decltype(nField), bool&> ? 1 : lNext++ % 100, sizeof(nField));
    return true;
  };
  nfw::ZdaSentence lZda;
  nfw::PubxSentence lPubx;
  eachField(lAll, lFill), eachField(lZda, lFill), eachField(lPubx, lFill);
  EXPECT_TRUE(lAny.attachTo(lGnss));
  lGnss.dispatch(reinterpret_cast<const unsigned char*>("$GP"), 3);
  lGnss.dispatch(lAll.gga), lGnss.dispatch(lAll.gll), lGnss.dispatch(lAll.gsa), lGnss.dispatch(lAll.gsv);
  lGnss.dispatch(lAll.vtg), lGnss.dispatch(lZda), lGnss.dispatch(lAll.rmc), lGnss.dispatch(lPubx);
  lGnss.dispatch(lAll);
  mThread.settle();
  EXPECT_EQ((Strings{"$GP", text(lAll.gga), text(lAll.gll), text(lAll.gsa), text(lAll.gsv), text(lAll.vtg), text(lZda),
                     text(lAll.rmc), text(lPubx), text(lAll)}),
            mNotes.all());
  EXPECT_TRUE(lGnss.detachNmeaDataListener(&lAny) && lGnss.detachParsedGgaDataListener(&lAny) &&
              lGnss.detachParsedGllDataListener(&lAny) && lGnss.detachParsedGsaDataListener(&lAny) &&
              lGnss.detachParsedGsvDataListener(&lAny) && lGnss.detachParsedVtgDataListener(&lAny) &&
              lGnss.detachParsedZdaDataListener(&lAny) && lGnss.detachParsedRmcDataListener(&lAny) &&
              lGnss.detachParsedPubxDataListener(&lAny) && lGnss.detachParsedNmeaSentenceListener(&lAny));
}

TEST_F(DispatcherTest, ASatelliteIsHeardWhicheverOfItsFieldsIsSet) {
  nfw::GnssDataDispatcher lGnss(mThread.get(), 0, 1, 1, 1, 1, 1, 1, 1, 1, 1);
  GnssListener lAny(mNotes);
  EXPECT_TRUE(lAny.attachTo(lGnss));
  for (int i = 0; i < 6; ++i) {
    nfw::NmeaSentence lAll;
    int lField = 0;
    eachField(lAll.gsv.satellite[40], [&](auto& nField) {
      if (lField++ == i) nField = 1;
      return true;
    });
    lGnss.dispatch(lAll.gsv), lGnss.dispatch(lAll);
    mThread.settle();
    EXPECT_EQ((Strings{text(lAll.gsv), text(lAll)}), mNotes.all()) << i;
    mNotes.clear();
  }
}

TEST(ThreadMsgProfileTest, SizesAreThoseOfTheThirtyTwoBitCount) {
  EXPECT_EQ(2074U, nfw::GnssDataDispatcher::getMaxMsgDataSize());
  nfw::ThreadMsgProfilerManager::profiling(99);
  EXPECT_EQ(0U, nfw::ThreadMsgProfilerManager::getMaxMsgDataSize(99));
}

}  // namespace
