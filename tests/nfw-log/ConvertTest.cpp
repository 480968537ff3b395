// Tracks in other formats, against the positions that went into a recording.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <sstream>

#include "LogBytes.h"
#include "LogToolRun.h"
#include "TempDir.h"

namespace {

using logtest::runTool;
using nlohmann::json;

/// A drive of six epochs: a pause behind the third, the last two reckoned; lines of a log and another id between.
std::string drive() {
  struct Epoch {
    const char* mpTime;
    const char* mpMinutes;
    const char* mpQuality;
    const char* mpMode;
  };
  const Epoch EPOCHS[] = {{"235958.000", "07.0380", "1", "A"}, {"235959.500", "07.0480", "2", "D"},
                          {"000001.000", "07.0580", "1", "A"}, {"000100.000", "07.0680", "1", "A"},
                          {"000101.000", "07.0780", "6", "E"}, {"000102.000", "07.0880", "6", "E"}};
  std::string lBytes;
  uint32_t lTick = 0xFFFFFF00;  // wraps on the way
  bool lIsFirst = true;
  for (const Epoch& lEpoch : EPOCHS) {
    const std::string lTime = lEpoch.mpTime, lPosition = std::string("48") + lEpoch.mpMinutes + ",S,01131.0000,W";
    const std::string lDate = lIsFirst ? "311225" : "";  // told once; midnight passes
    lIsFirst = false;
    const std::string lMode = lEpoch.mpMode;
    lBytes += logtest::logRecord(255, lTick, "a line & <more>");
    lBytes += logtest::logRecord(
        20, lTick, "$GPRMC," + lTime + ",A," + lPosition + ",010.0,084.4," + lDate + ",,," + lMode + "\r\n");
    lBytes += logtest::logRecord(21, lTick, "$GPGLL,1000.0000,N,01000.0000,E,000000.000,A,A\r\n");
    lBytes += logtest::logRecord(
        20, lTick, "$GPGGA," + lTime + "," + lPosition + "," + lEpoch.mpQuality + ",08,0.9,545.4,M,46.9,M,,*47");
    lTick += 1000;
  }
  return lBytes;
}

const char* const CSV =
    "2025-12-31T23:59:58.000Z,0.000,20,-48.1173000,-11.5166667,545.4,46.9,18.520,84.40,2d,8,0.90,,,0,receiver\r\n"
    "2025-12-31T23:59:59.500Z,1.000,20,-48.1174667,-11.5166667,545.4,46.9,18.520,84.40,dgps,8,0.90,,,0,receiver\r\n"
    "2026-01-01T00:00:01.000Z,2.000,20,-48.1176333,-11.5166667,545.4,46.9,18.520,84.40,2d,8,0.90,,,0,receiver\r\n"
    "2026-01-01T00:01:00.000Z,3.000,20,-48.1178000,-11.5166667,545.4,46.9,18.520,84.40,2d,8,0.90,,,0,receiver\r\n"
    "2026-01-01T00:01:01.000Z,4.000,20,-48.1179667,-11.5166667,545.4,46.9,18.520,84.40,estimated,8,0.90,,,1,"
    "receiver\r\n"
    "2026-01-01T00:01:02.000Z,5.000,20,-48.1181333,-11.5166667,545.4,46.9,18.520,84.40,estimated,8,0.90,,,1,"
    "receiver\r\n";

class Convert : public testing::Test {
 protected:
  Convert() { nfwtest::writeFile(mFile, drive()); }
  std::string convert(const std::string& nFormat) {
    std::string lOutput;
    EXPECT_EQ(runTool({"convert", "--to", nFormat, mFile}, &lOutput, &mErrors), 0);
    return lOutput;
  }
  nfwtest::TempDir mDir;
  const std::string mFile = mDir / "drive.log";
  std::string mErrors;
};

TEST_F(Convert, csvHasEveryEpochWithItsUnits) {
  const std::string lCsv = convert("csv");
  const size_t lBody = lCsv.find('\n') + 1;
  EXPECT_EQ(lCsv.substr(lBody), CSV);
  EXPECT_NE(lCsv.substr(0, lBody).find(",latitude_deg,longitude_deg,altitude_m,"), std::string::npos);
  EXPECT_NE(mErrors.find("dead reckoning (id 21) has sentences too: --id 21 takes it"), std::string::npos);
}

// What a track consists of is the same in every format.
TEST_F(Convert, theReceiverIsTheTrackOfEveryFormat) {
  const std::string lNmea = convert("nmea");
  EXPECT_EQ(std::count(lNmea.begin(), lNmea.end(), '\n'), 12);
  EXPECT_EQ(lNmea.find("GPGLL"), std::string::npos);
  EXPECT_NE(mErrors.find("--id 20,21 both"), std::string::npos) << mErrors;
  // Also where dead reckoning begins first, and alone where there is no receiver.
  const std::string lLate = logtest::logRecord(21, 1, "$GPGLL,1000.0000,N,01000.0000,E,000000.000,A,A\r\n");
  nfwtest::writeFile(mFile, lLate + drive());
  EXPECT_EQ(convert("nmea"), lNmea);
  nfwtest::writeFile(mFile, lLate);
  EXPECT_EQ(convert("nmea"), "$GPGLL,1000.0000,N,01000.0000,E,000000.000,A,A\r\n");
}

TEST_F(Convert, twoTracksStandOneBehindTheOtherWithTheirNames) {
  struct Case {
    const char* mpFormat;
    const char *mpFirst, *mpSecond;  // of which each comes once, or more often in a row
  };
  const Case CASES[] = {{"gpx", "<name>receiver</name>", "<name>dead reckoning</name>"},
                        {"kml", "<name>receiver</name>", "<name>dead reckoning</name>"},
                        {"geojson", "\"track\":\"receiver\"", "\"track\":\"dead reckoning\""},
                        {"csv", ",receiver\r\n", ",dead reckoning\r\n"}};
  for (const Case& lCase : CASES) {
    std::string lOutput;
    ASSERT_EQ(runTool({"convert", "--to", lCase.mpFormat, "--id", "20,21", mFile}, &lOutput, &mErrors), 0);
    EXPECT_EQ(mErrors, "");
    EXPECT_LT(lOutput.rfind(lCase.mpFirst), lOutput.find(lCase.mpSecond)) << lOutput;
    EXPECT_NE(lOutput.find(lCase.mpSecond), std::string::npos) << lOutput;
    EXPECT_TRUE(lCase.mpFormat != std::string("geojson") || json::parse(lOutput)["features"].size() == 7u);
  }
  std::string lPicture;
  ASSERT_EQ(runTool({"plot", "--id", "20,21", mFile}, &lPicture), 0);
  for (const char* lpText : {">receiver<", ">dead reckoning<", ">receiver: start", "6 positions; dead reckoning: "}) {
    EXPECT_NE(lPicture.find(lpText), std::string::npos) << lpText;
  }
}

// A log and a sensor log of one drive, in one directory and each by itself.
TEST_F(Convert, aDriveThatWasRecordedTwiceIsOneTrack) {
  std::string lSensor, lCsv, lSpan;
  for (int i = 0; i < 5;
       ++i) {  // the log's first three epochs begin at 23:59:58; two behind it are of the sensor log alone
    const uint32_t lTime = i < 2 ? 235958000 + 1000 * static_cast<uint32_t>(i)
                                 : static_cast<uint32_t>(i - 2) * 1000 + (i > 2 ? 10000000 : 0);
    lSensor += logtest::sensorRecord(0, 1, 1000u * static_cast<uint32_t>(i),
                                     logtest::binaryRmc(lTime, i < 2 ? "\x1F\x0C\x19" : "\x01\x01\x1A"));
  }
  nfwtest::writeFile(mDir / "sensor.bin", lSensor);
  EXPECT_EQ(runTool({"convert", "--to", "csv", mDir.path()}, &lCsv, &mErrors), 0);
  EXPECT_NE(mErrors.find("sensor.bin: 3 records left out: another recording of the directory"), std::string::npos)
      << mErrors;
  EXPECT_EQ(std::count(lCsv.begin(), lCsv.end(), '\n'), 1 + 6 + 2) << lCsv;
  EXPECT_NE(lCsv.find(",\"drive.log, receiver\"\r\n"), std::string::npos) << lCsv;
  EXPECT_EQ(runTool({"convert", "--to", "csv", mFile, mDir / "sensor.bin"}, &lCsv, &mErrors), 0);
  EXPECT_EQ(std::count(lCsv.begin(), lCsv.end(), '\n'), 1 + 6 + 5);
  EXPECT_EQ(runTool({"plot", mFile, mDir / "sensor.bin"}, &lSpan), 0);
  EXPECT_NE(lSpan.find(">2025-12-31 23:59:58 to 2026-01-01 01:00:02 UTC, 1:00:04, "), std::string::npos);
}

// The date comes later than the first position, or never: then there is no time, and none is made up.
TEST_F(Convert, positionsBeforeTheFirstDateAreDatedByIt) {
  const std::string lFirst =
      logtest::logRecord(20, 1, "$GPGGA,235959.00,4807.0,N,01131.0,E,1,08,0.9,278.161,M,46.915,M,,");
  const std::string lSecond =
      logtest::logRecord(20, 1001, "$GPRMC,000000.00,A,4807.0,N,01131.0,E,010.0,084.4,010126,,,A");
  const std::string lThird = logtest::logRecord(20, 2001, "$GPGGA,000001.00,4807.0,N,01131.0,E,1,08,0.9,,M,,M,,");
  nfwtest::writeFile(mFile, lFirst + lSecond + lThird);
  const std::string lCsv = convert("csv");
  EXPECT_NE(lCsv.find("\n2025-12-31T23:59:59.000Z,0.000,20,48.1166667,11.5166667,278.161,46.915,"), std::string::npos)
      << lCsv;
  EXPECT_NE(lCsv.find("\n2026-01-01T00:00:01.000Z,2.000,"), std::string::npos) << lCsv;
  EXPECT_NE(convert("gpx").find("<ele>278.161</ele>"), std::string::npos);
  EXPECT_NE(convert("geojson").find(",278.161]"), std::string::npos);
  EXPECT_NE(convert("kml").find("11.5166667 48.1166667 278.161</gx:coord>"), std::string::npos);
  std::string lOutput;
  EXPECT_EQ(runTool({"plot", mFile}, &lOutput), 0);
  EXPECT_NE(lOutput.find(">2025-12-31 23:59:59 to 2026-01-01 00:00:01 UTC, "), std::string::npos);
  nfwtest::writeFile(mFile, lFirst + lThird);
  const std::string lKml = convert("kml");
  EXPECT_EQ(lKml.find("<when>"), std::string::npos) << lKml;
  EXPECT_NE(lKml.find("<LineString>\n<coordinates>\n11.5166667,48.1166667,278.161\n11.5166667,48.1166667\n"),
            std::string::npos)
      << lKml;
}

TEST_F(Convert, geojsonHasThePositionsOfTheCsv) {
  const json lRoot = json::parse(convert("geojson"));
  EXPECT_EQ(lRoot["type"], "FeatureCollection");
  std::string lLines;
  for (const json& lFeature : lRoot["features"]) {
    const json& lPlace = lFeature["geometry"]["coordinates"];
    const json& lProperties = lFeature["properties"];
    char lLine[160];
    snprintf(lLine, sizeof(lLine), "%s,%.3f,20,%.7f,%.7f,%.1f", lProperties["time"].get<std::string>().c_str(),
             lProperties["elapsed_s"].get<double>(), lPlace[1].get<double>(), lPlace[0].get<double>(),
             lPlace[2].get<double>());
    lLines += lLine;
    EXPECT_EQ(lProperties["dead_reckoned"], lProperties["fix"] == "estimated");
  }
  std::string lExpected;
  std::istringstream lCsv(CSV);
  for (std::string lLine; std::getline(lCsv, lLine);) lExpected += lLine.substr(0, lLine.find(",46.9"));
  EXPECT_EQ(lLines, lExpected);
}

TEST_F(Convert, gpxTellsMoreThanThePosition) {
  const std::string lGpx = convert("gpx");
  EXPECT_NE(
      lGpx.find("<trkpt lat=\"-48.1174667\" lon=\"-11.5166667\"><ele>545.4</ele><time>2025-12-31T23:59:59.500Z</time>"
                "<geoidheight>46.9</geoidheight><fix>dgps</fix><sat>8</sat><hdop>0.90</hdop><extensions>"
                "<gpxtpx:TrackPointExtension><gpxtpx:speed>5.144</gpxtpx:speed>"
                "<gpxtpx:course>84.40</gpxtpx:course>"),
      std::string::npos)
      << lGpx;
}

// The program of others reads what was written, with as many pieces and points, and the same places and times.
TEST_F(Convert, gpsbabelReadsGpxAndKml) {
  if (std::system("command -v gpsbabel >/dev/null") != 0) GTEST_SKIP() << "gpsbabel is not installed";
  for (const std::string lFormat : {"gpx", "kml"}) {
    const std::string lFile = mDir / ("drive." + lFormat), lOut = mDir / ("out." + lFormat);
    ASSERT_EQ(runTool({"convert", "--to", lFormat, mFile, "-o", lFile}), 0);
    const std::string lCall = "gpsbabel -t -i " + lFormat + " -f " + lFile + " -o unicsv,utc=0 -F " + lOut;
    ASSERT_EQ(std::system(lCall.c_str()), 0);
    std::istringstream lLines(nfwtest::readFile(lOut));
    std::string lLine, lFound;
    std::getline(lLines, lLine);
    while (std::getline(lLines, lLine)) {
      const size_t lTime = lLine.find_last_of(',');
      lFound += lLine.substr(lLine.find(',') + 1, 21) + lLine.substr(lTime, lLine.size() - 1 - lTime) + "\n";
    }
    const std::string lExpected =
        "-48.117300,-11.516667,23:59:58\n-48.117467,-11.516667,23:59:59.500\n-48.117633,-11.516667,00:00:01\n"
        "-48.117800,-11.516667,00:01:00\n-48.117967,-11.516667,00:01:01\n-48.118133,-11.516667,00:01:02\n";
    EXPECT_EQ(lFound, lExpected) << nfwtest::readFile(lOut);
  }
}

TEST_F(Convert, plotIsOnePictureByItself) {
  for (const std::string lOption : {"--colour=speed", "--colour=fix", "--html"}) {
    std::string lPicture;
    ASSERT_EQ(runTool({"plot", lOption, mFile}, &lPicture), 0);
    EXPECT_NE(lPicture.find("<svg xmlns=\"http://www.w3.org/2000/svg\""), std::string::npos);
    EXPECT_EQ(lPicture.find("href"), std::string::npos);
    EXPECT_EQ(lPicture.find("nan"), std::string::npos);
    EXPECT_NE(lPicture.find("\"track reckoned\""), std::string::npos);
    EXPECT_NE(lPicture.find(">Altitude, m<"), std::string::npos);
  }
}

}  // namespace
