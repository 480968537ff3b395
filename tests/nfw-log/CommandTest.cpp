// What the commands say and refuse.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <thread>

#include "CommandLine.h"
#include "LogBytes.h"
#include "LogToolRun.h"
#include "TempDir.h"

namespace {

using logtest::logRecord;
using logtest::runTool;
using nfwtest::readFile;
using nfwtest::writeFile;
using nlohmann::json;

const char* const FIRST = "2026/01/31 23:59:59.000";
const char* const LATER = "2026/02/01 00:00:07.500";

class Command : public testing::Test {
 protected:
  /// Two recordings, one of three files; something else lies about.
  Command() {
    writeFile(mDir / "b_20260131-235959_00.log", logRecord(20, 1000, "$GPGGA,1\r\n", FIRST));
    writeFile(mDir / "b_20260131-235959_01.log", logRecord(20, 2000, "$GPRMC,2\r\n", FIRST));
    writeFile(mDir / "b_20260201-000000_00.log", logRecord(255, 9500, "last\x01", LATER));
    writeFile(mDir / "a_20260301-000000_00.log", logRecord(7, 5, "other", LATER));
    writeFile(mDir / "notes.txt", "nothing of ours\n");
  }
  nfwtest::TempDir mDir;
  std::string mOutput, mErrors;
};

TEST_F(Command, catShowsADirectoryInTheOrderOfItsFiles) {
  EXPECT_EQ(runTool({"cat", mDir.path()}, &mOutput), 0);
  EXPECT_EQ(mOutput,
            "2026-02-01 00:00:07.500 7 other\n2026-01-31 23:59:59.000 20 $GPGGA,1\n"
            "2026-01-31 23:59:59.000 20 $GPRMC,2\n2026-02-01 00:00:07.500 255 last\\x01\n");
}

TEST_F(Command, momentsSelect) {
  struct Case {
    std::vector<std::string> mOptions;
    std::string mIds;
  };
  const Case CASES[] = {
      {{"--from", "1"}, "20 255 "},
      {{"--from", "1000ms", "--to", "8.5"}, "20 "},
      {{"--to", "0.1m"}, "20 20 "},
      {{"--from", "00:00"}, "255 "},
      {{"--from", "23:59:59", "--until", "00:00:07.5"}, "20 20 "},
      {{"--from", "2026-02-01 00:00:07.5"}, "255 "},
      {{"--to", "2026/02/01T00:00"}, "20 20 "},
      {{"--from", "1h"}, ""},
  };
  std::string lBytes;
  for (const char* const lpName : {"20260131-235959_00", "20260131-235959_01", "20260201-000000_00"}) {
    lBytes += readFile(mDir / "b_" + lpName + ".log");
  }
  writeFile(mDir / "b", lBytes);
  for (const Case& lCase : CASES) {
    std::vector<std::string> lArguments = {"cat", "--json", mDir / "b"};
    lArguments.insert(lArguments.end(), lCase.mOptions.begin(), lCase.mOptions.end());
    EXPECT_EQ(runTool(lArguments, &mOutput), 0);
    std::string lIds;
    std::istringstream lLines(mOutput);
    for (std::string lLine; std::getline(lLines, lLine);) lIds += json::parse(lLine)["id"].dump() + " ";
    EXPECT_EQ(lIds, lCase.mIds) << lCase.mOptions[1];
  }
}

// Dead reckoning lags by an epoch, and the receiver's sentences come before the one with the date.
TEST_F(Command, eachIdOfASensorLogHasItsClock) {
  const std::string lDate = "\x1F\x01\x1A", lFile = mDir / "sensor.bin", lOut = mDir / "cut.bin";
  std::string lBytes;
  for (uint32_t i = 0; i < 4; ++i) {
    const uint32_t lTime = 80030000 + i * 1000, lTick = 5000 + i * 990;  // a receiver is never exactly on time
    const std::string lReport = logtest::binaryRmc(lTime - 1000, lDate).substr(1) + std::string(19 + 31 + 2 + 58, '\0');
    lBytes += logtest::sensorRecord(0, 1, lTick, logtest::binaryGga(lTime));
    lBytes += logtest::sensorRecord(0, 1, lTick + 1, logtest::binaryRmc(lTime, lDate));
    lBytes += logtest::sensorRecord(1, 1, lTick + 2, lReport);
  }
  writeFile(lFile, lBytes);
  const auto lTimes = [&](std::vector<std::string> nArguments) {
    EXPECT_EQ(runTool(nArguments, &mOutput), 0);
    std::string lTold;
    std::istringstream lLines(mOutput);
    for (std::string lLine; std::getline(lLines, lLine);) lTold += lLine.substr(0, 25) + "|";
    return lTold;
  };
  EXPECT_EQ(lTimes({"cat", "--type", "GGA", lFile}),
            "+0:00:00.000 0 $GPGGA,080|2026-01-31 08:00:31.000 0|"
            "2026-01-31 08:00:32.000 0|2026-01-31 08:00:33.000 0|");
  EXPECT_EQ(runTool({"cut", "--from", "08:00:32", lFile, "-o", lOut}), 0);
  EXPECT_EQ(lTimes({"cat", "--json", "--id", "0", lOut}).size(), 4 * 26u);
  EXPECT_EQ(lTimes({"cat", "--id", "1", "--type", "DR", "--from", "08:00:32", "--hex", lFile}),
            "2026-01-31 08:00:32.000 1|");
}

TEST_F(Command, infoCountsOverTheFilesOfADirectory) {
  EXPECT_EQ(runTool({"info", "--json", "--gap", "5", mDir.path()}, &mOutput), 0);
  json lInfo = json::parse(mOutput)["recordings"][1];
  EXPECT_EQ(lInfo["files"].size(), 3u);
  EXPECT_EQ(lInfo["records"], 3);
  EXPECT_EQ(lInfo["duration_ms"], 8500);
  EXPECT_EQ(lInfo["first"]["time"], "2026-01-31 23:59:59.000");
  EXPECT_EQ(lInfo["gaps"][0]["length_ms"], 7500);
}

TEST_F(Command, checkFindsWhatIsWrong) {
  EXPECT_EQ(runTool({"check", mDir.path()}), 0);
  const std::string lFile = mDir / "wrong.log";
  writeFile(lFile, logRecord(20, 90000000, "a") + logRecord(20, 1000, "b") + "noise" + logRecord(20, 1001, "c"));
  EXPECT_EQ(runTool({"check", "--json", lFile}, &mOutput), 1);
  const json lResult = json::parse(mOutput);
  EXPECT_EQ(lResult["records"], 3);
  ASSERT_EQ(lResult["finding_count"], 2);
  EXPECT_EQ(lResult["findings"][0]["expected"], "a tick of 90000000 or more");
  EXPECT_EQ(lResult["findings"][0]["offset"], 50);
  EXPECT_EQ(lResult["findings"][1]["offset"], 100);
  EXPECT_EQ(lResult["findings"][1]["length"], 5);
  writeFile(lFile, logtest::sensorRecord(0, 1, 5, "no sentence") + logtest::sensorRecord(2, 1, 6, "x"));
  EXPECT_EQ(runTool({"check", lFile}, &mOutput), 1);
  EXPECT_NE(mOutput.find("wrong.log: offset 0, 18 bytes: expected a sentence in version 1"), std::string::npos);
}

// Zeros are what a disk holds where nothing was written; a run of them is one damage.
TEST_F(Command, recoverLeavesOutWhatCheckRejects) {
  const std::string lFile = mDir / "damaged", lOut = mDir / "whole";
  const std::string lGood = logtest::sensorRecord(0, 1, 5, "\x06GP" + std::string(17, 'x'));
  const std::string lOther = logtest::sensorRecord(7, 0, 6, "anything"),
                    lWrong = logtest::sensorRecord(0, 1, 6, "none");
  struct Case {
    std::string mBytes, mWhole;
    int mFindings;
  };
  const std::string lNoDate = logRecord(20, 2, "b", "2024/13/06 07:08:09.010"), lLog = logRecord(20, 1, "a");
  const Case CASES[] = {
      {lGood + lOther + std::string(4096, '\0'), lGood + lOther, 1},
      {lGood + lWrong + lGood + std::string(300001, '\0') + lGood + lGood + std::string(9, '\0'),
       lGood + lGood + lGood + lGood, 3},
      {lLog + std::string(4096, '\0') + lLog + lNoDate, lLog + lLog, 2},
  };
  for (const Case& lCase : CASES) {
    writeFile(lFile, lCase.mBytes);
    EXPECT_EQ(runTool({"check", "--json", lFile}, &mOutput), 1);
    EXPECT_EQ(json::parse(mOutput)["finding_count"], lCase.mFindings) << mOutput;
    EXPECT_EQ(json::parse(mOutput)["bytes"], lCase.mBytes.size() - lCase.mWhole.size());
    EXPECT_EQ(runTool({"recover", lFile, "-o", lOut, "--force"}, nullptr, &mErrors), 0);
    EXPECT_EQ(readFile(lOut), lCase.mWhole) << mErrors;
    EXPECT_EQ(runTool({"check", lOut}, &mOutput), 0) << mOutput;
  }
}

TEST_F(Command, checkListsTheFirstHundredOfAKind) {
  std::string lBytes;
  for (uint32_t i = 0; i < 150; ++i) lBytes += logtest::sensorRecord(0, 1, i, "no sentence");
  writeFile(mDir / "wrong", lBytes + std::string(9, '\0'));
  EXPECT_EQ(runTool({"check", "--json", mDir / "wrong"}, &mOutput), 1);
  const json lResult = json::parse(mOutput);
  EXPECT_EQ(lResult["findings"].size(), 101u);
  EXPECT_EQ(lResult["finding_count"], 151);
  EXPECT_EQ(lResult["unlisted"], json({{"bounds", 0}, {"content", 50}, {"time", 0}, {"order", 0}}));
  EXPECT_EQ(runTool({"check", mDir / "wrong"}, &mOutput), 1);
  EXPECT_NE(
      mOutput.find("\n50 more findings of records that do not hold what their id says\n1 file, 150 whole records, "
                   "151 findings of 2709 bytes\n"),
      std::string::npos)
      << mOutput.substr(mOutput.size() - 300);
}

TEST_F(Command, refusesWhatItMust) {
  const std::string lLog = mDir / "a_20260301-000000_00.log", lOut = mDir / "out", lSensor = mDir / "sensor";
  writeFile(lOut, "mine");
  writeFile(lSensor, logtest::sensorRecord(3, 0, 1, "abc") + logtest::sensorRecord(3, 0, 2, ""));
  struct Case {
    std::vector<std::string> mArguments;
    int mExit;
    const char* mpSaid;
  };
  const Case CASES[] = {
      {{}, 2, "Try nfw-log --help"},
      {{"info"}, 2, "INPUT is required"},
      {{"info", mDir / "none"}, 2, "none: No such file"},
      {{"info", mDir / "notes.txt"}, 2, "notes.txt: no recording"},
      {{"check", mDir / "notes.txt"}, 2, "notes.txt: no recording"},
      {{"cut", lLog}, 2, "--output is required"},
      {{"cut", lLog, "-o", lOut}, 2, "out: exists; --force replaces it"},
      {{"cut", lLog, "-o", lLog, "--force"}, 2, "is an input and stays"},
      {{"cut", lLog, "-o", mDir / "no/such"}, 2, "cannot be made: No such file"},
      {{"cut", lLog, "-o", lOut, "--from", "soon"}, 2, "\"soon\" is no moment"},
      {{"filter", lLog, "-o", lOut, "--id", "-1"}, 2, "--id"},
      {{"merge", lLog, lSensor, "-o", lOut, "--force"}, 2, "of both kinds"},
      {{"cut", lLog, lSensor, "-o", lOut, "--force"}, 2, "of both kinds"},
      {{"cut", mDir / "notes.txt", "-o", lOut, "--force"}, 2, "no recording"},
      {{"convert", lLog}, 2, "--to is required"},
      {{"cat", "--type", "FOO", lLog}, 2, "no record is of the type FOO"},
      {{"filter", "--type", "FOO,GGA", lLog, "-o", lOut, "--force"}, 2, "no record is of the type GGA"},
      {{"merge", "--type", "FOO", lLog, lLog, "-o", lOut, "--force"}, 2, "no record is of the type FOO"},
      {{"convert", "--type", "FOO", "--to", "gpx", lLog, "-o", lOut, "--force"}, 2, "no record is of the type FOO"},
      {{"cat", "--type", "$GPGGA", lLog}, 2, "\"$GPGGA\" is no type"},
      {{"cat", "--from", "10", "--to", "5", lLog}, 2, "\"10\" is not before the end, \"5\""},
      {{"cut", "--from", "10:00", "--to", "09:00", lLog, "-o", lOut, "--force"}, 2, "the end is before the begin"},
      {{"plot", lLog, "-o", mDir / "x.png"}, 2, "plot writes an SVG picture (.svg), or an HTML page (.html)"},
      {{"plot", lLog, "--html", "-o", mDir / "x.svg"}, 2, "an HTML page (.html) with --html"},
      {{"convert", "--to", "doc", lLog}, 2, "doc"},
      {{"plot", lLog, "-o", lOut, "--force"}, 1, "no position"},
      {{"cat", "--follow", "-"}, 2, "--follow"},
  };
  const size_t lFiles = mDir.files().size();
  for (const Case& lCase : CASES) {
    EXPECT_EQ(runTool(lCase.mArguments, nullptr, &mErrors), lCase.mExit) << lCase.mpSaid;
    EXPECT_NE(mErrors.find(lCase.mpSaid), std::string::npos) << mErrors;
    EXPECT_EQ(readFile(lOut), "mine");
    EXPECT_EQ(mDir.files().size(), lFiles);  // nothing half-done stays
  }
  EXPECT_EQ(runTool({"cut", lLog, "-o", lOut, "--force"}), 0);
  EXPECT_EQ(readFile(lOut), readFile(lLog));
  EXPECT_EQ(mDir.files().size(), lFiles);
}

// Standard error is full, or its reader has gone: the work is done all the same.
TEST_F(Command, isNotEndedByItsMessages) {
  const std::string lBad = mDir / "bad.log", lOut = mDir / "out";
  writeFile(lBad, "noise" + logRecord(20, 1, "$GPGGA,1\r\n") + "noise");
  int lPipe[2];
  ASSERT_EQ(::pipe(lPipe), 0);
  ::close(lPipe[0]);
  for (const int lErrors : {::open("/dev/full", O_WRONLY), lPipe[1]}) {
    for (const std::string lCommand : {"recover", "cat", "cut", "convert"}) {
      std::vector<const char*> lArguments = {"nfw-log", lCommand.c_str(), lBad.c_str(), "-o", lOut.c_str(), "--force"};
      if (lCommand == "convert") lArguments.insert(lArguments.end(), {"--to", "gpx"});
      const int lKept = ::dup(STDERR_FILENO);
      ::dup2(lErrors, STDERR_FILENO);
      const int lExit = logtool::runProgram(static_cast<int>(lArguments.size()), lArguments.data());
      ::dup2(lKept, STDERR_FILENO);
      ::close(lKept);
      EXPECT_EQ(lExit, 0) << lCommand;
      EXPECT_EQ(mDir.files().size(), 7u);  // no temporary one
    }
    ::close(lErrors);
  }
}

// Of any bytes: shown so that a terminal is not driven by them, written so that others can read them.
TEST_F(Command, namesOfFilesAreWrittenForTheirReader) {
  const std::string lFile = mDir / "Z\xC3\xBCrich\x1B[31m\xC2\x9B\xFF.log";
  writeFile(lFile, logRecord(20, 1, "$GPGLL,4717.1,N,00833.9,E,092700,A,A") + "noise");
  const std::string lShown = "/Z\xC3\xBCrich\\x1B[31m\\xC2\\x9B\\xFF.log";
  EXPECT_EQ(runTool({"info", lFile}, &mOutput), 0);
  EXPECT_NE(mOutput.find(lShown + "\nKind        log, 1 file, "), std::string::npos) << mOutput;
  EXPECT_EQ(runTool({"check", lFile}, &mOutput), 1);
  EXPECT_NE(mOutput.find(lShown + ": offset 85, 5 bytes: "), std::string::npos) << mOutput;
  EXPECT_NE(mOutput.find("1 file, 1 whole record, 1 finding of 5 bytes\n"), std::string::npos) << mOutput;
  EXPECT_EQ(runTool({"cat", lFile}, nullptr, &mErrors), 0);
  EXPECT_NE(mErrors.find(lShown + ": offset 85"), std::string::npos) << mErrors;
  EXPECT_EQ(runTool({"info", "--json", lFile}, &mOutput), 0);
  const std::string lName = json::parse(mOutput)["recordings"][0]["recording"];
  EXPECT_EQ(lName, mDir / "Z\xC3\xBCrich\x1B[31m\xC2\x9B\xEF\xBF\xBD.log");
  EXPECT_EQ(runTool({"plot", lFile}, &mOutput), 0);
  EXPECT_NE(mOutput.find("<title>Z\xC3\xBCrich?[31m??.log</title>"), std::string::npos);
}

// On one clock where the system was started anew between, or when asked to; at equal times as they are named.
TEST_F(Command, mergeOrdersByTheTicksOfOneClock) {
  const auto lRecord = [](int nId, uint32_t nTick, const char* npSeconds) {
    return logRecord(nId, nTick, "x", std::string("2026/01/31 10:00:") + npSeconds);
  };
  const std::string lEarly = lRecord(1, 70000, "00.000") + lRecord(1, 71000, "01.000");
  const struct {
    std::string mFirst, mSecond, mMerged;
    const char *mpOption, *mpSaid;
  } CASES[] = {
      {lEarly, lRecord(2, 1000, "00.500"),
       lRecord(1, 70000, "00.000") + lRecord(2, 70500, "00.500") + lRecord(1, 71000, "01.000"), "--force",
       "second: of another start of the system: 69500 ms added"},
      {lEarly, lRecord(2, 70000, "00.000"),
       lRecord(1, 70000, "00.000") + lRecord(2, 70000, "00.000") + lRecord(1, 71000, "01.000"), "--force", ""},
      {lEarly, lRecord(2, 71000, "00.000"), lEarly + lRecord(2, 71000, "00.000"), "--force", ""},
      {lEarly, lRecord(2, 71000, "00.000"),
       lRecord(1, 70000, "00.000") + lRecord(2, 70000, "00.000") + lRecord(1, 71000, "01.000"), "--by-time",
       "second: of another start of the system: -1000 ms added"},
  };
  for (const auto& lCase : CASES) {
    writeFile(mDir / "first", lCase.mFirst);
    writeFile(mDir / "second", lCase.mSecond);
    EXPECT_EQ(runTool({"merge", "--force", lCase.mpOption, mDir / "first", mDir / "second", "-o", mDir / "out"},
                      nullptr, &mErrors),
              0);
    EXPECT_NE(mErrors.find(lCase.mpSaid), std::string::npos) << mErrors;
    EXPECT_EQ(readFile(mDir / "out"), lCase.mMerged) << lCase.mpOption;
  }
}

TEST_F(Command, aSignalLeavesNothingHalfDone) {
  int lPipe[2];
  ASSERT_EQ(::pipe(lPipe), 0);
  const size_t lFiles = mDir.files().size();
  const pid_t lChild = ::fork();
  if (lChild == 0) {
    ::dup2(lPipe[0], STDIN_FILENO);
    ::_exit(runTool({"recover", "-", "-o", mDir / "out"}));
  }
  const std::string lRecord = logRecord(20, 1, "$GPGGA,1\r\n");
  ASSERT_EQ(::write(lPipe[1], lRecord.data(), lRecord.size()), static_cast<ssize_t>(lRecord.size()));
  for (int i = 0; i < 60000 && mDir.files().size() == lFiles; ++i) ::poll(nullptr, 0, 1);
  EXPECT_EQ(mDir.files().size(), lFiles + 1) << "written beside, and renamed at the end";
  ::kill(lChild, SIGTERM);
  int lStatus = 0;
  ASSERT_EQ(::waitpid(lChild, &lStatus, 0), lChild);
  EXPECT_TRUE(WIFSIGNALED(lStatus));
  EXPECT_EQ(mDir.files().size(), lFiles);
  ::close(lPipe[0]), ::close(lPipe[1]);
}

// More than the files that a process may have open: those that follow each other never are together.
TEST_F(Command, mergeTakesAnyNumberOfRecordings) {
  rlimit lLimit = {};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &lLimit), 0);
  const rlimit lFew = {40, 40};
  const nfwtest::TempDir lDir;
  std::vector<std::string> lArguments = {"merge", "-o", mDir / "out"};
  std::string lAll;
  for (uint32_t i = 0; i < 120; ++i) {
    writeFile(lDir / std::to_string(i), logRecord(1, i * 10, "a") + logRecord(1, i * 10 + 12, "b"));
    lArguments.push_back(lDir / std::to_string(i));
    if (i > 0) lAll += logRecord(1, i * 10 + 2, "b");
    lAll += i == 0    ? logRecord(1, 0, "a") + logRecord(1, 10, "a")
            : i < 119 ? logRecord(1, i * 10 + 10, "a")
                      : logRecord(1, 1202, "b");
  }
  const pid_t lChild = ::fork();  // what it may open is not given back
  if (lChild == 0) ::_exit(::setrlimit(RLIMIT_NOFILE, &lFew) == 0 ? runTool(lArguments) : 9);
  int lStatus = 0;
  ASSERT_EQ(::waitpid(lChild, &lStatus, 0), lChild);
  EXPECT_EQ(lStatus, 0);
  EXPECT_EQ(readFile(mDir / "out"), lAll);
}

// A clock that was set back gives later files earlier names; another start of the system has ticks of its own.
TEST_F(Command, aDirectoryIsReadInTheOrderOfItsTicks) {
  const nfwtest::TempDir lDir;
  const auto lPut = [&](const std::string& nTime, uint32_t nFrom, const std::string& nData) {
    writeFile(lDir / ("d_20260131-" + nTime + "_00.log"),
              logRecord(1, nFrom, nData + "1") + logRecord(1, nFrom + 5000, nData + "2"));
  };
  const auto lShown = [&] {
    EXPECT_EQ(runTool({"cat", lDir.path()}, &mOutput, &mErrors), 0);
    std::string lData;
    std::istringstream lLines(mOutput);
    for (std::string lLine; std::getline(lLines, lLine);) lData += lLine.substr(26) + " ";
    return lData;
  };
  lPut("100000", 1000, "a"), lPut("101000", 7000, "b"), lPut("110000", 100, "x"), lPut("111000", 5200, "y");
  EXPECT_EQ(lShown(), "a1 a2 b1 b2 x1 x2 y1 y2 ");  // two starts, in the order of their names
  EXPECT_EQ(mErrors, "");
  lPut("092000", 13000, "c"), lPut("093000", 19000, "d");
  EXPECT_EQ(lShown(), "a1 a2 b1 b2 c1 c2 d1 d2 x1 x2 y1 y2 ");
  EXPECT_NE(mErrors.find("/d: a clock was set while recording: by their ticks d_20260131-092000_00.log behind "
                         "d_20260131-101000_00.log\n"),
            std::string::npos)
      << mErrors;
}

TEST_F(Command, aFileThatIsJustBegunIsTheLast) {
  const nfwtest::TempDir lDir;
  writeFile(lDir / "d_20260131-100000_00.log", logRecord(1, 1000, "one"));
  writeFile(lDir / "d_20260131-090000_00.log", "");
  EXPECT_EQ(runTool({"info", "--json", lDir.path()}, &mOutput, &mErrors), 0);
  EXPECT_EQ(json::parse(mOutput)["recordings"][0]["files"][1]["size"], 0);
  EXPECT_NE(mErrors.find("d_20260131-090000_00.log, which is empty, last"), std::string::npos) << mErrors;
}

TEST_F(Command, followsARecorderIntoItsNextFile) {
  const nfwtest::TempDir lDir;
  const std::string lFirst = lDir / "d_20260131-000000_00.log";
  const std::string lRecord = logRecord(1, 1000, "two");
  writeFile(lFirst, logRecord(1, 1000, "one") + lRecord.substr(0, 20));
  std::thread lRecorder([&] {
    std::ofstream(lFirst, std::ios::app | std::ios::binary) << lRecord.substr(20);
    writeFile(mDir / "next", logRecord(1, 3000, "three") + logRecord(1, 99000, "end"));
    std::rename((mDir / "next").c_str(), (lDir / "d_20260130-230000_00.log").c_str());  // a clock that was set back
  });
  EXPECT_EQ(runTool({"cat", "--follow", "--to", "60", lDir.path()}, &mOutput, &mErrors), 0);
  lRecorder.join();
  EXPECT_EQ(mOutput, "2024-05-06 07:08:09.010 1 one\n2024-05-06 07:08:09.010 1 two\n2024-05-06 07:08:09.010 1 three\n");
  EXPECT_TRUE(mErrors.empty() || mErrors.find("a clock was set") != mErrors.npos) << mErrors;
}

}  // namespace
