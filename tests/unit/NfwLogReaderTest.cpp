#include <gtest/gtest.h>

#include <optional>

#include "LogRecords.h"
#include "NfwLogReader.h"
#include "NfwSysLogReader.h"
#include "PlatformSeams.h"
#include "SysLogServiceHost.h"
#include "TempDir.h"

namespace {

using nfwtest::logRecord;
using nfwtest::sensorRecord;
using nfwtest::writeFile;

const int ERROR = -1, END = -3, CANCELED = -4;
const unsigned int BUFFER_SIZE = 70000;

struct Read {
  int mResult;
  std::string mData;
  unsigned int mTime = 0;
  unsigned long long mPosition = 0;
  int mVersion = 0;
};

class ReaderTest : public testing::Test {
 protected:
  bool open(int nId, const std::string& nBytes) {
    writeFile(mPath, nBytes);
    mReader.close();
    mSysReader.close();
    return mReader.open(nId, mPath.c_str()) && mSysReader.open(nId, mPath.c_str());
  }
  Read next() {
    Read lRead{};
    lRead.mResult = mReader.next(&lRead.mTime, mBuffer.data(), BUFFER_SIZE, &lRead.mPosition);
    if (lRead.mResult > 0) lRead.mData.assign(mBuffer.data(), static_cast<size_t>(lRead.mResult));
    return lRead;
  }
  Read nextSensor() {
    Read lRead{};
    lRead.mResult = mSysReader.next(&lRead.mVersion, &lRead.mTime, mBuffer.data(), BUFFER_SIZE, &lRead.mPosition);
    if (lRead.mResult > 0) lRead.mData.assign(mBuffer.data(), static_cast<size_t>(lRead.mResult));
    return lRead;
  }

  nfwtest::TempDir mDir;
  const std::string mPath = mDir / "records";
  seams::CapturedLog mLog;
  std::vector<char> mBuffer = std::vector<char>(BUFFER_SIZE);
  nfw::LogReader mReader;
  nfw::SysLogReader mSysReader;
};

TEST_F(ReaderTest, DeliversTheRecordsOfItsIdOnly) {
  const std::string lFirst = logRecord(3, 500, "other"), lSecond = logRecord(20, 1000, "one");
  ASSERT_TRUE(open(20, lFirst + lSecond + logRecord(20, 1001, "") + logRecord(4, 9, "x")));
  EXPECT_FALSE(mReader.open(20, mPath.c_str()));
  EXPECT_TRUE(mReader.isOpened());
  unsigned int lTime = 0;
  EXPECT_TRUE(mReader.getFirstLogTime(&lTime));
  EXPECT_EQ(500u, lTime);  // of whatever id
  const Read lOne = next();
  EXPECT_EQ("one", lOne.mData);
  EXPECT_EQ(1000u, lOne.mTime);
  EXPECT_EQ(lFirst.size(), lOne.mPosition);
  EXPECT_TRUE(mReader.getFirstLogTime(nullptr));
  EXPECT_EQ(0, mReader.next(nullptr, mBuffer.data(), 0, nullptr));  // of size 0, in a buffer of size 0
  EXPECT_EQ(END, next().mResult);
  writeFile(mPath, nfwtest::readFile(mPath) + logRecord(20, 1002, "grown"));  // the file is still being written
  EXPECT_EQ("grown", next().mData);
  EXPECT_EQ(END, next().mResult);
  mReader.close();
  EXPECT_EQ(ERROR, next().mResult);
  EXPECT_FALSE(mReader.isOpened());
  EXPECT_FALSE(mReader.getFirstLogTime(&lTime));
  EXPECT_FALSE(mReader.open(20, (mDir / "none").c_str()));
  EXPECT_TRUE(mLog.texts().empty());
}

TEST_F(ReaderTest, SensorRecordsCarryAVersion) {
  const std::string lLargest(1200, 's');
  ASSERT_TRUE(
      open(15, sensorRecord(0, 1, 70, "no") + sensorRecord(15, 15, 71, lLargest) + sensorRecord(15, 2, 72, "")));
  unsigned int lTime = 0;
  EXPECT_TRUE(mSysReader.getFirstLogTime(&lTime));
  EXPECT_EQ(70u, lTime);
  EXPECT_EQ(std::vector<std::string>{"### Start Sensor sysLog : Id=0x0f"}, mLog.texts());
  EXPECT_EQ(4, mLog.lines()[0].mLevel);
  mSysReader.requestCancelNext();  // cannot be
  const Read lRead = nextSensor();
  EXPECT_EQ(lLargest, lRead.mData);
  EXPECT_EQ(15, lRead.mVersion);
  EXPECT_EQ(71u, lRead.mTime);
  EXPECT_EQ(9u, lRead.mPosition);
  EXPECT_EQ(0, mSysReader.next(nullptr, nullptr, mBuffer.data(), 5, nullptr));
  EXPECT_EQ(END, nextSensor().mResult);
}

// No crash, no invented record; the last one may lack its postfix, which is not looked at.
TEST_F(ReaderTest, ReadsWhatIsWholeOfAFileCutAnywhere) {
  const std::string lFile = logRecord(20, 1, "first") + logRecord(3, 2, "other") + logRecord(20, 3, "third");
  const std::string lSensor =
      sensorRecord(4, 0, 1, "first") + sensorRecord(3, 0, 2, "other") + sensorRecord(4, 0, 3, "3");
  for (size_t lSize = 0; lSize <= lFile.size(); ++lSize) {
    ASSERT_TRUE(open(20, lFile.substr(0, lSize)));
    int lCount = 0;
    while (next().mResult > 0) ++lCount;
    EXPECT_EQ(lSize >= lFile.size() - 1 ? 2 : lSize >= 53 ? 1 : 0, lCount) << lSize;
    const bool lIsBoundary =
        lSize == 0 || lSize >= lFile.size() - 1 || (lSize >= 53 && lSize <= 54) || (lSize >= 102 && lSize <= 108);
    EXPECT_EQ(lIsBoundary ? END : ERROR, next().mResult) << lSize;
  }
  for (size_t lSize = 0; lSize <= lSensor.size(); ++lSize) {
    ASSERT_TRUE(open(4, lSensor.substr(0, lSize)));
    int lCount = 0;
    while (nextSensor().mResult > 0) ++lCount;
    EXPECT_EQ(lSize == lSensor.size() ? 2 : lSize >= 12 ? 1 : 0, lCount) << lSize;
  }
}

struct FailureCase {
  seams::Point mPoint;
  unsigned int mAfter;
  std::string mFile;
  const char* mpLine;
};

TEST_F(ReaderTest, EveryFailureHasItsLineAndIsFinal) {
  const std::string lOwn = logRecord(20, 1, "data"), lOther = logRecord(3, 1, std::string(66000, 'x'));
  const std::string lWindow = logRecord(20, 1, std::string(65536 - 12, 'w'));  // ends with what is read at once
  const std::string lHuge = logRecord(20, 1, "data", 0xFFFFFFFFu);
  const FailureCase CASES[] = {
      {seams::FILE_SIZE, 0, lOwn, "Can't get file size: Id=0x00000014"},
      {seams::FILE_POSITION, 0, lOwn, "Can't get log pos: Id=0x00000014"},
      {seams::FILE_SEEK, 0, lOwn, "Can't seek log type Id field: Id=0x00000014 LogPos=0"},
      {seams::FILE_READ, 0, lOwn, "Can't read log type Id: Ret=4294967295 Id=0x00000014 LogPos=0"},
      {seams::FILE_SEEK, 1, lOther + lOwn, "Can't seek next log record: Id=0x00000014 LogPos=0"},
      {seams::FILE_SEEK, 1, lWindow, "Can't skip postfix field: Id=0x00000014 LogPos=0"},
      {seams::POINT_NUM, 0, lOwn.substr(0, 38), "Can't read log type Id: Ret=2 Id=0x00000014 LogPos=0"},
      {seams::POINT_NUM, 0, lOwn.substr(0, 43), "Can't read time: Ret=3 Id=0x00000014 LogPos=0"},
      {seams::POINT_NUM, 0, lOwn.substr(0, 44), "Can't read data size: Ret=0 Id=0x00000014 LogPos=0"},
      {seams::POINT_NUM, 0, lOwn.substr(0, 50), "Can't read data: Ret=2 Id=0x00000014 LogPos=0"},
      {seams::POINT_NUM, 0, lHuge,
       "Can't read data: Buffer is not enough: DataSize=4294967295 Byte BufferSize=70000 Byte Id=0x00000014 LogPos=0"},
  };
  for (const FailureCase& lCase : CASES) {
    ASSERT_TRUE(open(20, lCase.mFile));
    mLog.clear();
    std::optional<seams::Failing> lFailing;
    if (lCase.mPoint != seams::POINT_NUM) lFailing.emplace(lCase.mPoint, lCase.mAfter);
    EXPECT_EQ(ERROR, next().mResult) << lCase.mpLine;
    lFailing.reset();
    EXPECT_EQ(ERROR, next().mResult);
    EXPECT_FALSE(mReader.getFirstLogTime(nullptr));
    ASSERT_EQ(std::vector<std::string>{"LogReader::next(): " + std::string(lCase.mpLine)}, mLog.texts());
    EXPECT_EQ(1, mLog.lines()[0].mLevel);
  }
  const FailureCase SENSOR_CASES[] = {
      {seams::FILE_SIZE, 0, "x", "Can't get file size: Id=0x04"},
      {seams::FILE_POSITION, 0, "x", "Can't get log pos: Id=0x04"},
      {seams::FILE_READ, 0, "x", "Can't read log Info: Ret=4294967295 Id=0x04 LogPos=0"},
      {seams::FILE_SEEK, 0, sensorRecord(3, 0, 1, std::string(65535, 'x')).substr(0, 65000),
       "Can't seek next log record: Id=0x04 LogPos=0"},
      {seams::POINT_NUM, 0, std::string("\x04\0\0", 3), "Can't read time: Ret=2 Id=0x04 LogPos=0"},
      {seams::POINT_NUM, 0, std::string("\x04\0\0\0\0\1", 6), "Can't read data size: Ret=1 Id=0x04 LogPos=0"},
      {seams::POINT_NUM, 0, std::string("\x04\0\0\0\0\2\0x", 8), "Can't read data: Ret=1 Id=0x04 LogPos=0"},
  };
  for (const FailureCase& lCase : SENSOR_CASES) {
    ASSERT_TRUE(open(4, lCase.mFile));
    mLog.clear();
    std::optional<seams::Failing> lFailing;
    if (lCase.mPoint != seams::POINT_NUM) lFailing.emplace(lCase.mPoint, lCase.mAfter);
    EXPECT_EQ(ERROR, nextSensor().mResult) << lCase.mpLine;
    EXPECT_EQ(std::vector<std::string>{"SysLogReader::next(): " + std::string(lCase.mpLine)}, mLog.texts());
  }
}

TEST_F(ReaderTest, TheFirstTimeMayNotBeHad) {
  const std::string lOwn = logRecord(20, 1, "data");
  const struct {
    seams::Point mPoint;
    unsigned int mAfter;
    bool mResult;
    const char* mpWords;
  } CASES[] = {{seams::FILE_POSITION, 0, true, "Can't get return pos:"},  // kept so: true without a time
               {seams::FILE_SEEK, 0, false, "Can't seek top time field:"},
               {seams::FILE_READ, 0, false, "Can't read top time: Ret=4294967295"},
               {seams::FILE_SEEK, 1, false, "Can't seek return pos:"}};
  for (const auto& lCase : CASES) {
    ASSERT_TRUE(open(20, lOwn));
    mLog.clear();
    unsigned int lTime = 77;
    {
      const seams::Failing lFailing(lCase.mPoint, lCase.mAfter);
      EXPECT_EQ(lCase.mResult, mReader.getFirstLogTime(&lTime));
    }
    {
      const seams::Failing lFailing(lCase.mPoint, lCase.mAfter);
      EXPECT_EQ(lCase.mResult, mSysReader.getFirstLogTime(&lTime));
    }
    EXPECT_EQ(77u, lTime);
    EXPECT_EQ(
        (std::vector<std::string>{"LogReader::getFirstLogTime(): " + std::string(lCase.mpWords) + " Id=0x00000014",
                                  "SysLogReader::getFirstLogTime(): " + std::string(lCase.mpWords) + " Id=0x14"}),
        mLog.texts());
    EXPECT_EQ(ERROR, next().mResult);
  }
  ASSERT_TRUE(open(20, ""));
  EXPECT_EQ(END, next().mResult);
  EXPECT_FALSE(mReader.getFirstLogTime(nullptr));
  EXPECT_EQ(ERROR, next().mResult);
}

TEST_F(ReaderTest, ACancelHoldsUntilTheFileIsOpenedAgain) {
  ASSERT_TRUE(open(20, logRecord(20, 1, "x")));
  mReader.requestCancelNext();
  EXPECT_EQ(CANCELED, next().mResult);
  EXPECT_EQ(CANCELED, next().mResult);
  mReader.close();
  EXPECT_EQ(ERROR, next().mResult);
  ASSERT_TRUE(open(20, logRecord(20, 1, "x")));
  EXPECT_EQ("x", next().mData);
}

// Holes cost no disk: records on both sides of 2, 4 and 5 GiB.
TEST_F(ReaderTest, ReadsBeyondFourGigabytes) {
  ASSERT_TRUE(open(20, logRecord(3, 1, "", 0xFFFFFFFFu)));
  const unsigned long long lSecondAt = 49ull + 0xFFFFFFFFu;
  std::fstream lFile(mPath, std::ios::in | std::ios::out | std::ios::binary);
  const auto lPut = [&](unsigned long long nAt, const std::string& nBytes) {
    lFile.seekp(static_cast<std::streamoff>(nAt));
    lFile << nBytes << std::flush;
  };
  lPut(lSecondAt, logRecord(20, 2, "far"));
  lPut(lSecondAt + 52, logRecord(3, 3, "", 0x40000000u));
  lPut(lSecondAt + 52 + 49 + 0x40000000u, logRecord(20, 4, "farther"));
  const Read lRead = next();
  EXPECT_EQ("far", lRead.mData);
  EXPECT_EQ(lSecondAt, lRead.mPosition);
  EXPECT_EQ("farther", next().mData);
  EXPECT_EQ(END, next().mResult);
  ASSERT_TRUE(open(20, logRecord(3, 1, "cut", 0x80000000u)));  // corrupt: beyond the end
  EXPECT_EQ(END, next().mResult);
}

// What is gone is not delivered, though it was read together with what came before; what comes back is read on.
TEST_F(ReaderTest, AFileThatShrinksEndsWhereItEndsNow) {
  const std::string lOwn = logRecord(20, 1, "data"), lSensor = sensorRecord(4, 0, 1, "data");
  const struct {
    size_t mWhole, mBytes;  // of the file: records, and bytes of the next
    int mResult;
    const char *mpLine, *mpSensorLine;
  } CASES[] = {
      {0, 0, END, nullptr, nullptr},
      {2, 0, END, nullptr, nullptr},
      {30, 0, END, nullptr, nullptr},
      {30, 4, ERROR, "LogReader::next(): Can't read log type Id: Ret=0 Id=0x00000014 LogPos=1590",
       "SysLogReader::next(): Can't read time: Ret=3 Id=0x04 LogPos=330"},
      {30, 10, ERROR, "LogReader::next(): Can't read log type Id: Ret=0 Id=0x00000014 LogPos=1590",
       "SysLogReader::next(): Can't read data: Ret=3 Id=0x04 LogPos=330"},
  };
  for (const auto& lCase : CASES) {
    for (const bool lIsSensor : {false, true}) {
      const std::string& lRecord = lIsSensor ? lSensor : lOwn;
      std::string lFile;
      for (int i = 0; i < 40; ++i) lFile += lRecord;
      ASSERT_TRUE(open(lIsSensor ? 4 : 20, lFile));
      const auto lNext = [&] { return lIsSensor ? nextSensor().mResult : next().mResult; };
      for (int i = 0; i < 30; ++i) ASSERT_EQ(4, lNext());
      mLog.clear();
      std::filesystem::resize_file(mPath, lCase.mWhole * lRecord.size() + lCase.mBytes);
      EXPECT_EQ(lCase.mResult, lNext());
      EXPECT_EQ(lCase.mResult, lNext());
      const char* const lpLine = lIsSensor ? lCase.mpSensorLine : lCase.mpLine;
      EXPECT_EQ(lpLine != nullptr ? std::vector<std::string>{lpLine} : std::vector<std::string>{}, mLog.texts());
      if (lCase.mResult != END) continue;
      std::filesystem::resize_file(mPath, 30 * lRecord.size());
      nfwtest::writeFile(mPath, nfwtest::readFile(mPath) + lRecord);
      EXPECT_EQ(4, lNext());
      std::filesystem::resize_file(mPath, 0);
      EXPECT_FALSE(lIsSensor ? mSysReader.getFirstLogTime(nullptr) : mReader.getFirstLogTime(nullptr));
    }
  }
}

TEST_F(ReaderTest, AFastReaderMeetsTheNewEndWhenItReadsOn) {
  std::string lFile;
  for (int i = 0; i < 5000; ++i) lFile += logRecord(20, 1, "data");
  ASSERT_TRUE(open(20, lFile));
  int lCount = 0;
  for (; lCount < 1000; ++lCount) ASSERT_EQ(4, next().mResult);
  std::filesystem::resize_file(mPath, lFile.size() / 2);
  int lResult = 0;
  while ((lResult = next().mResult) == 4) ++lCount;
  EXPECT_EQ(END, lResult);
  EXPECT_EQ(2500, lCount);
}

TEST_F(ReaderTest, ReadsRecordsThatStraddleWhatIsReadAtOnce) {
  std::string lFile;
  for (unsigned int i = 0; i < 3000; ++i) lFile += logRecord(static_cast<int>(i % 3), i, std::string(i % 97, 'x'));
  ASSERT_TRUE(open(1, lFile));
  for (unsigned int i = 1; i < 3000; i += 3) {
    const Read lRead = next();
    ASSERT_EQ(static_cast<int>(i % 97), lRead.mResult);
    ASSERT_EQ(i, lRead.mTime);
  }
  EXPECT_EQ(END, next().mResult);
}

}  // namespace
