// What the commands say and refuse.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <regex>

#include "LogBytes.h"
#include "LogToolRun.h"
#include "Progress.h"
#include "Split.h"

namespace {

using logtest::has;
using logtest::logRecord;
using nfwtest::readFile;
using nfwtest::writeFile;
using nlohmann::json;

const char* const FIRST = "2026/01/31 23:59:59.000";
const char* const LATER = "2026/02/01 00:00:07.500";

class Command : public logtest::LogTool {
 protected:
  /// Two recordings, one of three files; something else lies about.
  Command() {
    writeFile(mDir / "b_20260131-235959_00.log", logRecord(20, 1000, "$GPGGA,1\r\n", FIRST));
    writeFile(mDir / "b_20260131-235959_01.log", logRecord(20, 2000, "$GPRMC,2\r\n", FIRST));
    writeFile(mDir / "b_20260201-000000_00.log", logRecord(255, 9500, "last\x01", LATER));
    writeFile(mDir / "a_20260301-000000_00.log", logRecord(7, 5, "other", LATER));
    writeFile(mDir / "notes.txt", "nothing of ours\n");
  }
  json written(const std::vector<std::string>& nArguments, int nExit = 0) {
    return json::parse(output(nArguments, nExit));
  }
  /// Of each line that it writes so many characters.
  std::string columns(const std::vector<std::string>& nArguments, size_t nFrom, size_t nSize = std::string::npos) {
    std::string lColumns;
    for (const std::string& lLine : nfwtest::split(output(nArguments), '\n')) {
      if (!lLine.empty()) lColumns += lLine.substr(nFrom, nSize) + "|";
    }
    return lColumns;
  }
};

TEST_F(Command, catShowsADirectoryInTheOrderOfItsFiles) {
  EXPECT_EQ(output({"cat", mDir.path()}),
            "2026-02-01 00:00:07.500 7 other\n2026-01-31 23:59:59.000 20 $GPGGA,1\n"
            "2026-01-31 23:59:59.000 20 $GPRMC,2\n2026-02-01 00:00:07.500 255 last\\x01\n");
}

TEST_F(Command, momentsSelect) {
  const struct {
    std::vector<std::string> mOptions;
    const char* mpIds;
  } CASES[] = {
      {{"--from", "1"}, "20|25|"},
      {{"--from", "1000ms", "--to", "8.5"}, "20|"},
      {{"--to", "0.1m"}, "20|20|"},
      {{"--from", "00:00"}, "25|"},
      {{"--from", "23:59:59", "--until", "00:00:07.5"}, "20|20|"},
      {{"--from", "2026-02-01 00:00:07.5"}, "25|"},
      {{"--to", "2026/02/01T00:00"}, "20|20|"},
      {{"--from", "1h"}, ""},
      {{"--last", "7.5"}, "20|25|"},
      {{"--last", "1h"}, "20|20|25|"},
      {{"--exclude", "0xFF,GGA"}, "20|"},
      {{"--exclude", "LOG,FOO"}, "20|20|"},
      {{"--match", "RMC", "--match", "as", "--match", "no"}, "20|25|"},
  };
  std::string lBytes;
  for (const char* const lpName : {"20260131-235959_00", "20260131-235959_01", "20260201-000000_00"}) {
    lBytes += readFile(mDir / "b_" + lpName + ".log");
  }
  writeFile(mDir / "b", lBytes);
  for (const auto& lCase : CASES) {
    std::vector<std::string> lArguments = {"cat", mDir / "b"};
    lArguments.insert(lArguments.end(), lCase.mOptions.begin(), lCase.mOptions.end());
    EXPECT_EQ(columns(lArguments, 24, 2), lCase.mpIds) << lCase.mOptions[1];
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
  EXPECT_EQ(columns({"cat", "--type", "GGA", lFile}, 0, 25),
            "+0:00:00.000 0 $GPGGA,080|2026-01-31 08:00:31.000 0|"
            "2026-01-31 08:00:32.000 0|2026-01-31 08:00:33.000 0|");
  output({"cut", "--from", "08:00:32", lFile, "-o", lOut});
  EXPECT_EQ(columns({"cat", "--id", "0", lOut}, 0, 0), "||||");
  EXPECT_EQ(columns({"cat", "--match", "GGA,080031", lFile}, 0, 25), "2026-01-31 08:00:31.000 0|");
  EXPECT_EQ(columns({"cat", "--id", "1", "--type", "DR", "--from", "08:00:32", "--hex", lFile}, 0, 25),
            "2026-01-31 08:00:32.000 1|");
}

TEST_F(Command, infoCountsOverTheFilesOfADirectory) {
  const std::string lInfo = output({"info", "--gap", "5", mDir.path()});
  EXPECT_TRUE(has(lInfo, "Kind        log, 3 files, 172 bytes\nRecords     3, 0.4 a second\n"));
  EXPECT_TRUE(has(lInfo, "\nFirst       2026-01-31 23:59:59.000 local time, tick 1000\n"));
  EXPECT_TRUE(has(lInfo, "\nDuration    0:00:08.500\n"));
  EXPECT_TRUE(has(lInfo, "Gaps        1\n            at 0:00:01.000, 0:00:07.500 long, " +
                             mDir / "b_20260201-000000_00.log: offset 0\nTicks back  0\n"));
  std::string lMany;
  for (int i = 0; i < 4098; ++i) lMany += logRecord(i, 8000u * static_cast<unsigned int>(std::min(i, 5)), "");
  writeFile(mDir / "many", lMany);
  const std::string lInfoOfMany = output({"info", "--gap", "5", mDir / "many"});
  EXPECT_TRUE(has(lInfoOfMany, "\nId 4095     1 record, 0 bytes, 0.0 a second:  DATA 1\nId others   2 records, "));
  EXPECT_TRUE(has(lInfoOfMany, "\nGaps        5\n") && !has(lInfoOfMany, " more\n")) << lInfoOfMany;
}

TEST_F(Command, helpIsGivenWhenAskedFor) {
  EXPECT_EQ(output({"--version"}).find("nfw-log "), 0u);
  EXPECT_TRUE(has(output({"cut", "--help"}), "--force"));
}

TEST_F(Command, checkFindsWhatIsWrong) {
  output({"check", mDir.path()});
  const std::string lFile = mDir / "wrong.log";
  writeFile(lFile, logRecord(20, 90000000, "a") + logRecord(20, 1000, "b") + "noise" + logRecord(20, 1001, "c"));
  const std::string lFound = output({"check", lFile}, 1);
  EXPECT_TRUE(has(lFound, "wrong.log: offset 50, 50 bytes: expected a tick of 90000000 or more, found ")) << lFound;
  EXPECT_TRUE(has(lFound, "wrong.log: offset 100, 5 bytes: "));
  EXPECT_TRUE(has(lFound, "\n1 file, 3 whole records, 2 findings of "));
  writeFile(lFile, logtest::sensorRecord(0, 1, 5, "no sentence") + logtest::sensorRecord(2, 1, 6, "x"));
  EXPECT_TRUE(has(output({"check", lFile}, 1), "wrong.log: offset 0, 18 bytes: expected a sentence in version 1"));
}

// Zeros are what a disk holds where nothing was written; a run of them is one damage.
TEST_F(Command, recoverLeavesOutWhatCheckRejects) {
  const std::string lFile = mDir / "damaged", lOut = mDir / "whole";
  const std::string lGood = logtest::sensorRecord(0, 1, 5, "\x06GP" + std::string(17, 'x'));
  const std::string lOther = logtest::sensorRecord(7, 0, 6, "anything"),
                    lWrong = logtest::sensorRecord(0, 1, 6, "none");
  const std::string lNoDate = logRecord(20, 2, "b", "2024/13/06 07:08:09.010"), lLog = logRecord(20, 1, "a");
  const struct {
    std::string mBytes, mWhole;
    int mFindings;
    const char* mpSaid;
  } CASES[] = {
      {lGood + lOther + std::string(4096, '\0'), lGood + lOther, 1, "4096 bytes lost at 1 place"},
      {lGood + lWrong + lGood + std::string(300001, '\0') + lGood + lGood + std::string(9, '\0'),
       lGood + lGood + lGood + lGood, 3, " lost at 3 places"},
      {lLog + std::string(4096, '\0') + lLog + lNoDate, lLog + lLog, 2, " lost at 2 places"},
      {lLog + lLog.substr(0, 1), lLog, 1, ", 1 byte lost at 1 place"},
  };
  for (const auto& lCase : CASES) {
    writeFile(lFile, lCase.mBytes);
    const json lFound = written({"check", "--json", lFile}, 1);
    EXPECT_EQ(lFound["finding_count"], lCase.mFindings) << lFound;
    EXPECT_EQ(lFound["bytes"], lCase.mBytes.size() - lCase.mWhole.size());
    output({"recover", lFile, "-o", lOut, "--force"});
    EXPECT_EQ(readFile(lOut), lCase.mWhole) << mErrors;
    EXPECT_TRUE(has(mErrors, lCase.mpSaid));
    output({"check", lOut});
  }
}

TEST_F(Command, checkListsTheFirstHundredOfAKind) {
  std::string lBytes;
  for (uint32_t i = 0; i < 150; ++i) lBytes += logtest::sensorRecord(0, 1, i, "no sentence");
  writeFile(mDir / "wrong", lBytes + std::string(9, '\0'));
  const json lResult = written({"check", "--json", mDir / "wrong"}, 1);
  EXPECT_EQ(lResult["findings"].size(), 101u);
  EXPECT_EQ(lResult["finding_count"], 151);
  EXPECT_EQ(lResult["unlisted"], json({{"bounds", 0}, {"content", 50}, {"time", 0}, {"order", 0}}));
  EXPECT_TRUE(has(output({"check", mDir / "wrong"}, 1),
                  "\n50 more findings of records that do not hold what their id says\n1 file, 150 whole records, "
                  "151 findings of 2709 bytes\n"));
}

TEST_F(Command, refusesWhatItMust) {
  const std::string lLog = mDir / "a_20260301-000000_00.log", lOut = mDir / "out", lSensor = mDir / "sensor";
  writeFile(lOut, "mine");
  std::filesystem::create_directory(mDir / "empty");
  writeFile(lSensor, logtest::sensorRecord(3, 0, 1, "abc") + logtest::sensorRecord(3, 0, 2, ""));
  const struct {
    std::vector<std::string> mArguments;
    int mExit;
    const char* mpSaid;
  } CASES[] = {
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
      {{"filter", lLog, "-o", lOut, "--id", "x"}, 2, "\"x\" is no log type id"},
      {{"filter", lLog, "-o", lOut, "--id", "2147483648"}, 2, "\"2147483648\" is no log type id"},
      {{"filter", lLog, "-o", mDir / std::string(4090, 'x')}, 2, "cannot be made: File name too long"},
      {{"info", mDir / "empty"}, 2, "empty: no recording in this directory"},
      {{"info", "/proc/self/mem"}, 2, "/proc/self/mem: Input/output error"},
      {{"merge", lLog, lSensor, "-o", lOut, "--force"}, 2, "of both kinds"},
      {{"cut", lLog, lSensor, "-o", lOut, "--force"}, 2, "of both kinds"},
      {{"cut", mDir / "notes.txt", "-o", lOut, "--force"}, 2, "no recording"},
      {{"convert", lLog}, 2, "--to is required"},
      {{"cat", "--type", "FOO", lLog}, 2, "no record is of the type FOO"},
      {{"filter", "--type", "FOO,GGA", lLog, "-o", lOut, "--force"}, 2, "no record is of the type GGA"},
      {{"merge", "--type", "FOO", lLog, lLog, "-o", lOut, "--force"}, 2, "no record is of the type FOO"},
      {{"convert", "--type", "FOO", "--to", "gpx", lLog, "-o", lOut, "--force"}, 2, "no record is of the type FOO"},
      {{"cat", "--type", "$GPGGA", lLog}, 2, "\"$GPGGA\" is no type"},
      {{"cat", "--exclude", "GGA,$", lLog}, 2, "--exclude: \"$\" is no type"},
      {{"cat", "--match", "", lLog}, 2, "--match: takes a text"},
      {{"filter", "--match", "OTHER", lLog, "-o", lOut, "--force"},
       2,
       "no record of what was selected has the text \"OTHER"},
      {{"cat", "--last", "08:15", lLog}, 2, "\"08:15\" is no length of time"},
      {{"cat", "--last", "5", "--from", "1", lLog}, 2, "--from excludes --last"},
      {{"cat", "--last", "5", "-"}, 2, "--last: standard input can be read only once"},
      {{"cat", "--from", "10", "--to", "5", lLog}, 2, "\"10\" is not before the end, \"5\""},
      {{"cut", "--from", "10:00", "--to", "09:00", lLog, "-o", lOut, "--force"}, 2, "the end is before the begin"},
      {{"plot", lLog, "-o", mDir / "x.png"}, 2, "plot writes an SVG picture (.svg), or an HTML page (.html)"},
      {{"plot", lLog, "--html", "-o", mDir / "x.svg"}, 2, "an HTML page (.html) with --html"},
      {{"convert", "--to", "doc", lLog}, 2, "doc"},
      {{"plot", lLog, "-o", lOut, "--force"}, 1, "no position"},
      {{"cat", "--follow", "-"}, 2, "--follow"},
  };
  const size_t lFiles = mDir.files().size();
  for (const auto& lCase : CASES) {
    output(lCase.mArguments, lCase.mExit);
    EXPECT_TRUE(has(mErrors, lCase.mpSaid));
    EXPECT_EQ(readFile(lOut), "mine");
    EXPECT_EQ(mDir.files().size(), lFiles);  // nothing half-done stays
  }
  output({"cut", lLog, "-o", lOut, "--force"});
  EXPECT_EQ(readFile(lOut), readFile(lLog));
  EXPECT_EQ(mDir.files().size(), lFiles);
}

// Of any bytes: shown so that a terminal is not driven by them, written so that others can read them.
TEST_F(Command, namesOfFilesAreWrittenForTheirReader) {
  const std::string lEdges = "\xE0\xA0\x80\xED\x9F\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";  // of what is a character
  const std::string lFile =
      mDir / "Z\xC3\xBCrich\x1B[31m\xC2\x9B" + lEdges + "\xE0\x9F\xBF\xED\xA0\x80\xF4\x90\x80\x80\xFF.log";
  writeFile(lFile, logRecord(20, 1, "$GPGLL,4717.1,N,00833.9,E,092700,A,A") + "noise");
  const std::string lShown =
      "/Z\xC3\xBCrich\\x1B[31m\\xC2\\x9B" + lEdges + "\\xE0\\x9F\\xBF\\xED\\xA0\\x80\\xF4\\x90\\x80\\x80\\xFF.log";
  EXPECT_TRUE(has(output({"info", lFile}), lShown + "\nKind        log, 1 file, "));
  const std::string lFound = output({"check", lFile}, 1);
  EXPECT_TRUE(has(lFound, lShown + ": offset 85, 5 bytes: "));
  EXPECT_TRUE(has(lFound, "1 file, 1 whole record, 1 finding of 5 bytes\n"));
  output({"cat", lFile});
  EXPECT_TRUE(has(mErrors, lShown + ": offset 85"));
  EXPECT_TRUE(has(written({"info", "--json", lFile})["recordings"][0]["recording"],
                  "/Z\xC3\xBCrich\x1B[31m\xC2\x9B" + lEdges + "\xEF\xBF\xBD\xEF\xBF\xBD"));
  EXPECT_TRUE(has(output({"plot", lFile}), "<title>Z\xC3\xBCrich?[31m?" + lEdges + "???????????.log</title>"));
  const std::string lLong = std::string(79, 'x') + "\xC3\xBC.log";  // cut between characters
  std::filesystem::rename(lFile, mDir / lLong);
  EXPECT_TRUE(has(output({"plot", mDir / lLong}), "<title>" + std::string(79, 'x') + "...</title>"));
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
    output({"merge", "--force", lCase.mpOption, mDir / "first", mDir / "second", "-o", mDir / "out"});
    EXPECT_TRUE(has(mErrors, lCase.mpSaid));
    EXPECT_EQ(readFile(mDir / "out"), lCase.mMerged) << lCase.mpOption;
  }
}

// Each recording keeps its own order, and it is told where that is not the order of its ticks.
TEST_F(Command, sortedRecordsOfSeveralRecordingsAreInTheOrderOfTheirTimes) {
  const auto lRecord = [](uint32_t nTick) { return logRecord(20, nTick, "$GPXXX," + std::to_string(nTick)); };
  writeFile(mDir / "first", lRecord(1000) + lRecord(3000) + lRecord(5000) + lRecord(4000));
  writeFile(mDir / "second", lRecord(2000) + lRecord(3000) + lRecord(9000));
  const std::vector<std::string> lInputs = {mDir / "first", mDir / "second"};
  const std::string lLines = output({"cat", "--sort", lInputs[0], lInputs[1]});
  std::string lOrder;
  for (size_t i = 0; (i = lLines.find("$GPXXX,", i)) != std::string::npos; ++i) lOrder += lLines[i + 7];
  EXPECT_EQ(lOrder, "1233549");
  EXPECT_TRUE(has(mErrors, "first: its ticks go back 1 time"));
  EXPECT_FALSE(has(mErrors, "second: its ticks"));
  output({"filter", "--sort", lInputs[0], lInputs[1], "-o", mDir / "sorted"});
  output({"merge", lInputs[0], lInputs[1], "-o", mDir / "merged"});
  EXPECT_TRUE(has(mErrors, "first: its ticks go back 1 time"));
  EXPECT_EQ(readFile(mDir / "sorted"), readFile(mDir / "merged"));
  EXPECT_EQ(readFile(mDir / "sorted").substr(0, 2 * lRecord(1000).size()), lRecord(1000) + lRecord(2000));
  output({"cat", "--sort", "--follow", lInputs[0]}, 2);
  output({"cat", "--sort", "--last", "1s", lInputs[0]}, 2);
}

TEST_F(Command, aSignalLeavesNothingHalfDone) {
  int lPipe[2];
  ASSERT_EQ(::pipe(lPipe), 0);
  const size_t lFiles = mDir.files().size();
  const pid_t lChild = ::fork();
  ASSERT_GE(lChild, 0);
  if (lChild == 0) {
    ::dup2(lPipe[0], STDIN_FILENO);
    output({"recover", "-", "-o", mDir / "out"});
    ::_exit(0);
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
  const rlimit lFew = {40, 40};  // not given back
  const nfwtest::TempDir lDir;
  std::vector<std::string> lArguments = {"merge", "-o", mDir / "out"};
  std::string lAll = logRecord(1, 0, "a");
  for (uint32_t i = 0; i < 120; ++i) {
    const std::string lLast = logRecord(1, i * 10 + 12, "b");
    writeFile(lDir / std::to_string(i), logRecord(1, i * 10, "a") + lLast);
    lArguments.push_back(lDir / std::to_string(i));
    lAll += (i < 119 ? logRecord(1, i * 10 + 10, "a") : "") + lLast;
  }
  const pid_t lChild = ::fork();
  if (lChild == 0) ::_exit(::setrlimit(RLIMIT_NOFILE, &lFew) != 0 || (output(lArguments), HasFailure()) ? 1 : 0);
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
  lPut("100000", 1000, "a");
  writeFile(lDir / "d_20260131-090000_00.log", "");
  EXPECT_EQ(written({"info", "--json", lDir.path()})["recordings"][0]["files"][1]["size"], 0);
  EXPECT_TRUE(has(mErrors, "d_20260131-090000_00.log, which is empty, last")) << "just begun";
  std::filesystem::remove(lDir / "d_20260131-090000_00.log");
  lPut("101000", 7000, "b"), lPut("110000", 100, "x"), lPut("111000", 5200, "y");
  EXPECT_EQ(columns({"cat", lDir.path()}, 26), "a1|a2|b1|b2|x1|x2|y1|y2|");  // two starts, in the order of their names
  EXPECT_EQ(mErrors, "");
  lPut("092000", 13000, "c"), lPut("093000", 19000, "d");
  EXPECT_EQ(columns({"cat", lDir.path()}, 26), "a1|a2|b1|b2|c1|c2|d1|d2|x1|x2|y1|y2|");
  EXPECT_TRUE(has(mErrors,
                  "/d: a clock was set while recording: by their ticks d_20260131-092000_00.log behind "
                  "d_20260131-101000_00.log\n"));
}

// Each line is there before the next is recorded; the clock of the recorder was set back for the last file.
TEST_F(Command, followsARecorderIntoItsNextFile) {
  const nfwtest::TempDir lDir;
  const std::string lFile = lDir / "d_20260131-000000_00.log", lSecond = logRecord(1, 1000, "two");
  const auto lAppend = [&](const std::string& nBytes) {
    std::ofstream(lFile, std::ios::app | std::ios::binary) << nBytes;
  };
  int lPipe[2];
  ASSERT_EQ(::pipe(lPipe), 0);
  lAppend(logRecord(1, 1000, "one") + lSecond.substr(0, 20));
  const pid_t lChild = ::fork();
  if (lChild == 0) {
    ::alarm(60);
    ::dup2(lPipe[1], STDOUT_FILENO);
    ::dup2(::open((mDir / "errors").c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
    const std::string lPath = lDir.path();
    const char* const ARGUMENTS[] = {"nfw-log", "cat", "--follow", "--to", "60", lPath.c_str()};
    ::_exit(logtool::runProgram(6, ARGUMENTS));
  }
  ::close(lPipe[1]);
  FILE* const lpOutput = ::fdopen(lPipe[0], "r");
  const auto lLine = [&] {
    char lText[100] = "";
    return std::string(std::fgets(lText, sizeof(lText), lpOutput) != nullptr ? lText + 26 : "nothing");
  };
  EXPECT_EQ(lLine(), "one\n");
  lAppend(lSecond.substr(20) + "noise" + logRecord(1, 2000, "three"));
  EXPECT_EQ(lLine(), "two\n");
  EXPECT_EQ(lLine(), "three\n");
  writeFile(mDir / "next", logRecord(1, 3000, "four") + logRecord(1, 99000, "end"));
  std::rename((mDir / "next").c_str(), (lDir / "d_20260130-230000_00.log").c_str());
  EXPECT_EQ(lLine(), "four\n");
  EXPECT_EQ(lLine(), "nothing");
  int lStatus = 0;
  EXPECT_EQ(::waitpid(lChild, &lStatus, 0), lChild);
  EXPECT_EQ(lStatus, 0);
  EXPECT_TRUE(has(readFile(mDir / "errors"), ".log: offset 104, 5 bytes: ")) << readFile(mDir / "errors");
  std::fclose(lpOutput);
}

// On a terminal, after a second: of 30 MB so little that minutes are left.
TEST(Progress, tellsHowFarARunIs) {
  const int lKept = ::dup(STDERR_FILENO);
  int lTerminal = -1, lLine = -1;
  ASSERT_EQ(::openpty(&lTerminal, &lLine, nullptr, nullptr, nullptr), 0);
  ::dup2(lLine, STDERR_FILENO);
  pollfd lFd = {lTerminal, POLLIN, 0};
  {
    logtool::Progress lProgress(30000000);
    const auto lLimit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (::poll(&lFd, 1, 0) == 0 && std::chrono::steady_clock::now() < lLimit) {
      for (int i = 0; i < 0x1000; ++i) lProgress.update(300000);
    }
  }
  ::dup2(lKept, STDERR_FILENO);
  const std::regex EXPECTED("\r\x1B\\[K293.0 KiB  \\d+.\\d KiB/s  1 %  [1-9]:\\d\\d left\r\x1B\\[K");
  std::string lText;
  for (char lByte = 0;
       !std::regex_match(lText, EXPECTED) && ::poll(&lFd, 1, 5000) == 1 && ::read(lTerminal, &lByte, 1) == 1;) {
    lText += lByte;
  }
  EXPECT_TRUE(std::regex_match(lText, EXPECTED)) << lText;
  for (const int lOpen : {lTerminal, lLine, lKept}) ::close(lOpen);
}

}  // namespace
