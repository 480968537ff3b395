#include <gtest/gtest.h>

#include "LogRecords.h"
#include "NfwAppLog.h"
#include "NfwConfig.h"
#include "NfwDeadReckoning.h"
#include "NfwGnss.h"
#include "NfwMountManager.h"
#include "NfwProcessMsg.h"
#include "PlatformSeams.h"
#include "TempDir.h"

namespace {

/// Every static of the services, in the order of the configuration's fields.
std::vector<unsigned int> storedValues() {
  using nfw::Gnss;
  using nfw::Logger;
  return {nfw::ProcessMsg::mMaxListenerNum,
          nfw::ProcessMsg::mMaxHookListenerNum,
          nfw::MountManager::mMaxListenerNum,
          Logger::mMaxRecordEventListenerNum,
          Logger::mMaxPlayerNum,
          Logger::mMaxLogTypeNum,
          Logger::mMaxLogFieldSize,
          Logger::mLogBufferSize,
          Logger::mMaxLogFileSize,
          Gnss::mMaxParsedGgaDataListenerNum,
          Gnss::mMaxParsedGllDataListenerNum,
          Gnss::mMaxParsedGsaDataListenerNum,
          Gnss::mMaxParsedGsvDataListenerNum,
          Gnss::mMaxParsedVtgDataListenerNum,
          Gnss::mMaxParsedZdaDataListenerNum,
          Gnss::mMaxParsedRmcDataListenerNum,
          Gnss::mMaxParsedPubxDataListenerNum,
          Gnss::mMaxParsedNmeaDataListenerNum,
          Gnss::mMaxNmeaDataListenerNum,
          nfw::DeadReckoning::mMaxDeadReckoningNmeaDataListenerNum,
          static_cast<unsigned int>(Gnss::mInitializeLoggerId),
          static_cast<unsigned int>(nfw::DeadReckoning::mInitializeLoggerId),
          static_cast<unsigned int>(Gnss::mInitializeGpsSdkGeodeticSystemType)};
}

// Before any test has set one: all are constants until then.
const std::vector<unsigned int> INITIAL = storedValues();

std::vector<unsigned int> countedFrom(unsigned int nFirst) {
  std::vector<unsigned int> lValues;
  for (unsigned int i = 0; i < 24; ++i) {
    if (i != 9) lValues.push_back(nFirst + i);  // the map's place
  }
  return lValues;
}

/// Initialises as a process of its own would, with every value from 1001 on.
void initialize(const nfw::MsgLogInfoMap* npMap) {
  const nfw::Config lConfig{1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, npMap, 1011, 1012,
                            1013, 1014, 1015, 1016, 1017, 1018, 1019, 1020, 1021, 1022,  1023, 1024};
  const seams::CapturedLog lLog;
  EXPECT_EQ(npMap != nullptr, nfw::initializeNaviAppFramework(lConfig));
  EXPECT_EQ(npMap != nullptr ? 0U : 1U, lLog.lines().size());
  for (const auto& lLine : lLog.lines()) {
    EXPECT_EQ(nfw::LOG_TYPE_NFW, lLine.mType);
    EXPECT_EQ(nfw::LOG_LEVEL_ERROR, lLine.mLevel);
    EXPECT_EQ("initializeNaviAppFramework(): MsgLogInfoMap is null", lLine.mText);
  }
  for (const auto& lAgain : {lConfig, nfw::Config()}) {
    EXPECT_EQ(countedFrom(1001), storedValues());
    EXPECT_EQ(npMap, nfw::ProcessMsg::mpMsgLogInfoMap);
    EXPECT_EQ(4, nfw::getFilterLevel(nfw::LOG_TYPE_NFW));
    nfw::finalizeNaviAppFramework();
    EXPECT_FALSE(nfw::initializeNaviAppFramework(lAgain)) << "a process is configured once";
  }
  const nfwtest::TempDir lDir;
  EXPECT_TRUE(nfw::Logger::get()->initialize() && nfw::Logger::get()->startRecord(lDir.path().c_str(), "log", nullptr));
  APPLOG(nfw::LOG_TYPE_NFW, nfw::LOG_LEVEL_DETAIL, "line");
  nfw::Logger::destroy();
  EXPECT_EQ("<NAVI>NFW    DTL: line", nfwtest::parseLogRecords(nfwtest::readFile(lDir.files().at(0))).at(0).mData);
}

TEST(ConfigTest, IsTakenOnceAndCompletelyWithAndWithoutMessageNames) {
  std::vector<unsigned int> lInitial(20, 0);
  lInitial.insert(lInitial.end(), {2147483647U, 2147483647U, 0U});
  EXPECT_EQ(lInitial, INITIAL);
#ifdef __arm__
  initialize(nullptr);  // the emulator begins no other process
#else
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // each in a process from its beginning: it starts threads
  const nfw::MsgLogInfoMap lMap(1, true);
  for (const nfw::MsgLogInfoMap* lpMap : {&lMap, static_cast<const nfw::MsgLogInfoMap*>(nullptr)}) {
    EXPECT_EXIT((initialize(lpMap), _exit(HasFailure() ? 1 : 0)), testing::ExitedWithCode(0), "");
  }
#endif
}

}  // namespace
