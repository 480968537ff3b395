// Tracks in other formats, against the positions that went into a recording.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "LogBytes.h"
#include "LogToolRun.h"
#include "Split.h"

namespace {

using logtest::has;

const char* const LATE = "$GPGLL,1000.0000,N,01000.0000,E,000000.000,A,A\r\n";  // of dead reckoning, without a date

/// A drive of six epochs: a pause behind the third, the last two reckoned; lines of a log and another id between.
std::string drive() {
  const char* const EPOCHS[][5] = {
      // the date is told once; midnight passes
      {"235958.000", "07.0380", "1", "A", "311225"}, {"235959.500", "07.0480", "2", "D", ""},
      {"000001.000", "07.0580", "1", "A", ""},       {"000100.000", "07.0680", "1", "A", ""},
      {"000101.000", "07.0780", "6", "E", ""},       {"000102.000", "07.0880", "6", "E", ""}};
  std::string lBytes;
  uint32_t lTick = 0xFFFFFF00;  // wraps on the way
  for (const auto& [lpTime, lpMinutes, lpQuality, lpMode, lpDate] : EPOCHS) {
    const std::string lPosition = std::string("48") + lpMinutes + ",S,01131.0000,W", lTime = lpTime;
    lBytes +=
        logtest::logRecord(255, lTick, "a line & <more>") +
        logtest::logRecord(20, lTick,
                           "$GPRMC," + lTime + ",A," + lPosition + ",010.0,084.4," + lpDate + ",,," + lpMode + "\r\n") +
        logtest::logRecord(21, lTick, LATE) +
        logtest::logRecord(20, lTick,
                           "$GPGGA," + lTime + "," + lPosition + "," + lpQuality + ",08,0.9,545.4,M,46.9,M,,*47");
    lTick += 1000;
  }
  return lBytes;
}

class Convert : public logtest::LogTool {
 protected:
  Convert() { nfwtest::writeFile(mFile, drive()); }
  std::string convert(const std::string& nFormat) { return output({"convert", "--to", nFormat, mFile}); }

  const std::string mFile = mDir / "drive.log";
};

// What a track consists of is the same in every format.
TEST_F(Convert, theReceiverIsTheTrackOfEveryFormat) {
  const std::string lNmea = convert("nmea");
  EXPECT_EQ(std::count(lNmea.begin(), lNmea.end(), '\n'), 12);
  EXPECT_TRUE(has(mErrors, "dead reckoning (id 21) has sentences too: --id 21 takes it, --id 20,21 both"));
  // Also where dead reckoning begins first, and alone where there is no receiver.
  const std::string lLate = logtest::logRecord(21, 1, LATE);
  nfwtest::writeFile(mFile,
                     logtest::logRecord(21, 0xFFFEFF00, LATE) + logtest::logRecord(21, 0xFFFFE960, LATE) + drive());
  EXPECT_EQ(convert("nmea"), lNmea);
  nfwtest::writeFile(mFile, lLate);
  EXPECT_EQ(convert("nmea"), LATE);
}

// A log and a sensor log of one drive, in one directory and each by itself.
TEST_F(Convert, aDriveThatWasRecordedTwiceIsOneTrack) {
  std::string lSensor;
  for (int i = 0; i < 5; ++i) {  // three as in the log, from 23:59:58 on; two behind it are of the sensor log alone
    const uint32_t lTime = i < 2 ? 235958000 + 1000 * static_cast<uint32_t>(i)
                                 : static_cast<uint32_t>(i - 2) * 1000 + (i > 2 ? 10000000 : 0);
    lSensor += logtest::sensorRecord(0, 1, 1000u * static_cast<uint32_t>(i),
                                     logtest::binaryRmc(lTime, i < 2 ? "\x1F\x0C\x19" : "\x01\x01\x1A"));
  }
  nfwtest::writeFile(mDir / "sensor.bin", lSensor);
  const std::string lCsv = output({"convert", "--to", "csv", mDir.path()});
  EXPECT_TRUE(has(mErrors, "sensor.bin: 3 records left out: another recording of the directory"));
  EXPECT_EQ(std::count(lCsv.begin(), lCsv.end(), '\n'), 1 + 6 + 2) << lCsv;
  EXPECT_TRUE(has(lCsv, ",\"drive.log, receiver\"\r\n"));
  const std::string lBoth = output({"convert", "--to", "csv", mFile, mDir / "sensor.bin"});
  EXPECT_EQ(std::count(lBoth.begin(), lBoth.end(), '\n'), 1 + 6 + 5);
  EXPECT_TRUE(
      has(output({"plot", mFile, mDir / "sensor.bin"}), ">2025-12-31 23:59:58 to 2026-01-01 01:00:02 UTC, 1:00:04, "));
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
  EXPECT_TRUE(has(lCsv, "\n2025-12-31T23:59:59.000Z,0.000,20,48.1166667,11.5166667,278.161,46.915,"));
  EXPECT_TRUE(has(lCsv, "\n2026-01-01T00:00:01.000Z,2.000,"));
  EXPECT_TRUE(has(convert("gpx"), "<ele>278.161</ele>"));
  EXPECT_TRUE(has(convert("geojson"), ",278.161]"));
  EXPECT_TRUE(has(convert("kml"), "11.5166667 48.1166667 278.161</gx:coord>"));
  EXPECT_TRUE(has(convert("kml"), "<name>10 to 30 km/h</name>"));  // between two that do not tell it
  const std::string lPage = mDir / "p.html";
  output({"plot", mFile, "-o", lPage});
  EXPECT_TRUE(has(nfwtest::readFile(lPage), "<html"));
  EXPECT_TRUE(has(output({"plot", mFile}), ">2025-12-31 23:59:59 to 2026-01-01 00:00:01 UTC, "));
  nfwtest::writeFile(mFile, lFirst + lThird);
  const std::string lKml = convert("kml");
  EXPECT_EQ(lKml.find("<when>"), std::string::npos) << lKml;
  EXPECT_TRUE(has(lKml, "<LineString>\n<coordinates>\n11.5166667,48.1166667,278.161\n11.5166667,48.1166667\n"));
  std::string lMany;  // so many are not held
  for (int i = 100; i < 357; ++i) {
    lMany += logtest::logRecord(20, 1, "$GPGLL,4807.0,N,01131.0,E,235959." + std::to_string(i) + ",A,A");
  }
  nfwtest::writeFile(mFile, lMany + lSecond);
  EXPECT_FALSE(has(convert("csv"), "\n2025-"));
}

// Of each kind what it tells, of several the one that tells most; what tells of no fix is no position.
TEST_F(Convert, everyKindOfSentenceMakesThePosition) {
  const std::string lGga = "$GPGGA,081350,4717.4,N,00833.6,E,%,,,,M,,M,,",
                    lGll = "$GPGLL,4717.4,N,00833.6,E,081350,A,A|";
  const std::string lRmc = "$GPRMC,081350,A,4717.4,N,00833.6,E,10.0,77.5,,,,%";
  const std::string lPubx = "$PUBX,00,081350.00,4717.4,N,00833.6,E,9.9,%,2.1,2.0,7.5,77.5,0,,0.9,1.1,0.7,9,0,";
  const struct {
    std::string mSentences, mSigns, mFields;  // each of the signs in place of "%"
  } CASES[] = {
      {lGga, "1 3", ",,,,2d,,,,,0"},
      {lGga, "2 4 5", ",,,,dgps,,,,,0"},
      {lGga, "6", ",,,,estimated,,,,,1"},
      {lGga, "0 7", ""},
      {"$GPGGA,081350,4717.4,N,00833.6,E,1,08,0.9,5.4,M,46.9,M,,", "", "5.4,46.9,,,2d,8,0.90,,,0"},
      {lRmc, "A", ",,18.520,77.50,2d,,,,,0"},
      {lRmc, "D R F", ",,18.520,77.50,dgps,,,,,0"},
      {lRmc, "E", ",,18.520,77.50,estimated,,,,,1"},
      {"$GPRMC,081350,%,4717.4,N,00833.6,E,10.0,77.5,,,,A", "V N", ""},
      {"$GPGLL,4717.4,N,00833.6,E,081350,V,A|$GPGLL,9717.4,N,00833.6,E,081350,A,A", "", ""},
      {lPubx + "0", "NF XX", ""},
      {lPubx + "0", "G2", ",,7.500,77.50,2d,9,0.90,1.10,,0"},
      {lPubx + "0", "G3 RK", ",,7.500,77.50,3d,9,0.90,1.10,,0"},
      {lPubx + "0", "D2 D3", ",,7.500,77.50,dgps,9,0.90,1.10,,0"},
      {lPubx + "1", "DR RK", ",,7.500,77.50,estimated,9,0.90,1.10,,1"},
      {lGll + "$GPGSA,A,%,1,,,,,,,,,,,,2.5,1.2,0.9", "1 4", ",,,,2d,,,,,0"},
      {lGll + "$GPGSA,A,%,1,,,,,,,,,,,,2.5,1.2,0.9", "2", ",,,,2d,,1.20,0.90,2.50,0"},
      {lGll + "$GPGSA,A,%,1,,,,,,,,,,,,2.5,1.2,0.9|$GPGSA,A,2", "3", ",,,,3d,,1.20,0.90,2.50,0"},
      {lGll + "$GPVTG,54.7,T,34.4,M,5.5,N,10.2,K,A|$GPVTG,1,T,,M,,N,1,K,A", "", ",,10.200,54.70,2d,,,,,0"},
  };
  for (const auto& lCase : CASES) {
    for (const std::string& lSign : nfwtest::split(lCase.mSigns, ' ')) {
      std::string lSentences = lCase.mSentences, lBytes;
      if (!lSign.empty()) lSentences.replace(lSentences.find('%'), 1, lSign);
      for (const auto& lSentence : nfwtest::split(lSentences, '|')) lBytes += logtest::logRecord(20, 1, lSentence);
      nfwtest::writeFile(mFile, lBytes);
      const std::string lPlace =
          lCase.mFields.empty() ? "" : ",0.000,20,47.2900000,8.5600000," + lCase.mFields + ",receiver\r";
      EXPECT_EQ(nfwtest::split(convert("csv"), '\n')[1], lPlace) << lSentences;
    }
  }
}

/// Eight hours of a zigzag to the north: a pause each 3000 s, the third stretch reckoned, and one moment of haste.
std::string longDrive() {
  std::string lBytes;
  for (int i = 0; i < 30000; ++i) {
    const int lTime = i + i / 3000 * 100;
    char lSentence[100];
    snprintf(lSentence, sizeof(lSentence), "$GPRMC,%02d%02d%02d,A,48%07.4f,N,011%07.4f,E,%d,1.0,010126,,,%c",
             lTime / 3600, lTime / 60 % 60, lTime % 60, i / 1000.0, std::abs(i % 2000 - 1000) / 200.0,
             i == 17777 ? 90 : 20 + i % 10, i / 3000 == 2 ? 'E' : 'A');
    lBytes += logtest::logRecord(20, static_cast<uint32_t>(i) * 1000, lSentence);
  }
  return lBytes;
}

/// To tell texts apart.
std::string digest(const std::string& nText) {
  uint64_t lSum = 0xCBF29CE484222325u;
  for (const char lByte : nText) lSum = (lSum ^ static_cast<unsigned char>(lByte)) * 0x100000001B3u;
  char lHex[20];
  snprintf(lHex, sizeof(lHex), "%016llx", static_cast<unsigned long long>(lSum));
  return lHex;
}

// Every byte counts for those who read it: short outputs as they are, long ones by their digest. Those were looked at,
// and the pictures drawn: two pieces of three points with times, heights and speeds, the one at 10 degrees without; a
// straight line south with its marks, dashed where reckoned, its gaps in the curves; each gap, record and type counted.
// Where one differs, look at it as well before the digest is written down.
TEST_F(Convert, everyOutputIsRightToTheLastByte) {
  const std::string SELDOM = mDir / "seldom.log", SEEN = "$GPGLL,1000.0000,N,01000.0000,E,00000";
  nfwtest::writeFile(SELDOM, logtest::logRecord(20, 0xFFFFFF80, SEEN + "0,A") +
                                 logtest::logRecord(20, 0xFFFFFF80 + 2500, SEEN + "3,A"));
  const struct {
    std::vector<std::string> mArguments;
    std::string mExpected;
  } CASES[] = {
      {{"convert", "--to", "gpx", "--id", "20,21"}, "3ef57bdeb289bebc"},
      {{"convert", "--to", "kml", "--id", "20,21"}, "dd257e00aeb1a6dc"},
      {{"convert", "--to", "geojson", "--id", "20,21"}, "128baa4bef5474ca"},
      {{"convert", "--to", "geojson", "--lines", "--id", "20,21"}, "04c660c49f849373"},
      {{"convert", "--to", "gpx", "--name", "<T>", "--id", "7"},
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gpx version=\"1.1\" creator=\"nfw-log\" "
       "xmlns=\"http://www.topografix.com/GPX/1/1\" "
       "xmlns:gpxtpx=\"http://www.garmin.com/xmlschemas/TrackPointExtension/"
       "v2\">\n<metadata>\n<name>&lt;T></name>\n</metadata>\n</gpx>\n"},
      {{"plot"}, "10a01e4983cafe7d"},
      {{"plot", "--colour=fix", "--id", "20,21"}, "d6bd1d3453807685"},
      {{"plot", "--from", "1s"}, "6dad6626ab12ca68"},
      {{"info", "--json", "--gap", "1"}, "289678ba75a67d23"},
      {{"convert", "--to", "csv", "--id", "20,21"},
       "time_utc,elapsed_s,id,latitude_deg,longitude_deg,altitude_m,geoid_separation_m,speed_kmh,course_deg,fix,"
       "satellites,hdop,vdop,pdop,dead_reckoned,track\r\n"
       "2025-12-31T23:59:58.000Z,0.000,20,-48.1173000,-11.5166667,545.4,46.9,18.520,84.40,2d,8,0.90,,,0,receiver\r\n"
       "2025-12-31T23:59:59.500Z,1.000,20,-48.1174667,-11.5166667,545.4,46.9,18.520,84.40,dgps,8,0.90,,,0,receiver\r\n"
       "2026-01-01T00:00:01.000Z,2.000,20,-48.1176333,-11.5166667,545.4,46.9,18.520,84.40,2d,8,0.90,,,0,receiver\r\n"
       "2026-01-01T00:01:00.000Z,3.000,20,-48.1178000,-11.5166667,545.4,46.9,18.520,84.40,2d,8,0.90,,,0,receiver\r\n"
       "2026-01-01T00:01:01.000Z,4.000,20,-48.1179667,-11.5166667,545.4,46.9,18.520,84.40,estimated,8,0.90,,,1,"
       "receiver\r\n"
       "2026-01-01T00:01:02.000Z,5.000,20,-48.1181333,-11.5166667,545.4,46.9,18.520,84.40,estimated,8,0.90,,,1,"
       "receiver\r\n"
       ",0.000,21,10.0000000,10.0000000,,,,,2d,,,,,0,dead reckoning\r\n"},
      // One that tells more seldom, and no date: its positions are complete behind others, and stand by their times.
      {{"convert", "--to", "csv", "--sort", SELDOM}, "13772db5d2de2f43"},
      {{"convert", "--to", "geojson", "--lines", "--sort", SELDOM}, "de6e0e1086257f75"},
      {{"convert", "--to", "geojson", "--sort", SELDOM}, "e7e5d7aa59aab937"},
      {{"convert", "--to", "nmea", "--sort", SELDOM}, "e96af92e37895ab8"},
      {{"info"}, R"(Recording   /a & <b>.log
Kind        log, 1 file, 2.3 KiB
Records     24, 4.8 a second
First       2024-05-06 07:08:09.010 local time, tick 4294967040
Last        2024-05-06 07:08:09.010 local time, tick 4744
Duration    0:00:05.000
Id 20       12 records, 810 bytes, 2.4 a second:  RMC 6 GGA 6
Id 21       6 records, 288 bytes, 1.2 a second:  GLL 6
Id 255      6 records, 90 bytes, 1.2 a second:  LOG 6
Track       receiver: 6 positions, 0.074 km in 0:00:05.000 of motion, 0:00:00.000 of standing, at most 18.5 km/h
            Fix 66.7 % of 6 epochs, 2d 3, dgps 1, estimated 2
            1 gap of 0:00:59.000, the longest of 0:00:59.000 up to 2026-01-01 00:01:00.000 UTC
            Largest jump 13.4 m at 2026-01-01 00:01:01.000 UTC
Track       dead reckoning: 1 position, 0.000 km in 0:00:00.000 of motion, 0:00:00.000 of standing
            Fix 100.0 % of 1 epoch, 2d 1
            0 gaps
Gaps        0
Ticks back  0
Damage      none

)"},
      {{"cat", "--json", "--to", "1", "--id", "21"},
       R"({"time":"2024-05-06 07:08:09.010","elapsed_ms":0,"tick":4294967040,"id":21,"type":"GLL","offset":182,"text":)"
       R"("$GPGLL,1000.0000,N,01000.0000,E,000000.000,A,A"}
)"},
      {{"cat", "--hex", "--to", "1", "--id", "255"}, "2024-05-06 07:08:09.010 255 61206c696e652026203c6d6f72653e\n"},
  };
  const std::string lFile = mDir / "a & <b>.log";
  nfwtest::writeFile(lFile, drive());
  for (const auto& lCase : CASES) {
    std::vector<std::string> lArguments = lCase.mArguments;
    lArguments.push_back(lFile);
    std::string lOutput = output(lArguments);
    for (size_t i = 0; (i = lOutput.find(mDir.path())) != std::string::npos;) lOutput.erase(i, mDir.path().size());
    EXPECT_EQ(lCase.mExpected.size() == 16 ? digest(lOutput) : lOutput, lCase.mExpected) << lOutput;
  }
}

TEST_F(Convert, heightsBelowTheSeaAreToldAsTheyAre) {
  nfwtest::writeFile(mDir / "low",
                     logtest::logRecord(20, 0, "$GPGGA,000000.00,1000.0000,N,01000.0000,E,1,08,0.90,-1.5,M,-17.3,M,,"));
  EXPECT_NE(output({"convert", "--to", "csv", mDir / "low"}).find(",-1.5,-17.3,"), std::string::npos);
}

// The picture was looked at, too: the shape, its ten stretches and the moment of haste are there, in 500 kB.
TEST_F(Convert, aLongDriveIsDrawnSmallAndWrittenInPieces) {
  nfwtest::writeFile(mDir / "long", longDrive());
  const std::string lPicture = output({"plot", mDir / "long"}),
                    lKml = output({"convert", "--to", "kml", mDir / "long"});
  EXPECT_LT(lPicture.size(), 500000u);
  EXPECT_EQ(digest(lPicture), "8d5ec2a9d4c4d745") << lPicture;
  std::map<std::string, unsigned int> lTags;
  for (const std::string& lPart : nfwtest::split(lKml, '<')) ++lTags[lPart.substr(0, lPart.find('>'))];
  EXPECT_EQ(lTags["Placemark"], 10u + 3u) << "with the moment of haste, what is behind it, and what is slower again";
  EXPECT_EQ(lTags["gx:Track"], 42u) << "of a thousand points at most";
  EXPECT_EQ(lTags["gx:coord"], 30000u + 32u) << "each begins where the one before ended";
}

TEST_F(Convert, whatCannotBeToldApartIsDrawnTogether) {
  std::string lBytes;
  for (int i = 1; i <= 14; ++i) lBytes += logtest::logRecord(i, 1, LATE);
  nfwtest::writeFile(mFile, lBytes);
  std::string lOutput = output({"plot", "--id", "1,2,3,4,5,6,7,8,9,10,11,12,13,14", mFile});
  EXPECT_TRUE(has(lOutput, ">id 11<"));
  EXPECT_TRUE(has(lOutput, ">others<"));
  EXPECT_FALSE(has(lOutput, "id 12"));
  lBytes.clear();
  for (const char* const lpSentence : {"$GPZDA,120000,01,01,2026,,", "$GPGLL,4717.4,N,00833.6,E,120000,A,A",
                                       "$GPZDA,130000,31,12,2026,,", "$GPGLL,4717.4,N,00833.6,E,130000,A,A"}) {
    lBytes += logtest::logRecord(20, 1, lpSentence);
  }
  nfwtest::writeFile(mFile, lBytes);
  lOutput = output({"plot", mFile});
  EXPECT_TRUE(has(lOutput, ">2026-01-01 12:00:00 to 2026-12-31 13:00:00 UTC, "));
  EXPECT_TRUE(has(lOutput, "x=\"192.0\" y=\"1082.0\" text-anchor=\"middle\">2026-02-16<")) << "every 41 days";
}

// Further tracks wait in a file of their own.
TEST_F(Convert, withoutRoomForAFurtherTrackNothingIsWritten) {
  const nfwtest::TempDir lDir;
  ::setenv("TMPDIR", "/proc", 1);
  output({"convert", "--to", "gpx", "--id", "20,21", mFile, "-o", lDir / "out"}, 1);
  ::unsetenv("TMPDIR");
  EXPECT_TRUE(has(mErrors, "a temporary file for a further track: No such file"));
  EXPECT_EQ(lDir.files().size(), 0u);
}

// The program of others reads what was written, with as many points, and the same places and times.
TEST_F(Convert, gpsbabelReadsGpxAndKml) {
  if (std::system("command -v gpsbabel >/dev/null") != 0) GTEST_SKIP() << "gpsbabel is not installed";
  const std::string lExpected =
      "Latitude,Longitude,Altitude,Date,Time\n-48.117300,-11.516667,545.4,2025/12/31,23:59:58\n"
      "-48.117467,-11.516667,545.4,2025/12/31,23:59:59.500\n-48.117633,-11.516667,545.4,2026/01/01,00:00:01\n"
      "-48.117800,-11.516667,545.4,2026/01/01,00:01:00\n-48.117967,-11.516667,545.4,2026/01/01,00:01:01\n"
      "-48.118133,-11.516667,545.4,2026/01/01,00:01:02\n";
  for (const std::string lFormat : {"gpx", "kml"}) {
    nfwtest::writeFile(mDir / "in", convert(lFormat));
    const std::string lCall = "gpsbabel -t -i " + lFormat + " -f " + mDir / "in" +
                              " -o unicsv,utc=0 -F - | cut -d, -f " + (lFormat == "gpx" ? "2-4,8-9" : "2-") +
                              " | tr -d '\\r' >" + mDir / "out";
    ASSERT_EQ(std::system(lCall.c_str()), 0);
    EXPECT_EQ(nfwtest::readFile(mDir / "out"), lExpected) << lFormat;
  }
}

}  // namespace
