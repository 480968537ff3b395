// What prune deletes, tells and refuses.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "LogBytes.h"
#include "LogToolRun.h"
#include "TempDir.h"

namespace {

using logtest::runTool;
using Words = std::vector<std::string>;

const std::string OLD = "drive_20200101-000000_0";  // and its number

class Prune : public testing::Test {
 protected:
  /// Four files of one recording, the last but one of which is three days old, as those before it; and others beside
  /// it.
  Prune() {
    const std::string lRecord = logtest::logRecord(20, 1000, "$GPGGA,1\r\n", "2020/01/01 00:00:00.000");
    mSize = lRecord.size();
    for (const char lNumber : {'0', '1', '2', '3'}) nfwtest::writeFile(mDir / OLD + lNumber + ".log", lRecord);
    nfwtest::writeFile(mDir / "trip_20200101-000000_00.log", lRecord);
    nfwtest::writeFile(mDir / "notes.txt", "mine");
    const timespec lOld[2] = {{::time(nullptr) - 3 * 86400, 0}, {::time(nullptr) - 3 * 86400, 0}};
    for (const char lNumber : {'0', '1', '2'}) ::utimensat(AT_FDCWD, (mDir / OLD + lNumber + ".log").c_str(), lOld, 0);
  }
  int prune(Words nLimits) {
    nLimits.insert(nLimits.begin(), {"prune", mDir.path()});
    return runTool(nLimits, &mOutput, &mErrors);
  }
  std::string left() const {
    std::string lLeft;
    for (const char lNumber : {'0', '1', '2', '3'}) {
      if (std::filesystem::exists(mDir / OLD + lNumber + ".log")) lLeft += lNumber;
    }
    return lLeft;
  }

  nfwtest::TempDir mDir;
  size_t mSize = 0;
  std::string mOutput, mErrors;
};

TEST_F(Prune, deletesWhatADryRunTells) {
  const struct {
    Words mLimits;
    std::string mLeft;
  } CASES[] = {
      {{"--keep-files", "9"}, "0123"},
      {{"--keep-total", std::to_string(4 * mSize)}, "0123"},
      {{"--keep-total", std::to_string(4 * mSize - 1)}, "123"},
      {{"--keep-files", "2", "--keep-age", "30d"}, "23"},
      {{"--keep-age", "2d"}, "3"},
  };
  for (const auto& lCase : CASES) {
    const std::string lBefore = left();
    Words lDry = lCase.mLimits;
    lDry.push_back("--dry-run");
    EXPECT_EQ(prune(lDry), 0) << mErrors;
    EXPECT_EQ(left(), lBefore);
    std::string lTold = mOutput;
    EXPECT_EQ(prune(lCase.mLimits), 0) << mErrors;
    EXPECT_EQ(left(), lCase.mLeft) << mOutput;
    const size_t lWould = lTold.find("would be ");
    ASSERT_NE(lWould, std::string::npos);
    EXPECT_EQ(lTold.erase(lWould, 9), mOutput);
  }
  EXPECT_EQ(mOutput, mDir / OLD + "2.log: " + std::to_string(mSize) + " bytes\n1 of 3 files deleted, " +
                         std::to_string(mSize) + " bytes\n");
  EXPECT_EQ(prune({"--keep-free", "4611686018427387904", "--prefix", "drive"}), 0);
  EXPECT_EQ(left(), "3") << "the newest stays";
  EXPECT_EQ(nfwtest::readFile(mDir / "notes.txt"), "mine");
}

TEST_F(Prune, leavesAFileThatIsWrittenTo) {
  const int lFile = ::open((mDir / OLD + "0.log").c_str(), O_WRONLY);
  const Words LIMITS = {"--keep-files", "2"};
  EXPECT_EQ(prune({"--keep-files", "2", "--dry-run"}), 0);
  const std::string lTold = mOutput;
  EXPECT_EQ(prune(LIMITS), 0);
  EXPECT_EQ(left(), "03") << lTold;
  EXPECT_EQ(lTold.find("_00.log"), std::string::npos);
  ::close(lFile);
}

TEST_F(Prune, tellsWhatItCannotDo) {
  const struct {
    Words mWords;
    std::string mError;
  } CASES[] = {
      {{mDir.path()}, "expected --keep-total, --keep-files, --keep-age or --keep-free"},
      {{mDir.path(), "--keep-age", "old"}, "--keep-age: \"old\" is no age: expected a number and s, m, h or d, as 30d"},
      {{mDir.path(), "--keep-age", "0"}, "--keep-age: \"0\" is no age"},
      {{mDir.path(), "--keep-age", "30"}, "--keep-age: \"30\" is no age: expected a number and s, m, h or d, as 30d"},
      {{mDir.path(), "--keep-files", "0"}, "--keep-files"},
      {{mDir / "notes.txt", "--keep-files", "1"}, "notes.txt: no directory; expected the directory of a recording"},
      {{mDir.path(), "--keep-files", "1", "--prefix", "none"}, "with such a prefix"},
      {{mDir / "nothing", "--keep-files", "1"}, "nothing: No such file or directory"},
  };
  for (const auto& lCase : CASES) {
    Words lWords = lCase.mWords;
    lWords.insert(lWords.begin(), "prune");
    EXPECT_EQ(runTool(lWords, &mOutput, &mErrors), 2) << lCase.mError;
    EXPECT_NE(mErrors.find(lCase.mError), std::string::npos) << mErrors;
  }
  EXPECT_EQ(left(), "0123");
}

}  // namespace
