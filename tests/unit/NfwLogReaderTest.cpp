#include <gtest/gtest.h>

#include <optional>

#include "LogRecords.h"
#include "NfwLogReader.h"
#include "NfwSysLogReader.h"
#include "PlatformSeams.h"
#include "TempDir.h"

namespace {

using nfwtest::logRecord;
using nfwtest::sensorRecord;
using nfwtest::writeFile;
using Strings = std::vector<std::string>;

const int ERROR = -1, END = -3, CANCELED = -4;
const unsigned int BUFFER_SIZE = 70000;

enum Kind { LOG, SENSOR };
const int OWN[] = {20, 4};  // the id that is read, by kind

std::string record(Kind nKind, int nId, uint32_t nTime, const std::string& nData) {
  return nKind == LOG ? logRecord(nId, nTime, nData) : sensorRecord(nId, 0, nTime, nData);
}

struct Read {
  int mResult;
  std::string mData;
  unsigned int mTime = 77;
  unsigned long long mPosition = 77;
  int mVersion = 77;
};

class ReaderTest : public testing::Test {
 protected:
  bool open(int nId, const std::string& nBytes) {
    writeFile(mPath, nBytes);
    mReader.close();
    mSysReader.close();
    return mReader.open(nId, mPath.c_str()) && mSysReader.open(nId, mPath.c_str());
  }
  Read next(Kind nKind = LOG) {
    Read lRead{};
    lRead.mResult = nKind == LOG
                        ? mReader.next(&lRead.mTime, mBuffer.data(), BUFFER_SIZE, &lRead.mPosition)
                        : mSysReader.next(&lRead.mVersion, &lRead.mTime, mBuffer.data(), BUFFER_SIZE, &lRead.mPosition);
    EXPECT_TRUE(lRead.mResult >= 0 || (lRead.mTime == 77 && lRead.mPosition == 77 && lRead.mVersion == 77));
    if (lRead.mResult > 0) lRead.mData.assign(mBuffer.data(), static_cast<size_t>(lRead.mResult));
    return lRead;
  }
  bool getFirstLogTime(Kind nKind, unsigned int* npTime = nullptr) {
    return nKind == LOG ? mReader.getFirstLogTime(npTime) : mSysReader.getFirstLogTime(npTime);
  }
  /// How many records come until none does.
  int countToEnd(Kind nKind) {
    int lCount = 0;
    while (next(nKind).mResult > 0) ++lCount;
    return lCount;
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
  EXPECT_EQ(Strings{"### Start Sensor sysLog : Id=0x0f"}, mLog.texts());
  EXPECT_EQ(4, mLog.lines()[0].mLevel);
  mSysReader.requestCancelNext();  // cannot be
  const Read lRead = next(SENSOR);
  EXPECT_EQ(lLargest, lRead.mData);
  EXPECT_EQ(15, lRead.mVersion);
  EXPECT_EQ(71u, lRead.mTime);
  EXPECT_EQ(9u, lRead.mPosition);
  EXPECT_EQ(0, mSysReader.next(nullptr, nullptr, mBuffer.data(), 5, nullptr));
  EXPECT_EQ(END, next(SENSOR).mResult);
}

// No crash, no invented record; the last one may lack its postfix, which is not looked at.
TEST_F(ReaderTest, ReadsWhatIsWholeOfAFileCutAnywhere) {
  const struct {
    Kind mKind;
    size_t mEnds[3][2];  // of each record: from where to where a cut leaves it to its end
  } CASES[] = {{LOG, {{53, 54}, {102, 108}, {161, 162}}}, {SENSOR, {{12, 12}, {19, 24}, {36, 36}}}};
  for (const auto& lCase : CASES) {
    const int lOwn = OWN[lCase.mKind];
    const std::string lFile = record(lCase.mKind, lOwn, 1, "first") + record(lCase.mKind, 3, 2, "other") +
                              record(lCase.mKind, lOwn, 3, "third");
    ASSERT_EQ(lCase.mEnds[2][1], lFile.size());
    for (size_t lSize = 0; lSize <= lFile.size(); ++lSize) {
      ASSERT_TRUE(open(lOwn, lFile.substr(0, lSize)));
      EXPECT_EQ((lSize >= lCase.mEnds[0][0]) + (lSize >= lCase.mEnds[2][0]), countToEnd(lCase.mKind)) << lSize;
      bool lIsWhole = lSize == 0;
      for (const auto& lEnd : lCase.mEnds) lIsWhole = lIsWhole || (lSize >= lEnd[0] && lSize <= lEnd[1]);
      EXPECT_EQ(lIsWhole ? END : ERROR, next(lCase.mKind).mResult) << lSize;
    }
  }
}

TEST_F(ReaderTest, EveryFailureHasItsLineAndIsFinal) {
  const std::string lOwn = logRecord(20, 1, "data"), lOther = logRecord(3, 1, std::string(66000, 'x'));
  const std::string lWindow = logRecord(20, 1, std::string(65536 - 12, 'w'));  // ends with what is read at once
  const std::string lFar = sensorRecord(3, 0, 1, std::string(65535, 'x')).substr(0, 65000);
  const struct {
    Kind mKind;
    seams::Point mPoint;
    unsigned int mAfter;
    std::string mFile;
    const char* mpLine;
  } CASES[] = {
      {LOG, seams::FILE_SIZE, 0, lOwn, "Can't get file size: Id=0x00000014"},
      {LOG, seams::FILE_POSITION, 0, lOwn, "Can't get log pos: Id=0x00000014"},
      {LOG, seams::FILE_SEEK, 0, lOwn, "Can't seek log type Id field: Id=0x00000014 LogPos=0"},
      {LOG, seams::FILE_READ, 0, lOwn, "Can't read log type Id: Ret=4294967295 Id=0x00000014 LogPos=0"},
      {LOG, seams::FILE_SEEK, 1, lOther + lOwn, "Can't seek next log record: Id=0x00000014 LogPos=0"},
      {LOG, seams::FILE_SEEK, 1, lWindow, "Can't skip postfix field: Id=0x00000014 LogPos=0"},
      {LOG, seams::POINT_NUM, 0, lOwn.substr(0, 38), "Can't read log type Id: Ret=2 Id=0x00000014 LogPos=0"},
      {LOG, seams::POINT_NUM, 0, lOwn.substr(0, 43), "Can't read time: Ret=3 Id=0x00000014 LogPos=0"},
      {LOG, seams::POINT_NUM, 0, lOwn.substr(0, 44), "Can't read data size: Ret=0 Id=0x00000014 LogPos=0"},
      {LOG, seams::POINT_NUM, 0, lOwn.substr(0, 50), "Can't read data: Ret=2 Id=0x00000014 LogPos=0"},
      {LOG, seams::POINT_NUM, 0, logRecord(20, 1, "data", 0xFFFFFFFFu),
       "Can't read data: Buffer is not enough: DataSize=4294967295 Byte BufferSize=70000 Byte Id=0x00000014 LogPos=0"},
      {SENSOR, seams::FILE_SIZE, 0, "x", "Can't get file size: Id=0x04"},
      {SENSOR, seams::FILE_POSITION, 0, "x", "Can't get log pos: Id=0x04"},
      {SENSOR, seams::FILE_READ, 0, "x", "Can't read log Info: Ret=4294967295 Id=0x04 LogPos=0"},
      {SENSOR, seams::FILE_SEEK, 0, lFar, "Can't seek next log record: Id=0x04 LogPos=0"},
      {SENSOR, seams::POINT_NUM, 0, std::string("\x04\0\0", 3), "Can't read time: Ret=2 Id=0x04 LogPos=0"},
      {SENSOR, seams::POINT_NUM, 0, std::string("\x04\0\0\0\0\1", 6), "Can't read data size: Ret=1 Id=0x04 LogPos=0"},
      {SENSOR, seams::POINT_NUM, 0, std::string("\x04\0\0\0\0\2\0x", 8), "Can't read data: Ret=1 Id=0x04 LogPos=0"},
  };
  for (const auto& lCase : CASES) {
    ASSERT_TRUE(open(OWN[lCase.mKind], lCase.mFile));
    mLog.clear();
    std::optional<seams::Failing> lFailing;
    if (lCase.mPoint != seams::POINT_NUM) lFailing.emplace(lCase.mPoint, lCase.mAfter);
    EXPECT_EQ(ERROR, next(lCase.mKind).mResult) << lCase.mpLine;
    lFailing.reset();
    EXPECT_EQ(ERROR, next(lCase.mKind).mResult);
    EXPECT_FALSE(getFirstLogTime(lCase.mKind));
    const char* const lpClass = lCase.mKind == LOG ? "LogReader::next(): " : "SysLogReader::next(): ";
    ASSERT_EQ(Strings{std::string(lpClass) + lCase.mpLine}, mLog.texts());
    EXPECT_EQ(1, mLog.lines()[0].mLevel);
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
    for (const Kind lKind : {LOG, SENSOR}) {
      unsigned int lTime = 77;
      const seams::Failing lFailing(lCase.mPoint, lCase.mAfter);
      EXPECT_EQ(lCase.mResult, getFirstLogTime(lKind, &lTime));
      EXPECT_EQ(77u, lTime);
    }
    EXPECT_EQ((Strings{"LogReader::getFirstLogTime(): " + std::string(lCase.mpWords) + " Id=0x00000014",
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
  const struct {
    size_t mWhole, mBytes;  // of the file: records, and bytes of the next
    std::string mLines[2];  // by kind; empty: it is the end
  } CASES[] = {
      {0, 0, {}},
      {2, 0, {}},
      {30, 0, {}},
      {30,
       4,
       {"LogReader::next(): Can't read log type Id: Ret=0 Id=0x00000014 LogPos=1590",
        "SysLogReader::next(): Can't read time: Ret=3 Id=0x04 LogPos=330"}},
      {30,
       10,
       {"LogReader::next(): Can't read log type Id: Ret=0 Id=0x00000014 LogPos=1590",
        "SysLogReader::next(): Can't read data: Ret=3 Id=0x04 LogPos=330"}},
  };
  for (const auto& lCase : CASES) {
    for (const Kind lKind : {LOG, SENSOR}) {
      const std::string lRecord = record(lKind, OWN[lKind], 1, "data");
      std::string lFile;
      for (int i = 0; i < 40; ++i) lFile += lRecord;
      ASSERT_TRUE(open(OWN[lKind], lFile));
      for (int i = 0; i < 30; ++i) ASSERT_EQ(4, next(lKind).mResult);
      mLog.clear();
      std::filesystem::resize_file(mPath, lCase.mWhole * lRecord.size() + lCase.mBytes);
      const bool lIsEnd = lCase.mLines[lKind].empty();
      for (int i = 0; i < 2; ++i) EXPECT_EQ(lIsEnd ? END : ERROR, next(lKind).mResult);
      EXPECT_EQ(lIsEnd ? Strings() : std::vector{lCase.mLines[lKind]}, mLog.texts());
      if (!lIsEnd) continue;
      writeFile(mPath, lFile.substr(0, 31 * lRecord.size()));
      EXPECT_EQ(4, next(lKind).mResult);
      std::filesystem::resize_file(mPath, 0);
      EXPECT_FALSE(getFirstLogTime(lKind));
    }
  }
}

TEST_F(ReaderTest, AFileThatShrinksAndCannotBeReadOnIsAnError) {
  const std::string lOwn = logRecord(20, 1, "data");
  ASSERT_TRUE(open(20, lOwn + lOwn + lOwn));
  EXPECT_EQ(4, next().mResult);
  std::filesystem::resize_file(mPath, 2 * lOwn.size());
  const seams::Failing lFailing(seams::FILE_SEEK);
  EXPECT_EQ(ERROR, next().mResult);
  EXPECT_EQ(Strings{"LogReader::next(): Can't get log pos: Id=0x00000014"}, mLog.texts());
}

}  // namespace
