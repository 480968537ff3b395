#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <nlohmann/json.hpp>
#include <thread>

#include "JsonRecord.h"
#include "LogReport.h"
#include "NfwNmeaDataParser.h"
#include "Output.h"
#include "OutputQueue.h"
#include "Window.h"

namespace {

using nlohmann::json;

TEST(Output, tellsAReaderThatWentAwayFromAFailure) {
  std::signal(SIGPIPE, SIG_IGN);
  int lPipe[2] = {};
  ASSERT_EQ(::pipe(lPipe), 0);
  tool::Output lPiped(lPipe[1]);
  lPiped.write("one\n");
  lPiped.flush();
  char lText[8] = {};
  EXPECT_EQ(::read(lPipe[0], lText, sizeof(lText)), 4);
  EXPECT_STREQ(lText, "one\n");
  ::close(lPipe[0]);
  lPiped.write("two\n");
  lPiped.flush();
  EXPECT_EQ(lPiped.getState(), tool::Output::READER_GONE);
  ::close(lPipe[1]);

  const int lFull = ::open("/dev/full", O_WRONLY);
  tool::Output lFailing(lFull);
  lFailing.write("one\n");
  EXPECT_EQ(lFailing.getState(), tool::Output::OPEN) << "still buffered";
  lFailing.flush();
  EXPECT_EQ(lFailing.getState(), tool::Output::FAILED);
  EXPECT_EQ(lFailing.getError(), ENOSPC);
  ::close(lFull);
}

TEST(OutputQueue, waitsForNoReaderAndCountsWhatIsNotTaken) {
  using std::chrono::milliseconds;
  std::signal(SIGPIPE, SIG_IGN);
  int lPipe[2] = {};
  ASSERT_EQ(::pipe(lPipe), 0);
  drive::OutputQueue lQueue(lPipe[1], 300000);  // more than the pipe takes
  ASSERT_TRUE(lQueue.start());
  const std::string lLines = std::string(999, 'x') + "\n" + std::string(999, 'y') + "\n";
  unsigned int lTaken = 0;
  while (lQueue.write(lLines)) ++lTaken;
  EXPECT_GE(lTaken, 149u);
  EXPECT_EQ(lQueue.lost(), 2u);
  std::thread lHeld([&] { lQueue.awaitRoom(); });
  EXPECT_FALSE(lQueue.drain(milliseconds(50)));
  lQueue.letGo();
  lHeld.join();
  EXPECT_FALSE(lQueue.finish(milliseconds(50)));
  EXPECT_GT(lQueue.lost(), 100u);
  EXPECT_FALSE(lQueue.write(lLines));
  ::close(lPipe[0]);  // lets the thread go
}

TEST(OutputQueue, writesEverythingInItsOrder) {
  int lPipe[2] = {};
  ASSERT_EQ(::pipe(lPipe), 0);
  std::string lRead;
  std::thread lReader([&] {
    char lText[777];
    for (ssize_t lSize = 1; (lSize = ::read(lPipe[0], lText, sizeof(lText))) > 0;) {
      lRead.append(lText, static_cast<size_t>(lSize));
    }
  });
  std::string lWritten;
  {
    drive::OutputQueue lQueue(lPipe[1], 5000);
    ASSERT_TRUE(lQueue.start());
    for (int i = 0; i < 20000; ++i) {
      const std::string lLine = std::to_string(i) + "\n";
      lQueue.awaitRoom();
      EXPECT_TRUE(lQueue.write(lLine));
      lWritten += lLine;
    }
    EXPECT_TRUE(lQueue.finish(std::chrono::seconds(20)));
    EXPECT_EQ(lQueue.lost(), 0u);
  }
  ::close(lPipe[1]);
  lReader.join();
  ::close(lPipe[0]);
  EXPECT_EQ(lRead, lWritten);
}

TEST(LogReport, speaksAtTheBeginningEveryTenSecondsAndAtTheEnd) {
  drive::LogReport lReport("the log");
  lReport.want("here");
  nfw::LogRecordCounts lCounts;
  std::vector<int> lSpoken;
  const auto lStart = drive::Spell::Clock::now();
  for (int lSecond = 0; lSecond < 60; ++lSecond) {
    ++lCounts.mRecorded;
    if (lSecond >= 5 && lSecond < 30) ++lCounts.mFailed;
    if (lSecond == 50) lCounts.mIsFailing = true;
    if (lSecond == 52) lCounts.mIsFailing = false;
    lCounts.mReason = nfw::LOG_LOSS_WRITE;
    lCounts.mError = ENOSPC;
    if (!lReport.look(lCounts, lStart + std::chrono::seconds(lSecond)).empty()) lSpoken.push_back(lSecond);
  }
  EXPECT_EQ(lSpoken, (std::vector<int>{5, 15, 25, 31, 50, 53}));
  EXPECT_EQ(lReport.getVerdict().find("the log in here: 25 of 85 records are missing (0 refused, 25 failed) since "),
            0u);
  EXPECT_NE(lReport.getVerdict().find(": the file cannot be written: No space left on device"), std::string::npos);
}

TEST(Window, neverHoldsMoreThanItsPlaces) {
  tool::Window lWindow(3);
  EXPECT_TRUE(lWindow.acquire(2));
  std::future<bool> lNext = std::async(std::launch::async, [&] { return lWindow.acquire(2); });
  for (int i = 0; i < 60000 && lWindow.heldBack() == 0; ++i) ::poll(nullptr, 0, 1);
  EXPECT_EQ(lNext.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
  lWindow.release();
  ASSERT_EQ(lNext.wait_for(std::chrono::seconds(60)), std::future_status::ready);
  EXPECT_TRUE(lNext.get());
  EXPECT_EQ(lWindow.heldBack(), 1u);
  lNext = std::async(std::launch::async, [&] { return lWindow.acquire(1); });
  lWindow.close();
  EXPECT_FALSE(lNext.get());
}

// The record of a sentence as JSON, read by an independent reader.
template <class Record>
json written(bool (*npParse)(char const*, unsigned int, Record*), const std::string& nSentence) {
  Record lRecord;
  EXPECT_TRUE(npParse(nSentence.c_str(), static_cast<unsigned int>(nSentence.size()), &lRecord)) << nSentence;
  std::string lText;
  tool::appendJson(lRecord, &lText);
  EXPECT_EQ(lText.find('\n'), lText.size() - 1) << "one line";
  return json::parse(lText);
}

TEST(JsonRecord, keepsACoordinateToItsLastDigit) {
  struct Case {
    const char* mpLatitude;
    const char* mpValue;
    double mDegrees;
  };
  const Case CASES[] = {{"4807.038,N", "4807.038", 48.1173},
                        {"4111.59903,N", "4111.59903", 41.1933171667},
                        {"0000.0001,S", "0.0001", -0.0000016667},
                        {"3715.66160000,S", "3715.6616", -37.261026666},
                        {"8959.99999999,N", "8959.99999999", 89.9999999998}};
  for (const Case& lCase : CASES) {
    nfw::GgaSentence lRecord;
    const std::string lSentence =
        std::string("$GPGGA,123519,") + lCase.mpLatitude + ",01131.000,E,1,08,0.9,545.4,M,46.9,M,,*00";
    ASSERT_TRUE(nfw::NmeaDataParser::parseGgaSentence(lSentence.c_str(), static_cast<unsigned int>(lSentence.size()),
                                                      &lRecord));
    std::string lText;
    tool::appendJson(lRecord, &lText);
    EXPECT_NE(lText.find("\"latitude\":{\"value\":" + std::string(lCase.mpValue) + ",\"direction\":"),
              std::string::npos)
        << lText;
    EXPECT_NEAR(json::parse(lText)["latitude"]["degrees"].get<double>(), lCase.mDegrees, 1e-9);
  }
}

TEST(JsonRecord, saysWhatTheSentenceSays) {
  using nfw::NmeaDataParser;
  const json lGga = written(&NmeaDataParser::parseGgaSentence, "$GNGGA,000102.5,,,,,0,,,,M,,M,,*00");
  EXPECT_EQ(lGga["type"], "GGA");
  EXPECT_EQ(lGga["system"], "combined");
  EXPECT_EQ(lGga["utc"], "00:01:02");
  EXPECT_EQ(lGga["millisecond"], 5);
  EXPECT_TRUE(lGga["latitude"].is_null());
  EXPECT_EQ(lGga["quality"], "invalid");
  const json lGsa = written(&NmeaDataParser::parseGsaSentence, "$GNGSA,A,3,01,,302,,,,,,,,,,1.5,0.9,1.2*00");
  EXPECT_EQ(lGsa["satellites"], (json{1, 302}));
  EXPECT_EQ(lGsa["fix"], "3D");
  const json lGsv =
      written(&NmeaDataParser::parseGsvSentence, "$GPGSV,2,1,05,01,40,083,46,02,17,308,,12,07,344,39,14,22,228,45*00");
  EXPECT_EQ(lGsv["satellites"].size(), 4u);
  EXPECT_EQ(lGsv["satellites"][1],
            (json{{"id", 2}, {"elevation", 17}, {"azimuth", 308}, {"snr", 0}, {"valid", false}}));
  const json lRmc = written(&NmeaDataParser::parseRmcSentence,
                            "$GPRMC,123519,A,4807.038,N,01131.000,W,022.4,084.4,230394,003.1,W,D*00");
  EXPECT_EQ(lRmc["date"], "2094-03-23");
  EXPECT_EQ(lRmc["magnetic_variation"], -3.1);
  EXPECT_EQ(lRmc["mode"], "differential");
  EXPECT_LT(lRmc["longitude"]["degrees"], 0.0);
}

}  // namespace
