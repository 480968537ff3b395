#include <sys/stat.h>

#include <algorithm>
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

// As of a service: number 0 is the next descriptor's.
class WithoutInput {
 public:
  WithoutInput() { ::close(STDIN_FILENO); }
  ~WithoutInput() {
    dup2(mKept, STDIN_FILENO);
    ::close(mKept);
  }

 private:
  const int mKept = dup(STDIN_FILENO);
};

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

TEST_F(FileContract, OpensRegularFilesToReadAndCreatesToWrite) {
  const std::string lFile = make("x"), lFifo = mDir / "fifo", lDir = mDir.path(), lMissing = mDir / "missing";
  ASSERT_EQ(0, mkfifo(lFifo.c_str(), 0600));
  const struct {
    std::string mPath;
    int mMode, mCreate;
    bool mExists, mIsOpened;
  } CASES[] = {{lFile, 0, 0, true, true},         {lMissing, 0, 0, false, false},      {lDir, 0, 0, false, false},
               {lFifo, 0, 0, true, false},        {"/dev/null", 2, 1, true, true},     {lDir, 2, 1, false, false},
               {mDir / "new", 2, 1, false, true}, {mDir / "no/a", 2, 1, false, false}, {"", 0, 0, false, false},
               {"", 2, 1, false, false},          {mDir / "new", 0, 0, true, true}};
  for (const auto& lCase : CASES) {
    SCOPED_TRACE(lCase.mPath);
    File lOpened(lCase.mPath.c_str());
    EXPECT_TRUE(lOpened.exists() == lCase.mExists && File::exists(lCase.mPath.c_str()) == lCase.mExists);
    EXPECT_EQ(lCase.mIsOpened, lOpened.open(lCase.mMode, lCase.mCreate));
    EXPECT_EQ(lCase.mIsOpened, lOpened.isOpened());
    EXPECT_STREQ(lCase.mPath.c_str(), lOpened.getPath());
  }
  EXPECT_FALSE(File::exists(nullptr));
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
  {
    const WithoutInput lInput;
    EXPECT_TRUE(lFile.flush() && lFile.sync());
  }
  lFile.close();
  EXPECT_EQ("aBcline\n\n", readFile(lPath));
}

TEST_F(FileContract, KnowsTheOpenFileWhateverItsNameIsNow) {
  const std::string lPath = mDir / "a", lMoved = mDir / "moved";
  const WithoutInput lInput;
  unsigned long long lSize = 0;
  File lFile(lPath.c_str());
  EXPECT_TRUE(lFile.hasName()) << "not open";
  ASSERT_TRUE(lFile.open(2, 1));
  EXPECT_EQ(10, lFile.write("0123456789", 10));
  ASSERT_EQ(0, rename(lPath.c_str(), lMoved.c_str()));
  writeFile(lPath, "another one");
  EXPECT_TRUE(lFile.truncate(4));
  EXPECT_EQ(4u, positionOf(lFile));
  EXPECT_EQ(1, lFile.write("x", 1));
  EXPECT_EQ("0123x another one", readFile(lMoved) + " " + readFile(lPath));
  EXPECT_TRUE(lFile.getSize(&lSize) && lSize == 5 && lFile.hasName() && lFile.truncate(0));
  EXPECT_EQ("", readFile(lMoved));
  ASSERT_EQ(0, remove(lMoved.c_str()));
  EXPECT_FALSE(lFile.hasName());
}

TEST_F(FileContract, RefusesWhatItIsNotOpenFor) {
  char lBuffer[4];
  unsigned long long lNumber = 0;
  File lFile(make("x").c_str());
  const auto lReads = [&] { return lFile.read(lBuffer, 1) >= 0 || lFile.readLine(lBuffer, 4) >= 0; };
  const auto lWrites = [&] { return lFile.write("x", 1) >= 0 || lFile.writeLine("x") || lFile.truncate(0); };
  EXPECT_FALSE(lReads() || lWrites() || lFile.flush());
  EXPECT_FALSE(lFile.seek(0, File::ORIGIN_BEGIN) || lFile.getPosition(&lNumber) || lFile.getSize(&lNumber));
  ASSERT_TRUE(lFile.open(0, 0));
  EXPECT_FALSE(lWrites());
  lFile.close();
  ASSERT_TRUE(lFile.open(2, 1));
  EXPECT_FALSE(lReads());
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

TEST_F(FileContract, SeeksWithSignedDistancesAndReadsNothingBeyondTheEnd) {
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
      {0xFFFFC000, File::ORIGIN_CURRENT, true, 0x100000000},
      {LLONG_MAX, File::ORIGIN_CURRENT, false, 0x100000000},
      {8, File::ORIGIN_BEGIN, true, 8},
  };
  for (const auto& lCase : CASES) {
    EXPECT_EQ(lCase.mIsDone, lFile.seek(lCase.mOffset, lCase.mOrigin)) << lCase.mOffset;
    EXPECT_EQ(lCase.mPosition, positionOf(lFile)) << lCase.mOffset;
    const std::string lRead = readAll(lFile, 5);
    EXPECT_EQ(lContent.substr(static_cast<size_t>(std::min(lCase.mPosition, 40000ull)), 5), lRead) << lCase.mOffset;
    ASSERT_TRUE(lFile.seek(-static_cast<long long>(lRead.size()), File::ORIGIN_CURRENT));
  }
}

TEST_F(FileContract, SeesWhatAWriterAppendsAfterTheEndWasMet) {
  const std::string lPath = make("");
  File lWriter(lPath.c_str()), lReader(lPath.c_str());
  ASSERT_TRUE(lWriter.open(2, 1) && lReader.open(0, 0));
  for (const std::string lText : {"abc", "defg", "h"}) {
    unsigned long long lSize = 0;
    EXPECT_EQ("", readAll(lReader, 3));
    ASSERT_TRUE(lWriter.writeLine(lText.c_str()));
    EXPECT_TRUE(lReader.getSize(&lSize));
    EXPECT_EQ(positionOf(lWriter), lSize);
    char lLine[16];
    EXPECT_EQ(static_cast<int>(lText.size()), lReader.readLine(lLine, sizeof(lLine)));
    EXPECT_EQ(lText, lLine);
    EXPECT_EQ(File::RESULT_EOF, lReader.readLine(lLine, sizeof(lLine)));
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

}  // namespace
