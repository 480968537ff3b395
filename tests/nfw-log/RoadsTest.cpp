// Recordings in the containers of other programs, as those programs read them.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "LogBytes.h"
#include "LogToolRun.h"
#include "TempDir.h"

namespace {

using logtest::has;
using logtest::runTool;

class Roads : public testing::Test {
 protected:
  /// A receiver of some epochs, a second each; another id beside it.
  std::string drive(int nEpochs) const {
    std::string lBytes;
    for (int i = 0; i < nEpochs; ++i) {
      char lSentence[100];
      snprintf(lSentence, sizeof(lSentence), "$GPRMC,%02d%02d%02d,A,48%07.4f,N,01131.0000,E,%d.0,84.4,311225,,,A",
               i / 3600, i / 60 % 60, i % 60, i / 1000.0, i % 100);
      lBytes += logtest::logRecord(20, static_cast<uint32_t>(i) * 1000, lSentence);
    }
    lBytes += logtest::logRecord(20, static_cast<uint32_t>(nEpochs) * 1000, "$GPGSV,1,1,02,05,40,083,46,70,17,308,");
    return lBytes + logtest::logRecord(21, 1, "$GPGLL,1000.0000,N,01000.0000,E,000000.000,A,E");
  }
  /// What another program says.
  std::string said(const std::string& nCommand) const {
    EXPECT_EQ(std::system((nCommand + " >" + mDir / "said" + " 2>&1").c_str()), 0) << nCommand;
    return nfwtest::readFile(mDir / "said");
  }
  /// The rows of a query, by GDAL; without the head of its output.
  std::string rows(const std::string& nQuery) const {
    const std::string lText = said("ogrinfo -q -dialect sqlite -sql \"" + nQuery + "\" " + mPackage);
    return lText.substr(std::min(lText.size(), lText.find("OGRFeature")));
  }
  int convert(const std::vector<std::string>& nArguments) {
    std::vector<std::string> lArguments = {"convert"};
    lArguments.insert(lArguments.end(), nArguments.begin(), nArguments.end());
    return runTool(lArguments, nullptr, &mErrors);
  }

  nfwtest::TempDir mDir;
  const std::string mFile = mDir / "drive.log", mOther = mDir / "Z\xC3\xBCrich's.log", mPackage = mDir / "fleet.gpkg";
  std::string mErrors;
};

TEST_F(Roads, gdalOpensAPackageThatGrowsByRecordings) {
  if (std::system("command -v ogrinfo >/dev/null") != 0) GTEST_SKIP() << "ogrinfo (Debian: gdal-bin) is not installed";
  nfwtest::writeFile(mFile, drive(25000));
  nfwtest::writeFile(mOther, drive(3));
  const int lExit = convert({"--to", "gpkg", mOther, "--append", "-o", mPackage});
  if (lExit == 2 && has(mErrors, "built without SQLite")) GTEST_SKIP() << mErrors;
  ASSERT_EQ(lExit, 0) << mErrors;
  EXPECT_EQ(convert({"--to", "gpkg", "--id", "20", mFile, mOther, "--append", "-o", mPackage}), 0) << mErrors;
  EXPECT_TRUE(has(mErrors, "rich's.log: is in there already, and left out"));
  const std::string lPoints = said("ogrinfo -so " + mPackage + " track_points");
  EXPECT_FALSE(has(lPoints, "rror") || has(lPoints, "arning")) << lPoints;
  EXPECT_TRUE(
      has(lPoints, "Geometry: Point\nFeature Count: 25003\nExtent: (11.516667, 48.000000) - (11.516667, 48.416650)"));
  EXPECT_TRUE(has(lPoints, "ID[\"EPSG\",4326]"));
  const std::string lLines = said("ogrinfo -q -geom=SUMMARY " + mPackage + " track_lines");
  for (const char* const lpLine : {"3 points", "10000 points", "5002 points"}) EXPECT_TRUE(has(lLines, lpLine));
  EXPECT_TRUE(has(said("ogrinfo -q " + mPackage + " reports"), "POINT (10 10)"));
  EXPECT_TRUE(has(rows("SELECT r.name n, max(p.speed_kmh) v, max(p.time) t FROM track_points p JOIN tracks k ON"
                       " k.id=p.track_id JOIN recordings r ON r.id=k.recording_id GROUP BY r.id"),
                  "n (String) = Z\xC3\xBCrich's.log\n  v (Real) = 3.704\n  t (String) = 2025-12-31T00:00:02.000Z"));
  EXPECT_TRUE(has(rows("SELECT constellation, number, elevation_deg, azimuth_deg, snr_dbhz FROM satellites"),
                  "n (String) = GPS\n  number (Integer64) = 5\n  elevation_deg (Real) = 40\n  azimuth_deg (Real) = 83\n"
                  "  snr_dbhz (Real) = 46\n"));
  // What has grown since takes the place of what it was; what fails leaves nothing.
  nfwtest::writeFile(mOther, drive(5));
  EXPECT_EQ(convert({"--to", "gpkg", mOther, "--append", "-o", mPackage}), 0) << mErrors;
  EXPECT_EQ(convert({"--to", "gpkg", mFile, mDir / "none", "--append", "-o", mPackage}), 2);
  EXPECT_EQ(convert({"--to", "gpkg", "--type", "GLL,FOO", "--id", "20", mFile, "--append", "-o", mPackage}), 0);
  EXPECT_TRUE(has(rows("SELECT count(*) c, (SELECT count(*) FROM recordings) r FROM track_points"),
                  "c (Integer) = 25005\n  r (Integer) = 2"));
  EXPECT_EQ(convert({"--to", "gpkg", mOther, "-o", mPackage}), 2);
  EXPECT_TRUE(has(mErrors, "exists; --force replaces it"));
  EXPECT_EQ(convert({"--to", "gpkg", mOther, "--append", "-o", mFile}), 1);
  EXPECT_TRUE(has(mErrors, "drive.log: cannot be written: file is not a database"));
}

TEST_F(Roads, theFormatsOwnReaderGoesThroughAContainer) {
  const std::string lModules = NFW_SOURCE_DIR "/build/node/node_modules";
  if (::access((lModules + "/@mcap/core").c_str(), R_OK) != 0 || std::system("command -v node >/dev/null") != 0)
    GTEST_SKIP() << "@mcap/core is not installed: scripts/setup ci does";
  nfwtest::writeFile(mFile, drive(6000));
  nfwtest::writeFile(mOther, drive(1));
  ASSERT_EQ(convert({"--to", "mcap", mFile, mOther, "-o", mDir / "out"}), 0) << mErrors;
  EXPECT_TRUE(has(mErrors, "2 positions without a date: "));
  const std::string lTold =
      said("NODE_PATH=" + lModules + " node " NFW_SOURCE_DIR "/tests/nfw-log/read-mcap.cjs " + mDir / "out");
  EXPECT_EQ(lTold.find("12008 messages, 3 chunks, 2000000000 to 1767145199000000000\n"), 0u) << lTold;
  EXPECT_TRUE(has(lTold,
                  "\n/drive.log/receiver/fix foxglove.LocationFix 6000 {\"timestamp\":{\"sec\":1767145199,\"nsec\":0},"
                  "\"frame_id\":\"drive.log/receiver\",\"latitude\":48.0999833,\"longitude\":11.5166667,"));
  EXPECT_TRUE(has(lTold, "/drive.log/satellites nfw.Satellites 1 {\"timestamp\""));
  EXPECT_TRUE(has(lTold, "/Z\xC3\xBCrich's.log/dead_reckoning/motion nfw.Motion 1 {"));
}

}  // namespace
