#include <gtest/gtest.h>

#include "NfwAppLog.h"
#include "NfwConfig.h"
#include "NfwDeadReckoning.h"
#include "NfwGnss.h"
#include "NfwMountManager.h"
#include "NfwProcessMsg.h"
#include "PlatformSeams.h"

namespace {

/// Every static of the services, in the order of the configuration's fields.
std::vector<unsigned int> storedValues() {
  return {nfw::ProcessMsg::mMaxListenerNum,
          nfw::ProcessMsg::mMaxHookListenerNum,
          nfw::MountManager::mMaxListenerNum,
          nfw::Logger::mMaxRecordEventListenerNum,
          nfw::Logger::mMaxPlayerNum,
          nfw::Logger::mMaxLogTypeNum,
          nfw::Logger::mMaxLogFieldSize,
          nfw::Logger::mLogBufferSize,
          nfw::Logger::mMaxLogFileSize,
          nfw::Gnss::mMaxParsedGgaDataListenerNum,
          nfw::Gnss::mMaxParsedGllDataListenerNum,
          nfw::Gnss::mMaxParsedGsaDataListenerNum,
          nfw::Gnss::mMaxParsedGsvDataListenerNum,
          nfw::Gnss::mMaxParsedVtgDataListenerNum,
          nfw::Gnss::mMaxParsedZdaDataListenerNum,
          nfw::Gnss::mMaxParsedRmcDataListenerNum,
          nfw::Gnss::mMaxParsedPubxDataListenerNum,
          nfw::Gnss::mMaxParsedNmeaDataListenerNum,
          nfw::Gnss::mMaxNmeaDataListenerNum,
          nfw::DeadReckoning::mMaxDeadReckoningNmeaDataListenerNum,
          static_cast<unsigned int>(nfw::Gnss::mInitializeLoggerId),
          static_cast<unsigned int>(nfw::DeadReckoning::mInitializeLoggerId),
          static_cast<unsigned int>(nfw::Gnss::mInitializeGpsSdkGeodeticSystemType)};
}

// Before any test has set one: all are constants until then.
const std::vector<unsigned int> INITIAL = storedValues();

// The library is initialised once in a process: one test tells the whole story.
TEST(ConfigTest, IsTakenOnceAndCompletelyAlsoWithoutMessageNames) {
  static bool lIsDone = false;
  if (lIsDone) GTEST_SKIP() << "a process is configured once";
  lIsDone = true;
  std::vector<unsigned int> lInitial(20, 0);
  lInitial.insert(lInitial.end(), {2147483647U, 2147483647U, 0U});
  ASSERT_EQ(lInitial, INITIAL);

  const nfw::Config lConfig{1, 2, 3, 4, 5, 6, 7, 8, 9, nullptr, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24};
  seams::CapturedLog lLog;
  EXPECT_FALSE(nfw::initializeNaviAppFramework(lConfig));
  ASSERT_EQ(1U, lLog.lines().size());
  EXPECT_EQ(nfw::LOG_TYPE_NFW, lLog.lines()[0].mType);
  EXPECT_EQ(nfw::LOG_LEVEL_ERROR, lLog.lines()[0].mLevel);
  EXPECT_EQ("initializeNaviAppFramework(): MsgLogInfoMap is null", lLog.lines()[0].mText);
  const std::vector<unsigned int> lStored = {1,  2,  3,  4,  5,  6,  7,  8,  9,  11, 12, 13,
                                             14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24};
  EXPECT_EQ(lStored, storedValues());
  EXPECT_EQ(nullptr, nfw::ProcessMsg::mpMsgLogInfoMap);
  EXPECT_EQ(4, nfw::getFilterLevel(nfw::LOG_TYPE_NFW));

  nfw::finalizeNaviAppFramework();
  const nfw::MsgLogInfoMap lMap(1, true);
  nfw::Config lSecond;
  lSecond.pMsgLogInfoMap = &lMap;
  EXPECT_FALSE(nfw::initializeNaviAppFramework(lSecond));
  EXPECT_EQ(lStored, storedValues());
  EXPECT_EQ(1U, lLog.lines().size());

  nfw::ProcessMsg::initializeMsgLogInfo(lMap);
  EXPECT_EQ(&lMap, nfw::ProcessMsg::mpMsgLogInfoMap);
}

}  // namespace
