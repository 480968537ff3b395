// What the page of a plot tells its script, and what it is made of. scripts/check-plot looks at it in a browser.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "ColourScale.h"
#include "LogBytes.h"
#include "LogToolRun.h"
#include "TempDir.h"

namespace {

using logtest::has;
using logtest::logRecord;
using nlohmann::json;

std::string pageOf(const std::string& nFile) {
  std::string lPage;
  EXPECT_EQ(logtest::runTool({"plot", "--html", nFile}, &lPage), 0);
  return lPage;
}

/// What stands in the page for its script.
json dataOf(const std::string& nPage) {
  const std::string lBegin = "id=\"data\">\n";
  const size_t lFrom = nPage.find(lBegin) + lBegin.size();
  return json::parse(nPage.substr(lFrom, nPage.find("\n</script>", lFrom) - lFrom));
}

std::string rmc(int nSecond, const char* npMode) {
  char lText[100];
  snprintf(lText, sizeof(lText), "$GNRMC,1200%02d,A,4807.%04d,N,01131.0000,E,010.0,084.4,010126,,,%s", nSecond,
           nSecond * 100, npMode);
  return lText;
}

TEST(PlotPage, itsScriptIsToldOfBothTracks) {
  const nfwtest::TempDir lDir;
  std::string lBytes;
  for (int i = 0; i < 8; ++i) {  // a tunnel of three seconds
    const uint32_t lTick = static_cast<uint32_t>(i) * 1000;
    if (i < 3 || i > 5) lBytes += logRecord(20, lTick, rmc(i, "A"));
    lBytes += logRecord(21, lTick, rmc(i, i < 3 || i > 5 ? "A" : "E"));
  }
  nfwtest::writeFile(lDir / "a<b.log", lBytes);
  const std::string lPage = pageOf(lDir / "a<b.log");
  EXPECT_TRUE(has(lPage, "<title>a&lt;b.log</title>"));
  EXPECT_TRUE(has(lPage, "default-src 'none'")) << "nothing is fetched";
  EXPECT_TRUE(has(lPage, "License: BSD-2-clause"));
  EXPECT_EQ(lPage.find("sourceMappingURL"), std::string::npos);
  const json lData = dataOf(lPage);
  EXPECT_EQ(lData["title"], "a<b.log");
  EXPECT_EQ(lData["utc"], true);
  ASSERT_EQ(lData["tracks"].size(), 2u);
  const json &lReceiver = lData["tracks"][0], &lReckoning = lData["tracks"][1];
  EXPECT_EQ(lReceiver["points"]["t"], json({1767268800000, 1000, 1000, 4000, 1000}));
  EXPECT_EQ(lReceiver["points"]["fix"], "11111");
  EXPECT_EQ(lReceiver["stats"]["positions"], 5);
  EXPECT_EQ(lReckoning["name"], "dead reckoning");
  EXPECT_EQ(lReckoning["points"]["fix"], "11144411");
  EXPECT_EQ(lReckoning["points"]["lat"], json({481166667, 1666, 1667, 1667, 1666, 1667, 1667, 1666}));
  EXPECT_EQ(lReckoning["bins"]["reckoned"], "00011100");
  EXPECT_EQ(lReckoning["bins"]["speed"]["mean"], json({185, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_FALSE(lReckoning["bins"]["speed"].contains("high"));
}

// Each satellite by the name that its operators give it, whatever range its receiver counts in.
TEST(PlotPage, satellitesHaveOneNameEach) {
  const struct {
    const char *mpSentences, *mpSatellites;  // name, signals and ways of each
  } CASES[] = {
      {"$GPGSV,1,1,02,05,42,168,40,33,10,200,", "G05 o [0,42,168]|S120 - [0,10,200]"},
      {"$GLGSV,1,1,01,67,43,167,40|$GLGSV,1,1,01,03,43,167,41", "R03 p [0,43,167]"},
      {"$GAGSV,1,1,01,302,24,186,33|$GBGSV,1,1,01,401,1,2,33|$BDGSV,1,1,01,02,1,2,33",
       "E02 h [0,24,186]|C01 h [0,1,2]|C02 h [0,1,2]"},
      {"$GQGSV,1,1,01,193,24,186,00|$GIGSV,1,1,01,4,,,99", "J01 - [0,24,186]|I04 / []"},
      {"$GNGSV,1,1,03,5,1,2,10,66,1,2,11,305,1,2,12,0", "G05 K [0,1,2]|R02 L [0,1,2]|E05 M [0,1,2]"},
      {"$GPGSV,1,1,01,05,42,168,30,1|$GPGSV,1,1,01,05,42,168,38,8", "G05 m [0,42,168]"},  // signals of one satellite
      {"$XXGSV,1,1,01,900,42,168,30|$GPGSV,1,1,01,,42,168,30", "X900 e [0,42,168]"},
  };
  const nfwtest::TempDir lDir;
  for (const auto& lCase : CASES) {
    std::string lBytes = logRecord(20, 0, rmc(0, "A")), lSatellites;
    for (std::string lRest = lCase.mpSentences; !lRest.empty();) {
      lBytes += logRecord(20, 0, lRest.substr(0, lRest.find('|')));
      lRest.erase(0, std::min(lRest.find('|'), lRest.size() - 1) + 1);
    }
    nfwtest::writeFile(lDir / "a.log", lBytes);
    const json lData = dataOf(pageOf(lDir / "a.log"));
    for (const json& lOne : lData["sky"]["satellites"]) {
      lSatellites += (lSatellites.empty() ? "" : "|") + lOne["name"].get<std::string>() + " " +
                     lOne["snr"].get<std::string>() + " " + lOne["way"].dump();
    }
    EXPECT_EQ(lSatellites, lCase.mpSatellites);
  }
}

// However long: as many stretches as a page can take, and nothing between two of them lost.
TEST(PlotPage, aLongSkyIsToldInStretches) {
  const nfwtest::TempDir lDir;
  std::string lBytes;
  for (int i = 0; i < 5000; ++i) {
    char lTime[40];
    snprintf(lTime, sizeof(lTime), "%02d%02d%02d", i / 3600, i / 60 % 60, i % 60);
    for (const int lId : {20, i == 4999 ? 21 : 255}) {  // the end is told twice
      lBytes += logRecord(lId, static_cast<uint32_t>(i) * 1000,
                          "$GPRMC," + std::string(lTime) + ",A,4807.0,N,01131.0,E,,,010126,,,A") +
                logRecord(lId, static_cast<uint32_t>(i) * 1000,
                          i == 4000    ? "$GPGSV,1,1,01,09,42,168,30"
                          : i % 2 != 0 ? "$GPGSV,1,1,01,05,42,168,30"
                                       : "$GPGSV,1,1,01,05,42,168,40");
    }
  }
  nfwtest::writeFile(lDir / "a.log", lBytes);
  const json lSky = dataOf(pageOf(lDir / "a.log"))["sky"];
  EXPECT_EQ(lSky["t"].size(), 1250u);
  const std::string lFirst = lSky["satellites"][0]["snr"], lOther = lSky["satellites"][1]["snr"];
  EXPECT_EQ(lFirst.substr(0, 1000).find_first_not_of("ji"), std::string::npos) << lFirst;
  EXPECT_EQ(lOther.find_first_not_of('.'), 1000u) << lOther;
}

TEST(ColourScale, endsAtTheRoundSpeedThatTheFastestReaches) {
  logtool::Range lSpeeds;
  lSpeeds.add(45.0);
  const logtool::ColourScale lScale(false, lSpeeds);
  EXPECT_EQ(lScale.classOf({{}, 0, false, 45.0F, {}, false}), 8);  // of nine to 50
}

}  // namespace
