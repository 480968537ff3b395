#include <gtest/gtest.h>

#include <string>

#include "NfwAppLog.h"
#include "PlatformSeams.h"

namespace {

const int TYPE = 4711;

class AppLogTest : public testing::Test {
 protected:
  void SetUp() override { nfw::finalizeAppLog(); }
  void TearDown() override { nfw::finalizeAppLog(); }

  seams::CapturedLog mLog;
};

TEST_F(AppLogTest, LineIsWrittenWhenItsLevelPassesTheFilter) {
  const struct {
    int mFilter, mLevel;
    bool mIsWritten;
    int mWrittenLevel;
  } CASES[] = {
      {5, 0, false, 0}, {0, 1, false, 0}, {1, 1, true, 1}, {3, 4, false, 0}, {4, 9, false, 0},
      {5, 9, true, 5},  {5, -1, true, 5}, {9, 5, true, 5}, {-1, 5, true, 5},
  };
  for (const auto& lCase : CASES) {
    ASSERT_TRUE(nfw::registerLogType(TYPE, "name", lCase.mFilter));
    mLog.clear();
    APPLOG(TYPE, lCase.mLevel, "%s=%d", "x", 1);
    const auto lLines = mLog.lines();
    ASSERT_EQ(lCase.mIsWritten ? 1U : 0U, lLines.size()) << lCase.mFilter << ' ' << lCase.mLevel;
    if (!lCase.mIsWritten) continue;
    EXPECT_EQ(TYPE, lLines[0].mType);
    EXPECT_EQ(lCase.mWrittenLevel, lLines[0].mLevel);
    EXPECT_EQ("x=1", lLines[0].mText);
  }
}

TEST_F(AppLogTest, UnregisteredTypeIsFilteredAtFourAndPassedOnAsMinusOne) {
  APPLOG(TYPE, 5, "dropped");
  APPLOG1(TYPE, 4, 7, "kept");
  const auto lLines = mLog.lines();
  ASSERT_EQ(1U, lLines.size());
  EXPECT_EQ(-1, lLines[0].mType);
  EXPECT_EQ(4, lLines[0].mLevel);
}

TEST_F(AppLogTest, NullFormatAndLoggerOnlyTextsReachNoService) {
  const char* const lpNone = nullptr;
  APPLOG(TYPE, 1, lpNone);
  LOGGERLOG(255, lpNone);
  LOGGERLOG(255, "%s", "for the recording");
  EXPECT_TRUE(mLog.lines().empty());
}

TEST_F(AppLogTest, LongTextIsCutSoThatTheWholeLineHas1023Characters) {
  ASSERT_TRUE(nfw::registerLogType(TYPE, "<NAVI>NFW    ", 4));
  const unsigned int lSpace = 1024 - 18;  // name and tag stand before the text
  for (const unsigned int lLength : {lSpace - 1, lSpace, 2000U}) {
    mLog.clear();
    const std::string lText(lLength, 'a');
    APPLOG(TYPE, 1, "%s", lText.c_str());
    const std::string lWritten = mLog.texts().at(0);
    if (lLength < lSpace) {
      EXPECT_EQ(lText, lWritten);
    } else {
      EXPECT_EQ(std::string(lSpace - 4, 'a') + "...", lWritten);
    }
  }
}

TEST_F(AppLogTest, FilterLevelsAreClampedAndOnlyRegisteredTypesChange) {
  EXPECT_EQ(6, nfw::getFilterLevel(TYPE));
  nfw::setFilterLevel(TYPE, 3);
  EXPECT_EQ(6, nfw::getFilterLevel(TYPE));

  ASSERT_TRUE(nfw::registerLogType(TYPE, "a", 9));
  ASSERT_TRUE(nfw::registerLogType(TYPE + 1, "b", 2));
  EXPECT_EQ(5, nfw::getFilterLevel(TYPE));
  nfw::setFilterLevel(TYPE, 1);
  EXPECT_EQ(1, nfw::getFilterLevel(TYPE));
  nfw::setFilterLevel(TYPE, -1);
  EXPECT_EQ(5, nfw::getFilterLevel(TYPE));
  nfw::setAllFilterLevel(3);
  EXPECT_EQ(3, nfw::getFilterLevel(TYPE));
  EXPECT_EQ(3, nfw::getFilterLevel(TYPE + 1));
  nfw::finalizeAppLog();
  EXPECT_EQ(6, nfw::getFilterLevel(TYPE));
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
}

TEST_F(AppLogTest, RegistryGrowsBeyondItsFirstRoom) {
  for (int i = 0; i < 200; ++i) ASSERT_TRUE(nfw::registerLogType(1000 - i, "n", i % 5));
  for (int i = 0; i < 200; ++i) ASSERT_EQ(i % 5, nfw::getFilterLevel(1000 - i));
}

}  // namespace
