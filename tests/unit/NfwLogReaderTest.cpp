#include <gtest/gtest.h>

#include <optional>
#include <tuple>

#include "LogRecords.h"
#include "NfwLogReader.h"
#include "NfwSysLogReader.h"
#include "PlatformSeams.h"
#include "RecordScout.h"
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
  ASSERT_TRUE(open(15, sensorRecord(0, 1, 70, "no") + sensorRecord(15, 15, 71, "it") + sensorRecord(15, 2, 72, "")));
  unsigned int lTime = 0;
  EXPECT_TRUE(mSysReader.getFirstLogTime(&lTime));
  EXPECT_EQ(70u, lTime);
  EXPECT_EQ(Strings{"### Start Sensor sysLog : Id=0x0f"}, mLog.texts());
  EXPECT_EQ(4, mLog.lines()[0].mLevel);
  mSysReader.requestCancelNext();  // cannot be
  const Read lRead = next(SENSOR);
  EXPECT_EQ("it", lRead.mData);
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
  const std::tuple<Kind, seams::Point, unsigned int, std::string, std::string> CASES[] = {
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
  for (const auto& [lKind, lPoint, lAfter, lFile, lLine] : CASES) {
    ASSERT_TRUE(open(OWN[lKind], lFile));
    mLog.clear();
    std::optional<seams::Failing> lFailing;
    if (lPoint != seams::POINT_NUM) lFailing.emplace(lPoint, lAfter);
    EXPECT_EQ(ERROR, next(lKind).mResult) << lLine;
    lFailing.reset();
    EXPECT_EQ(ERROR, next(lKind).mResult);
    EXPECT_FALSE(getFirstLogTime(lKind));
    const char* const lpClass = lKind == LOG ? "LogReader::next(): " : "SysLogReader::next(): ";
    ASSERT_EQ(Strings{lpClass + lLine}, mLog.texts());
    EXPECT_EQ(1, mLog.lines()[0].mLevel);
  }
}

TEST_F(ReaderTest, TheFirstTimeMayNotBeHad) {
  const std::string lOwn = logRecord(20, 1, "data");
  const std::tuple<seams::Point, unsigned int, bool, std::string> CASES[] = {
      {seams::FILE_POSITION, 0, true, "Can't get return pos:"},  // kept so: true without a time
      {seams::FILE_SEEK, 0, false, "Can't seek top time field:"},
      {seams::FILE_READ, 0, false, "Can't read top time: Ret=4294967295"},
      {seams::FILE_SEEK, 1, false, "Can't seek return pos:"}};
  for (const auto& [lPoint, lAfter, lIsHad, lWords] : CASES) {
    ASSERT_TRUE(open(20, lOwn));
    mLog.clear();
    for (const Kind lKind : {LOG, SENSOR}) {
      unsigned int lTime = 77;
      const seams::Failing lFailing(lPoint, lAfter);
      EXPECT_EQ(lIsHad, getFirstLogTime(lKind, &lTime));
      EXPECT_EQ(77u, lTime);
    }
    EXPECT_EQ((Strings{"LogReader::getFirstLogTime(): " + lWords + " Id=0x00000014",
                       "SysLogReader::getFirstLogTime(): " + lWords + " Id=0x14"}),
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
    std::string mMissing;   // in a record of the sensor log
  } CASES[] = {{0, 0, ""}, {2, 0, ""}, {30, 0, ""}, {30, 4, "time"}, {30, 10, "data"}};
  for (const auto& lCase : CASES) {
    const std::string LINES[] = {
        "LogReader::next(): Can't read log type Id: Ret=0 Id=0x00000014 LogPos=1590",
        "SysLogReader::next(): Can't read " + lCase.mMissing + ": Ret=3 Id=0x04 LogPos=330",
    };
    for (const Kind lKind : {LOG, SENSOR}) {
      const std::string lRecord = record(lKind, OWN[lKind], 1, "data");
      std::string lFile;
      for (int i = 0; i < 40; ++i) lFile += lRecord;
      ASSERT_TRUE(open(OWN[lKind], lFile));
      for (int i = 0; i < 30; ++i) ASSERT_EQ(4, next(lKind).mResult);
      mLog.clear();
      std::filesystem::resize_file(mPath, lCase.mWhole * lRecord.size() + lCase.mBytes);
      const bool lIsEnd = lCase.mBytes == 0;
      for (int i = 0; i < 2; ++i) EXPECT_EQ(lIsEnd ? END : ERROR, next(lKind).mResult);
      EXPECT_EQ(lIsEnd ? Strings() : Strings{LINES[lKind]}, mLog.texts());
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

/// What a reader gives of a file, up to what ends it.
Strings readAll(const std::string& nPath, int nId, nfw::RecordScout* npScout) {
  nfw::LogReader lReader;
  EXPECT_TRUE(lReader.open(nId, nPath.c_str(), npScout));
  Strings lAll;
  std::string lBuffer(BUFFER_SIZE, '\0');
  for (int lResult = 0; lResult >= 0;) {
    nfw::RecordHeader lHeader;
    lResult = lReader.nextRecord(&lHeader, lBuffer.data(), BUFFER_SIZE);
    lAll.push_back(std::to_string(lResult) + "@" + std::to_string(lHeader.mPosition));
    if (lResult > 0) lAll.back() += lBuffer.substr(0, static_cast<size_t>(lResult));
  }
  return lAll;
}

// So many pieces that the scout joins some. Ids 20 and 84 share a bit.
TEST(RecordScoutTest, ReadersBehindItGiveWhatEachGivesAlone) {
  const nfwtest::TempDir lDir;
  const std::string lPath = lDir / "records";
  std::string lRecords;
  for (unsigned int i = 0; i < 8000; ++i) {
    lRecords += logRecord(i % 903 == 899 ? 20 : i % 711 == 699 ? 84 : 1, i, std::to_string(i));
  }
  const std::string lLast = logRecord(20, 8000, "the last");
  for (const std::string& lTail : {std::string(), lLast, lLast.substr(0, 40), lLast.substr(0, 50)}) {
    seams::CapturedLog lLog;
    writeFile(lPath, lRecords + lTail);
    nfw::RecordScout lScout(nfw::LogReader::recordFormat(), nfw::Here::now(), 256);
    lScout.start(0, lPath.c_str(), 0);
    for (const int lId : {21, 20, 1, 84}) {
      const Strings lAlone = readAll(lPath, lId, nullptr);
      const size_t lLineNum = lLog.lines().size();
      EXPECT_EQ(lAlone, readAll(lPath, lId, &lScout)) << lId << " " << lTail;
      EXPECT_EQ(2 * lLineNum, lLog.lines().size());
      lLog.clear();
    }
  }
}

TEST(RecordScoutTest, TellsOnlyWhatItHasSeen) {
  const nfwtest::TempDir lDir;
  const std::string lPath = lDir / "records", lOther = logRecord(1, 5, "other");
  std::string lRecords;
  for (int i = 0; i < 200; ++i) lRecords += i == 100 ? logRecord(20, 5, "other") : lOther;
  writeFile(lPath, lRecords + lOther.substr(0, 50));  // being written
  const uint64_t lSize = lRecords.size(), lFrom = lOther.size(), lOwn = 100 * lFrom, lNever = nfw::RecordScout::NEVER;
  nfw::RecordScout lScout(nfw::LogReader::recordFormat(), nfw::Here::now(), 1000);
  std::atomic<bool> lIsCanceled{true};
  const auto lAsk = [&](unsigned int nFile, uint64_t nFrom, int nId) {
    nfw::RecordScout::Hint lHint = lScout.ask(nFile, nFrom, nId, lIsCanceled);
    while (lHint.mNext == lHint.mAskAt) lHint = lScout.ask(nFile, lHint.mNext, nId, lIsCanceled);
    return std::make_pair(lHint.mNext, lHint.mAskAt);
  };
  const auto lNothing = std::make_pair(lFrom, lNever);
  EXPECT_EQ(lNothing, lAsk(0, lFrom, 20));  // not started
  lScout.start(0, lPath.c_str(), lFrom);
  EXPECT_EQ(std::make_pair(lFrom, lFrom + 1), lAsk(0, lFrom, 20));
  lIsCanceled = false;
  EXPECT_EQ(std::make_pair(uint64_t{0}, lNever), lAsk(0, 0, 20));
  const auto lHint = lAsk(0, lFrom, 20);
  EXPECT_TRUE(lOwn - lHint.first < 1100 && lHint.first <= lOwn && lHint.second > lOwn) << lHint.first;
  EXPECT_EQ(std::make_pair(lSize, lNever), lAsk(0, lSize, 20));  // it has not been there
  EXPECT_EQ(std::make_pair(lSize, lSize + 1), lAsk(0, lFrom, 21));
  lScout.enter(2, lPath.c_str());
  EXPECT_EQ(lNothing, lAsk(1, lFrom, 21));
  lScout.enter(1, lPath.c_str());
  lScout.enter(0, lPath.c_str());  // has come late
  EXPECT_EQ(std::make_pair(lSize, lSize + 1), lAsk(1, 0, 21));
  EXPECT_EQ(std::make_pair(lSize, lNever), lAsk(0, lFrom, 21));
  EXPECT_EQ(lHint, lAsk(0, lFrom, 20));
  std::filesystem::resize_file(lPath, lSize - 1);
  EXPECT_EQ(lNothing, lAsk(1, lFrom, 21));
  lScout.start(4, lPath.c_str(), lFrom);
  EXPECT_EQ(std::make_pair(uint64_t{0}, lNever), lAsk(4, 0, 20));
  // A record that is still being written: met again when it is whole.
  const std::string lWhole = nfwtest::logRecord(20, 1, "x") + nfwtest::logRecord(20, 2, std::string(300, 'y'));
  nfwtest::writeFile(lPath, lWhole.substr(0, lWhole.size() - 10));
  lScout.start(0, lPath.c_str(), 0);
  EXPECT_GT(lWhole.size(), lAsk(0, 0, 21).first);
  nfwtest::writeFile(lPath, lWhole);
  EXPECT_EQ(std::make_pair(uint64_t{lWhole.size()}, uint64_t{lWhole.size() + 1}), lAsk(0, 0, 21));
}

}  // namespace
