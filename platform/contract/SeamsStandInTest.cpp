// The hands that tests have on files, local time and the system log.
#include <cstdlib>
#include <ctime>
#include <functional>
#include <thread>

#include "ContractSupport.h"
#include "PlatformSeams.h"
#include "SysLogService.h"
#include "utl/File.h"
#include "utl/Time.h"

namespace {

using utl::File;

TEST(SeamsStandIn, FileOperationsFailOneByOne) {
  contract::TempDir lDir;
  contract::writeFile(lDir.file("read"), "abc\ndef\n");
  File lReader(lDir.file("read").c_str());
  File lWriter(lDir.file("written").c_str());
  ASSERT_TRUE(lReader.open(0, 0));
  ASSERT_TRUE(lWriter.open(2, 1));
  unsigned long long lNumber = 0;
  char lBytes[8];
  const struct {
    const char* mpWhat;
    seams::Point mPoint;
    std::function<bool()> mDone;
  } CASES[] = {
      {"open", seams::FILE_OPEN, [&] { return File(lDir.file("read").c_str()).open(0, 0); }},
      {"read", seams::FILE_READ, [&] { return lReader.read(lBytes, 1) == 1; }},
      {"readLine", seams::FILE_READ, [&] { return lReader.readLine(lBytes, 8) >= 0; }},
      {"seek", seams::FILE_SEEK, [&] { return lReader.seek(0, File::ORIGIN_BEGIN); }},
      {"getPosition", seams::FILE_POSITION, [&] { return lReader.getPosition(&lNumber); }},
      {"getSize", seams::FILE_SIZE, [&] { return lReader.getSize(&lNumber); }},
      {"write", seams::FILE_WRITE, [&] { return lWriter.write("x", 1) == 1; }},
      {"writeLine", seams::FILE_WRITE, [&] { return lWriter.writeLine("x"); }},
      {"flush", seams::FILE_FLUSH, [&] { return lWriter.flush(); }},
      {"sync", seams::FILE_SYNC, [&] { return lWriter.sync(); }},
  };
  for (const auto& lCase : CASES) {
    seams::Failing lFailing(lCase.mPoint, 1, 1);
    EXPECT_TRUE(lCase.mDone()) << lCase.mpWhat;
    EXPECT_FALSE(lCase.mDone()) << lCase.mpWhat;
    EXPECT_EQ(1u, lFailing.hits()) << lCase.mpWhat;
    EXPECT_TRUE(lCase.mDone()) << lCase.mpWhat;
  }
}

TEST(SeamsStandIn, AFailedReadLosesNoBytes) {
  contract::TempDir lDir;
  contract::writeFile(lDir.file("a"), "abc\ndef\n");
  File lFile(lDir.file("a").c_str());
  ASSERT_TRUE(lFile.open(0, 0));
  char lLine[8] = "old";
  {
    seams::Failing lFailing(seams::FILE_READ);
    EXPECT_EQ(-1, lFile.readLine(lLine, 8));
    EXPECT_STREQ("", lLine);
  }
  EXPECT_EQ(3, lFile.readLine(lLine, 8));
  EXPECT_STREQ("abc", lLine);
}

TEST(SeamsStandIn, LocalTimeIsFixedAndFails) {
  setenv("TZ", "EST5EDT,M3.2.0,M11.1.0", 1);
  tzset();
  unsigned int lFields[7] = {};
  const auto lTake = [&](const utl::Time& nTime) {
    return nTime.get(&lFields[0], &lFields[1], &lFields[2], &lFields[3], &lFields[4], &lFields[5], &lFields[6]);
  };
  utl::Time lTime;
  {
    seams::FixedLocalTime lFixed(2024, 3, 10, 2, 30, 59, 7);  // an hour that this zone leaves out
    ASSERT_TRUE(utl::getLocalTime(&lTime));
    ASSERT_TRUE(lTake(lTime));
    const unsigned int EXPECTED[] = {2024, 3, 10, 2, 30, 59, 7};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(EXPECTED[i], lFields[i]) << i;
    seams::Failing lFailing(seams::LOCAL_TIME_FIELDS);
    EXPECT_FALSE(lTake(lTime));
  }
  {
    seams::Failing lFailing(seams::LOCAL_TIME);
    EXPECT_FALSE(utl::getLocalTime(&lTime));
  }
  ASSERT_TRUE(utl::getLocalTime(&lTime));
  ASSERT_TRUE(lTake(lTime));
  EXPECT_GE(lFields[0], 2025u);
  unsetenv("TZ");
  tzset();
}

TEST(SeamsStandIn, TheLogIsCapturedWhileTheObjectLives) {
  seams::CapturedLog lOuter;
  applog(7, 1, "first");
  {
    seams::CapturedLog lInner;
    std::thread lThread([] { applog(8, 2, "from a thread"); });
    EXPECT_TRUE(lInner.waitFor("from a thread"));
    lThread.join();
    ASSERT_EQ(1u, lInner.lines().size());
    EXPECT_EQ(8, lInner.lines()[0].mType);
    EXPECT_EQ(2, lInner.lines()[0].mLevel);
    EXPECT_FALSE(lInner.waitFor("from", 1));
  }
  applog(7, 1, "second");
  applog(7, 1, "second");
  EXPECT_EQ((std::vector<std::string>{"first", "second", "second"}), lOuter.texts());
  EXPECT_EQ(2u, lOuter.count("second"));
  lOuter.clear();
  EXPECT_FALSE(lOuter.has("second"));
}

TEST(SeamsStandIn, TheLogServiceFails) {
  seams::Failing lType(seams::LOG_TYPE, 0, 1);
  EXPECT_FALSE(registerLogType(50, "x", 4));
  EXPECT_TRUE(registerLogType(50, "x", 4));
  seams::Failing lBinary(seams::BINARY_LOG);
  EXPECT_EQ(-1, BinaryLogWrite(0, "a", 1));
  EXPECT_EQ(1u, lBinary.hits());
}

}  // namespace
