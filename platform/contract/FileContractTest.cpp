#include <sys/stat.h>

#include <climits>

#include "ContractSupport.h"
#include "utl/File.h"

namespace {

using contract::readFile;
using contract::writeFile;
using utl::File;

std::string pattern(size_t nSize) {
  std::string lBytes(nSize, '\0');
  for (size_t i = 0; i < nSize; ++i) lBytes[i] = static_cast<char>(i * 7 + i / 251);
  return lBytes;
}

class FileContract : public testing::Test {
 protected:
  std::string make(const std::string& nContent) {
    writeFile(mDir / "a", nContent);
    return mDir / "a";
  }
  static std::string readAll(File& nFile, unsigned int nSize) {
    std::string lBytes(nSize, '\0');
    const int lCount = nFile.read(lBytes.data(), nSize);
    EXPECT_GE(lCount, 0);
    lBytes.resize(lCount < 0 ? 0 : static_cast<size_t>(lCount));
    return lBytes;
  }
  static unsigned long long positionOf(File& nFile) {
    unsigned long long lPosition = ~0ull;
    EXPECT_TRUE(nFile.getPosition(&lPosition));
    return lPosition;
  }

  contract::TempDir mDir;
};

TEST_F(FileContract, ExistsForAllButDirectories) {
  const std::string lPath = make("x");
  EXPECT_TRUE(File::exists(lPath.c_str()));
  EXPECT_TRUE(File(lPath.c_str()).exists());
  EXPECT_TRUE(File::exists("/dev/null"));
  EXPECT_FALSE(File::exists(mDir.path().c_str()));
  EXPECT_FALSE(File::exists((mDir / "missing").c_str()));
  EXPECT_FALSE(File::exists(""));
  EXPECT_FALSE(File::exists(nullptr));
}

TEST_F(FileContract, OpensRegularFilesToReadAndCreatesToWrite) {
  const std::string lFile = make("x");
  const std::string lFifo = mDir / "fifo";
  ASSERT_EQ(0, mkfifo(lFifo.c_str(), 0600));
  const struct {
    std::string mPath;
    int mMode, mCreate;
    bool mIsOpened;
  } CASES[] = {
      {lFile, 0, 0, true},        {mDir / "missing", 0, 0, false}, {mDir.path(), 0, 0, false},   {lFifo, 0, 0, false},
      {mDir.path(), 2, 1, false}, {mDir / "new", 2, 1, true},      {mDir / "no/a", 2, 1, false}, {"", 0, 0, false},
      {"", 2, 1, false},
  };
  for (const auto& lCase : CASES) {
    File lOpened(lCase.mPath.c_str());
    EXPECT_EQ(lCase.mIsOpened, lOpened.open(lCase.mMode, lCase.mCreate)) << lCase.mPath << lCase.mMode;
    EXPECT_EQ(lCase.mIsOpened, lOpened.isOpened()) << lCase.mPath << lCase.mMode;
    EXPECT_STREQ(lCase.mPath.c_str(), lOpened.getPath());
  }
  EXPECT_TRUE(File::exists((mDir / "new").c_str()));
}

TEST_F(FileContract, WritesAtOnceAndTruncates) {
  const std::string lPath = make("old content");
  File lFile(lPath.c_str());
  ASSERT_TRUE(lFile.open(2, 1));
  EXPECT_EQ("", readFile(lPath));
  EXPECT_EQ(3, lFile.write("abc", 3));
  EXPECT_EQ(0, lFile.write("abc", 0));
  EXPECT_TRUE(lFile.writeLine("line"));
  EXPECT_TRUE(lFile.writeLine(""));
  EXPECT_EQ("abcline\n\n", readFile(lPath));  // neither flushed nor closed
  EXPECT_EQ(9u, positionOf(lFile));
  ASSERT_TRUE(lFile.seek(-8, File::ORIGIN_CURRENT));
  EXPECT_EQ(1, lFile.write("B", 1));
  EXPECT_TRUE(lFile.flush());
  lFile.close();
  EXPECT_EQ("aBcline\n\n", readFile(lPath));
}

TEST_F(FileContract, TruncatesTheOpenFileAndNotTheOneOfItsName) {
  const std::string lPath = mDir / "a", lMoved = mDir / "moved";
  File lFile(lPath.c_str());
  ASSERT_TRUE(lFile.open(2, 1));
  EXPECT_EQ(10, lFile.write("0123456789", 10));
  ASSERT_EQ(0, rename(lPath.c_str(), lMoved.c_str()));
  writeFile(lPath, "another one");
  EXPECT_TRUE(lFile.truncate(4));
  EXPECT_EQ(4u, positionOf(lFile));
  EXPECT_EQ(1, lFile.write("x", 1));
  EXPECT_EQ("0123x", readFile(lMoved));
  EXPECT_EQ("another one", readFile(lPath));
}

TEST_F(FileContract, RefusesWhatItIsNotOpenFor) {
  char lBuffer[4];
  unsigned long long lNumber = 0;
  File lFile(make("x").c_str());
  EXPECT_EQ(-1, lFile.read(lBuffer, 1));
  EXPECT_EQ(-1, lFile.readLine(lBuffer, 4));
  EXPECT_EQ(-1, lFile.write("x", 1));
  EXPECT_FALSE(lFile.writeLine("x"));
  EXPECT_FALSE(lFile.flush());
  EXPECT_FALSE(lFile.truncate(0));
  EXPECT_FALSE(lFile.seek(0, File::ORIGIN_BEGIN));
  EXPECT_FALSE(lFile.getPosition(&lNumber));
  EXPECT_FALSE(lFile.getSize(&lNumber));
  ASSERT_TRUE(lFile.open(0, 0));
  EXPECT_EQ(-1, lFile.write("x", 1));
  EXPECT_FALSE(lFile.writeLine("x"));
  EXPECT_FALSE(lFile.truncate(0));
  lFile.close();
  ASSERT_TRUE(lFile.open(2, 1));
  EXPECT_EQ(-1, lFile.read(lBuffer, 1));
}

TEST_F(FileContract, TellsOfAFullDisk) {
  if (!File::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  File lFile("/dev/full");
  ASSERT_TRUE(lFile.open(2, 1));
  EXPECT_TRUE(lFile.flush());
  EXPECT_EQ(-1, lFile.write("x", 1));
  EXPECT_FALSE(lFile.writeLine("x"));
  EXPECT_FALSE(lFile.flush());
}

TEST_F(FileContract, ReadsShortOnlyAtTheEnd) {
  const std::string lContent = pattern(50000);
  File lFile(make(lContent).c_str());
  ASSERT_TRUE(lFile.open(0, 0));
  std::string lRead;
  for (unsigned int lSize : {1u, 4u, 16384u, 0u, 20001u, 30000u}) lRead += readAll(lFile, lSize);
  EXPECT_TRUE(lContent == lRead);
  EXPECT_EQ("", readAll(lFile, 1));
  EXPECT_EQ(50000u, positionOf(lFile));
}

TEST_F(FileContract, SeeksWithSignedDistances) {
  const std::string lContent = pattern(40000);
  File lFile(make(lContent).c_str());
  ASSERT_TRUE(lFile.open(0, 0));
  const struct {
    long long mOffset;
    int mOrigin;
    bool mIsDone;
    unsigned long long mPosition;  // afterwards
  } CASES[] = {
      {36, File::ORIGIN_CURRENT, true, 36},
      {-30, File::ORIGIN_CURRENT, true, 6},
      {-7, File::ORIGIN_CURRENT, false, 6},
      {39999, File::ORIGIN_BEGIN, true, 39999},
      {-1, File::ORIGIN_BEGIN, false, 39999},
      {-40000, File::ORIGIN_END, true, 0},
      {-40001, File::ORIGIN_END, false, 0},
      {0, File::ORIGIN_END, true, 40000},
      {16384, File::ORIGIN_BEGIN, true, 16384},
      {0, 3, false, 16384},
      {LLONG_MIN, File::ORIGIN_CURRENT, false, 16384},
  };
  for (const auto& lCase : CASES) {
    EXPECT_EQ(lCase.mIsDone, lFile.seek(lCase.mOffset, lCase.mOrigin)) << lCase.mOffset;
    EXPECT_EQ(lCase.mPosition, positionOf(lFile)) << lCase.mOffset;
    const std::string lRead = readAll(lFile, 5);
    EXPECT_EQ(lContent.substr(static_cast<size_t>(lCase.mPosition), 5), lRead) << lCase.mOffset;
    ASSERT_TRUE(lFile.seek(-static_cast<long long>(lRead.size()), File::ORIGIN_CURRENT));
  }
}

TEST_F(FileContract, GoesBeyondTheEndAndReadsNothingThere) {
  File lFile(make("0123456789").c_str());
  ASSERT_TRUE(lFile.open(0, 0));
  ASSERT_TRUE(lFile.seek(0xFFFFFFFFll + 1, File::ORIGIN_CURRENT));
  EXPECT_EQ(0x100000000ull, positionOf(lFile));
  EXPECT_EQ("", readAll(lFile, 4));
  EXPECT_FALSE(lFile.seek(LLONG_MAX, File::ORIGIN_CURRENT));
  ASSERT_TRUE(lFile.seek(8, File::ORIGIN_BEGIN));
  EXPECT_EQ("89", readAll(lFile, 4));
}

TEST_F(FileContract, ReachesBeyondFourGibibytes) {
  const long long FAR = 5ll << 30;
  const std::string lPath = mDir / "far";
  File lWriter(lPath.c_str());
  ASSERT_TRUE(lWriter.open(2, 1));
  ASSERT_TRUE(lWriter.seek(FAR, File::ORIGIN_BEGIN));
  if (lWriter.write("tail", 4) != 4) GTEST_SKIP() << "the file system has no files of this size";
  unsigned long long lSize = 0;
  File lReader(lPath.c_str());
  ASSERT_TRUE(lReader.open(0, 0));
  ASSERT_TRUE(lReader.getSize(&lSize));
  EXPECT_EQ(static_cast<unsigned long long>(FAR) + 4, lSize);
  ASSERT_TRUE(lReader.seek(-6, File::ORIGIN_END));
  EXPECT_EQ(std::string("\0\0tail", 6), readAll(lReader, 10));
}

TEST_F(FileContract, TellsWhetherTheOpenFileHasAName) {
  const std::string lPath = mDir / "named";
  File lWriter(lPath.c_str());
  EXPECT_TRUE(lWriter.hasName()) << "not open";
  ASSERT_TRUE(lWriter.open(2, 1));
  ASSERT_EQ(0, rename(lPath.c_str(), (mDir / "moved").c_str()));
  EXPECT_TRUE(lWriter.hasName());
  ASSERT_EQ(0, remove((mDir / "moved").c_str()));
  EXPECT_FALSE(lWriter.hasName());
}

TEST_F(FileContract, SeesWhatAWriterAppendsAfterTheEndWasMet) {
  const std::string lPath = mDir / "growing";
  File lWriter(lPath.c_str());
  File lReader(lPath.c_str());
  ASSERT_TRUE(lWriter.open(2, 1));
  ASSERT_TRUE(lReader.open(0, 0));
  EXPECT_EQ("", readAll(lReader, 3));
  for (const char* lpText : {"abc", "defg", "h"}) {
    ASSERT_TRUE(lWriter.writeLine(lpText));
    unsigned long long lSize = 0;
    EXPECT_TRUE(lReader.getSize(&lSize));
    EXPECT_EQ(positionOf(lWriter), lSize);
    char lLine[16];
    EXPECT_EQ(static_cast<int>(std::string(lpText).size()), lReader.readLine(lLine, sizeof(lLine)));
    EXPECT_STREQ(lpText, lLine);
    EXPECT_EQ(-3, lReader.readLine(lLine, sizeof(lLine)));
  }
}

TEST_F(FileContract, ReadsLines) {
  const struct {
    const char* mpWhat;
    std::string mContent;
    unsigned int mSize;
    std::string mJoined;  // each line as "[text]"
  } CASES[] = {
      {"empty file", "", 8, ""},
      {"line ends", "a\nb\r\nc", 8, "[a][b][c]"},
      {"empty lines", "\n\r\n\n", 8, "[][][]"},
      {"a carriage return elsewhere stays", "a\rb\n\r\r\nc\r", 8, "[a\rb][\r][c\r]"},
      {"as long as the buffer", "1234567\n1234567\r\n", 8, "[1234567][1234567]"},
      {"longer: the rest is consumed", "12345678\n123456789\r\nx", 8, "[1234567][1234567][x]"},
      {"room for the terminator only", "abc\nd", 1, "[][]"},
      {"longer than any read buffer", std::string(70000, 'x') + "\r\nnext\n" + std::string(70000, 'y'), 8,
       "[xxxxxxx][next][yyyyyyy]"},
      {"bytes of every kind", std::string("\0\x80\xFF=1\nk", 7), 8, std::string("[\0\x80\xFF=1][k]", 10)},
  };
  for (const auto& lCase : CASES) {
    File lFile(make(lCase.mContent).c_str());
    ASSERT_TRUE(lFile.open(0, 0));
    std::string lJoined;
    char lLine[8];
    int lLength;
    while ((lLength = lFile.readLine(lLine, lCase.mSize)) >= 0) {
      lJoined += "[" + std::string(lLine, static_cast<size_t>(lLength)) + "]";
      EXPECT_EQ('\0', lLine[lLength]) << lCase.mpWhat;
    }
    EXPECT_EQ(File::RESULT_EOF, lLength) << lCase.mpWhat;
    EXPECT_EQ(lCase.mJoined, lJoined) << lCase.mpWhat;
    EXPECT_EQ(lCase.mContent.size(), positionOf(lFile)) << lCase.mpWhat;
  }
}

TEST_F(FileContract, FindsALineEndAcrossReads) {
  for (size_t lBefore = 16380; lBefore < 16388; ++lBefore) {
    File lFile(make(std::string(lBefore, 'x') + "\r\nnext\n").c_str());
    ASSERT_TRUE(lFile.open(0, 0));
    std::string lLine(20000, '\0');
    EXPECT_EQ(static_cast<int>(lBefore), lFile.readLine(lLine.data(), 20000));
    EXPECT_EQ(lBefore + 2, positionOf(lFile));
    EXPECT_EQ("next\n", readAll(lFile, 9));
  }
}

TEST_F(FileContract, LinesBytesAndPositionsAgree) {
  File lFile(make("#1\nkey=value\nrest").c_str());
  ASSERT_TRUE(lFile.open(0, 0));
  char lLine[16];
  EXPECT_EQ(2, lFile.readLine(lLine, sizeof(lLine)));
  EXPECT_EQ(3u, positionOf(lFile));
  EXPECT_EQ("key=", readAll(lFile, 4));
  EXPECT_EQ(5, lFile.readLine(lLine, sizeof(lLine)));
  EXPECT_STREQ("value", lLine);
  ASSERT_TRUE(lFile.seek(3, File::ORIGIN_BEGIN));
  EXPECT_EQ(9, lFile.readLine(lLine, sizeof(lLine)));
  EXPECT_EQ(13u, positionOf(lFile));
}

}  // namespace
