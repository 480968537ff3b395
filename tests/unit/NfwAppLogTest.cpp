#include <gtest/gtest.h>

#include <functional>

#include "LogRecords.h"
#include "NfwAppLog.h"
#include "NfwLogger.h"
#include "PlatformSeams.h"
#include "SysLogServiceHost.h"
#include "TempDir.h"

namespace {

const int TYPE = 4711;
using Strings = std::vector<std::string>;

class AppLogTest : public testing::Test {
 protected:
  AppLogTest() {
    nfw::finalizeAppLog();
    nfw::Logger::initializeMaxLogFieldSize(1023);
    nfw::Logger::initializeLogBufferSize(100000);
    nfw::Logger::initializeMaxLogFileSize(1000000);
    EXPECT_TRUE(nfw::Logger::get()->initialize());
    EXPECT_TRUE(nfw::Logger::get()->startRecord(mDir.path().c_str(), "log", nullptr));
    mLog.clear();
  }
  ~AppLogTest() override {
    nfw::Logger::destroy();
    nfw::finalizeAppLog();
  }
  /// What has gone since the last call: "id line" into the recording, then "type level text" to the service.
  Strings written() {
    Strings lAll;
    nfw::Logger::get()->flush();
    const auto lRecords = nfwtest::parseLogRecords(nfwtest::readFile(mDir.files().at(0)));
    for (; mSeen < lRecords.size(); ++mSeen) {
      lAll.push_back(std::to_string(lRecords[mSeen].mId) + " " + lRecords[mSeen].mData);
    }
    for (const auto& l : mLog.lines()) {
      lAll.push_back(std::to_string(l.mType) + " " + std::to_string(l.mLevel) + " " + l.mText);
    }
    mLog.clear();
    return lAll;
  }

  const nfwtest::TempDir mDir;
  seams::CapturedLog mLog;
  size_t mSeen = 0;
};

TEST_F(AppLogTest, ALineThatPassesTheFilterIsRecordedAndGoesToTheService) {
  const std::string TAGS[] = {"", "ERR: ", "WRN: ", "INF: ", "DTL: ", "DBG: "};
  // The filter, the level of the line, and the level that is written: 0 does not pass.
  const int CASES[][3] = {{5, 0, 0}, {0, 1, 0}, {1, 1, 1}, {5, 2, 2},  {3, 3, 3}, {3, 4, 0},
                          {4, 4, 4}, {4, 9, 0}, {5, 9, 5}, {5, -1, 5}, {9, 5, 5}, {-1, 5, 5}};
  for (const auto& [lFilter, lLevel, lWritten] : CASES) {
    ASSERT_TRUE(nfw::registerLogType(TYPE, "name", lFilter));
    APPLOG(TYPE, lLevel, "%s=%d", "x", 1);
    const Strings lExpected{"255 name" + TAGS[lWritten] + "x=1", "4711 " + std::to_string(lWritten) + " x=1"};
    EXPECT_EQ(lWritten == 0 ? Strings() : lExpected, written()) << lFilter << ' ' << lLevel;
  }
}

TEST_F(AppLogTest, EachMacroRecordsUnderItsIdAndAnUnregisteredTypeGoesAsMinusOne) {
  const char* const lpNone = nullptr;
  APPLOG(TYPE, 1, lpNone);
  LOGGERLOG(255, lpNone);
  EXPECT_EQ(Strings(), written());
  APPLOG(TYPE, 5, "dropped");
  APPLOG(TYPE, 4, "kept");
  APPLOG1(TYPE, 1, 7, "%s", "its own");
  LOGGERLOG(9, "%d%%", 100);
  EXPECT_EQ((Strings{"255 DTL: kept", "7 ERR: its own", "9 100%", "-1 4 kept", "-1 1 its own"}), written());
}

TEST_F(AppLogTest, ALineIsRecordedBeforeTheServiceHasIt) {
  struct Sink : syslogservice::Sink {
    void writeLine(int, int, const char*) override { mRecorded = nfw::Logger::get()->getRecordCounts().mRecorded; }
    unsigned long long mRecorded = 0;
  } lSink;
  syslogservice::Sink* const lpBefore = syslogservice::setSink(&lSink);
  APPLOG(TYPE, 1, "line");
  syslogservice::setSink(lpBefore);
  EXPECT_EQ(1U, lSink.mRecorded);
}

TEST_F(AppLogTest, LongTextIsCutSoThatTheWholeLineHas1023Characters) {
  ASSERT_TRUE(nfw::registerLogType(TYPE, "<NAVI>NFW    ", 4));
  const auto lCut = [](size_t nLength, size_t nMost) {
    return nLength <= nMost ? std::string(nLength, 'a') : std::string(nMost - 3, 'a') + "...";
  };
  const std::string lPrefix = "<NAVI>NFW    ERR: ";
  for (const size_t lLength : {1004U, 1005U, 1006U, 1022U, 1023U, 1024U, 2000U}) {
    const std::string lText(lLength, 'a'), lWritten = lCut(lLength, 1005);
    APPLOG(TYPE, 1, "%s", lText.c_str());
    LOGGERLOG(1, "%s", lText.c_str());
    EXPECT_EQ((Strings{"255 " + lPrefix + lWritten, "1 " + lCut(lLength, 1023), "4711 1 " + lWritten}), written());
  }
}

// A thread keeps what it dropped last: every change of the registry has to reach it.
TEST_F(AppLogTest, ADroppedLineIsWrittenOnceItsFilterLetsItPass) {
  const std::function<void()> WAYS[] = {[] { nfw::setFilterLevel(TYPE, 4); }, [] { nfw::setAllFilterLevel(4); },
                                        [] { nfw::registerLogType(TYPE, "", 4); }, [] { nfw::finalizeAppLog(); }};
  for (const auto& lWay : WAYS) {
    ASSERT_TRUE(nfw::registerLogType(TYPE, "", 1));
    for (int i = 0; i < 2; ++i) APPLOG(TYPE, 4, "line");
    APPLOG(TYPE, 1, "line");
    APPLOG(TYPE + 1, 4, "line");
    EXPECT_EQ(4U, written().size()) << "of the other level and the other type";
    APPLOG(TYPE, 4, "line");
    lWay();
    APPLOG(TYPE, 4, "line");
    EXPECT_EQ(2U, written().size());
  }
}

TEST_F(AppLogTest, FilterLevelsAreClampedAndToldToTheServiceAndOnlyRegisteredTypesChange) {
  nfw::finalizeAppLog();
  nfw::setAllFilterLevel(1);  // without any type
  nfw::setFilterLevel(TYPE, 3);
  EXPECT_EQ(6, nfw::getFilterLevel(TYPE));
  ASSERT_TRUE(nfw::registerLogType(TYPE, "a", 9));
  ASSERT_TRUE(nfw::registerLogType(TYPE + 1, "b", 2));
  EXPECT_EQ(5, nfw::getFilterLevel(TYPE));
  for (const auto& [lLevel, lStored] : {std::pair{1, 1}, {-1, 5}, {9, 5}, {0, 0}}) {
    nfw::setFilterLevel(TYPE, lLevel);
    EXPECT_EQ(lStored, nfw::getFilterLevel(TYPE));
    EXPECT_EQ(lLevel, syslogservice::registeredLevel(TYPE));
    EXPECT_EQ(2, nfw::getFilterLevel(TYPE + 1));
  }
  nfw::setAllFilterLevel(3);
  for (const int lType : {TYPE, TYPE + 1}) {
    EXPECT_EQ(3, nfw::getFilterLevel(lType));
    EXPECT_EQ(3, syslogservice::registeredLevel(lType));
  }
  nfw::setAllFilterLevel(-1);
  EXPECT_EQ(5, nfw::getFilterLevel(TYPE));
}

TEST_F(AppLogTest, RegistrationFailsOnLongOrMissingNamesAndWhenTheServiceRefuses) {
  EXPECT_TRUE(nfw::registerLogType(TYPE, std::string(31, 'n').c_str(), 1));
  EXPECT_FALSE(nfw::registerLogType(TYPE, std::string(32, 'n').c_str(), 2));
  EXPECT_FALSE(nfw::registerLogType(TYPE, nullptr, 2));
  {
    const seams::Failing lFailing(seams::LOG_TYPE);
    EXPECT_FALSE(nfw::registerLogType(TYPE, "n", 2));
  }
  EXPECT_EQ(1, nfw::getFilterLevel(TYPE));
  for (int i = 0; i < 200; ++i) ASSERT_TRUE(nfw::registerLogType(1000 - i, "n", i % 5)) << "more than its first room";
  for (int i = 0; i < 200; ++i) ASSERT_EQ(i % 5, nfw::getFilterLevel(1000 - i));
}

}  // namespace
