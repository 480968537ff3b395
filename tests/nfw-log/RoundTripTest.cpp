// What nfw-log makes of recordings, record by record.
#include <gtest/gtest.h>

#include "LogBytes.h"
#include "LogToolRun.h"
#include "Split.h"

namespace {

const int EPOCHS = 4;
const char* const GGA = "$GPGGA,092710.000,4807.03800,N,01131.00000,E,1,08,0.00,0.0,M,0.0,M,,*5b\r\n";
const char* const RMC = "$GPRMC,092710.000,A,4807.03800,N,01131.00000,E,0.000,0.00,091202,0.0,E,A*32\r\n";

/// A recording of each kind, an epoch every 100 ms: sentences of the receiver, of dead reckoning, and a line. Its
/// records are named by letters: "abc" is the first epoch.
class RoundTrip : public logtest::LogTool, public testing::WithParamInterface<bool> {
 protected:
  RoundTrip() {
    for (uint32_t i = 0; i < EPOCHS; ++i) {
      const std::string lLine = "line " + std::to_string(i);
      const uint32_t lTick = 7000 + i * 100;
      const std::string lReport =
          logtest::binaryRmc(92710000, "\x09\x0C\x02").substr(1) + std::string(19 + 31 + 2 + 58, '\0');
      if (GetParam()) {
        mRecords.insert(mRecords.end(), {logtest::logRecord(20, lTick, GGA), logtest::logRecord(21, lTick, RMC),
                                         logtest::logRecord(255, lTick, lLine)});
      } else {
        mRecords.insert(mRecords.end(),
                        {logtest::sensorRecord(0, 1, lTick, logtest::binaryGga(92710000)),
                         logtest::sensorRecord(1, 1, lTick, lReport), logtest::sensorRecord(9, 1, lTick, lLine)});
      }
    }
    nfwtest::writeFile(mDir / "whole", records("abcdefghijkl"));
  }

  std::string records(const std::string& nLetters) const {
    std::string lBytes;
    for (const char lLetter : nLetters) lBytes += mRecords[static_cast<size_t>(lLetter - 'a')];
    return lBytes;
  }

  std::vector<std::string> mRecords;
};
INSTANTIATE_TEST_SUITE_P(BothKinds, RoundTrip, testing::Bool());

// Each makes a file that those below it may read.
TEST_P(RoundTrip, cutFilterAndMergeKeepWhatIsAskedFor) {
  const char* const CASES[][4] = {
      // of the log, of the sensor log, the new file, its records
      {"cut --to 250ms whole", nullptr, "head", "abcdefghi"},
      {"cut --from 250ms whole", nullptr, "tail", "jkl"},
      {"merge tail head", nullptr, "again", "abcdefghijkl"},
      {"filter --id 20 whole", "filter --id 0 whole", "first", "adgj"},
      {"filter --type rmc whole", "filter --type DR whole", "second", "behk"},
      {"filter --id 0x15,20 --type GGA,RMC whole", "filter --id 1,0 whole", "both", "abdeghjk"},
      {"filter --type LOG whole", "filter --type DATA whole", "lines", "cfil"},
      {"merge first second", nullptr, "merged", "abdeghjk"},
      {"merge --id 20,255 lines first", "merge --id 0,9 lines first", "chosen", "cafdiglj"},
  };
  for (const auto& [lpLog, lpSensor, lpOut, lpRecords] : CASES) {
    SCOPED_TRACE(lpLog);
    std::vector<std::string> lArguments = nfwtest::split(GetParam() || lpSensor == nullptr ? lpLog : lpSensor, ' ');
    for (std::string& lArgument : lArguments) {
      if (std::ifstream(mDir / lArgument).good()) lArgument = mDir / lArgument;
    }
    lArguments.insert(lArguments.end(), {"-o", mDir / lpOut});
    output(lArguments);
    EXPECT_EQ(nfwtest::readFile(mDir / lpOut), records(lpRecords));
  }
}

// Of a report everything that a listener of the framework is given.
TEST_P(RoundTrip, sentencesComeOutAsTheyWentIn) {
  std::string lGga;
  for (int i = 0; i < EPOCHS; ++i) lGga += GGA;
  EXPECT_EQ(output({"convert", "--to", "nmea", mDir / "whole"}), lGga);
  const std::string lSecond = output({"convert", "--to", "nmea", "--id", GetParam() ? "21" : "1", mDir / "whole"});
  EXPECT_EQ(lSecond.find(RMC), 0u) << lSecond;
  EXPECT_EQ(std::count(lSecond.begin(), lSecond.end(), '\n'), EPOCHS * (GetParam() ? 1 : 4));
}

}  // namespace
