#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "LogRecords.h"
#include "TempDir.h"

// The examples of a recorder and of a replay run as they stand.

namespace {

int call(const std::string& nCommand) { return std::system((NFW_EMULATOR " " + nCommand).c_str()); }

TEST(Example, recordsLinesAndPlaysThemBack) {
  const nfwtest::TempDir lDirectory;
  const std::string lPath = lDirectory / "";
  nfwtest::writeFile(lDirectory / "lines", "one\ntwo\nthree\n");
  std::filesystem::create_directory(lDirectory / "log");
  ASSERT_EQ(call(NFW_EXAMPLE_RECORD " " + lPath + "log < " + lPath + "lines > " + lPath + "out"), 0);
  EXPECT_EQ(nfwtest::readFile(lDirectory / "out"), "3 records, 0 lost, 0 files deleted\n");

  nfwtest::writeFile(lDirectory / "log/second.log",
                     nfwtest::logRecord(30, 0, "four") + nfwtest::logRecord(30, 900, "five"));
  ASSERT_EQ(call(NFW_EXAMPLE_REPLAY " " + lPath + "log/road_*.log " + lPath + "log/second.log > " + lPath + "heard"),
            0);
  const std::string lHeard = nfwtest::readFile(lDirectory / "heard");
  EXPECT_EQ(lHeard.find("one\n"), 0u) << lHeard;
  EXPECT_NE(lHeard.find("paused, "), std::string::npos) << lHeard;
  EXPECT_NE(lHeard.find("four\nfive\nonce more from the middle\n"), std::string::npos) << lHeard;
  EXPECT_EQ(lHeard.substr(lHeard.size() - 5), "five\n") << lHeard;
}

}  // namespace
