#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "DeadReckoner.h"
#include "NaviAppFramework.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "Simulator.h"
#include "Split.h"

namespace {

using namespace drive;
using Report = DeadReckoner::Report;
using Texts = std::vector<std::string>;

Texts sentencesOf(Simulator& nSimulator) {
  std::string lText;
  nSimulator.writeEpoch(&lText);
  Texts lSentences = nfwtest::split(lText, '\n');
  lSentences.pop_back();
  for (std::string& lSentence : lSentences) lSentence.pop_back();
  return lSentences;
}

class SimulatedMotion : public MotionSensor {
 public:
  explicit SimulatedMotion(const Simulator& nSimulator) : mSimulator(nSimulator) {}
  double speed() const override { return mSimulator.getVehicle().mSpeed; }
  double course() const override { return mSimulator.getVehicle().mCourse; }

 private:
  const Simulator& mSimulator;
};

/// One epoch of a simulated drive: how it was, what was sent, what was reckoned.
struct Leg {
  VehicleState mTruth;
  Texts mSentences;
  Report mReport;
};

std::vector<Leg> driven(const SimulatorOptions& nOptions, unsigned int nSeconds) {
  Simulator lSimulator(nOptions);
  const SimulatedMotion lMotion(lSimulator);
  DeadReckoner lReckoner(&lMotion);
  std::vector<Leg> lLegs;
  for (unsigned int i = 0; i < nSeconds * nOptions.mRateHz; ++i) {
    const Texts lSentences = sentencesOf(lSimulator);
    for (size_t j = 0; j < lSentences.size(); ++j) {
      const Report* const lpReport = lReckoner.onSentence(lSentences[j]);
      EXPECT_EQ(i > 0 && j == 0, lpReport != nullptr);
      if (lpReport != nullptr) lLegs.back().mReport = *lpReport;
    }
    lLegs.push_back({lSimulator.getVehicle(), lSentences, {}});
  }
  lLegs.back().mReport = *lReckoner.finish();
  EXPECT_EQ(nullptr, lReckoner.finish());
  return lLegs;
}

double metresBetween(const VehicleState& nTruth, double nLatitude, double nLongitude) {
  const double lNorth = nLatitude - toSentenceAngle(nTruth.mLatitude);  // minutes of arc
  const double lEast = (nLongitude - toSentenceAngle(nTruth.mLongitude)) * std::cos(toRadians(nTruth.mLatitude));
  return std::hypot(lNorth, lEast) * 1852.0;
}

/// What a listener would get of it.
Texts textsOf(const Report& nReport) {
  nfw::NmeaBinaryLogDataVersion1 lConverter;
  unsigned char lRecord[1400];
  nfw::DeadReckoningNmeaSentence lSet;
  const int lSize = lConverter.convertFromDeadReckoningData(nReport, lRecord, sizeof(lRecord));
  EXPECT_GT(lSize, 0);
  EXPECT_TRUE(lConverter.convertToDeadReckoningNmeaSentence(lRecord, static_cast<unsigned int>(lSize), &lSet));
  Texts lTexts;
  const auto lAdd = [&](const nfw::NmeaSentenceData& n) {
    lTexts.emplace_back(reinterpret_cast<const char*>(n.mText), n.mLength);
  };
  lAdd(lSet.mRmc), lAdd(lSet.mVtg), lAdd(lSet.mGga);
  std::for_each_n(lSet.mGsa, lSet.mGsaCount, lAdd);
  std::for_each_n(lSet.mGsv, lSet.mGsvCount, lAdd);
  lAdd(lSet.mPubx);
  return lTexts;
}

/// The sentences of a report, of all kinds but one, without their checksums.
std::string shown(const Report& nReport, const char* npWithout = "GSV") {
  std::string lText;
  for (const std::string& lSentence : textsOf(nReport)) {
    if (lSentence.compare(3, 3, npWithout) != 0) lText += lSentence.substr(0, lSentence.find('*')) + "\n";
  }
  return lText;
}

TEST(DeadReckoner, tellsWhatTheSentencesToldWhileThereIsAFix) {
  SimulatorOptions lOptions;
  lOptions.mSystems = 1u << SYSTEM_GPS;
  for (const Leg& lLeg : driven(lOptions, 60)) {
    std::string lExpected;
    for (const std::string& lSentence : lLeg.mSentences) {  // in the order of a report already
      const std::string lType = lSentence.substr(3, 3), lText = lSentence.substr(0, lSentence.find('*'));
      if (lType != "GLL" && lType != "ZDA") lExpected += lText + "\n";
    }
    lExpected.replace(lExpected.rfind(",,"), 2, ",0,").erase(lExpected.size() - 3, 2);  // PUBX: no age, and a spare 0
    ASSERT_EQ(lExpected, shown(lLeg.mReport, ""));
  }
}

TEST(DeadReckoner, tellsOfNoFixUntilThereIsOneAndEstimatesEverythingLater) {
  SimulatorOptions lOptions;
  lOptions.mSystems = 1u << SYSTEM_GPS | 1u << SYSTEM_GLONASS;
  lOptions.mTunnels = {{0, 10000}, {100000, 400000}};
  const std::vector<Leg> lLegs = driven(lOptions, 260);
  EXPECT_EQ(shown(lLegs[9].mReport), R"($GNRMC,080009.000,V,0000.00000,N,00000.00000,E,0.000,0.00,310126,0.0,E,N
$GNVTG,0.00,T,0.00,M,0.000,N,0.000,K,N
$GNGGA,080009.000,0000.00000,N,00000.00000,E,0,00,99.99,0.0,M,0.0,M,,
$GNGSA,A,1,,,,,,,,,,,,,99.99,99.99,99.99
$GNGSA,A,1,,,,,,,,,,,,,99.99,99.99,99.99
$PUBX,00,080009.000,0000.00000,N,00000.00000,E,0.000,NF,0.0,0.0,0.000,0.00,0.000,0,99.99,99.99,99.99,0,0
)");
  EXPECT_EQ(shown(lLegs[250].mReport), R"($GNRMC,080410.000,A,3539.17312,N,13944.12284,E,10.691,236.11,310126,7.5,W,E
$GNVTG,236.11,T,243.61,M,10.691,N,19.800,K,E
$GNGGA,080410.000,3539.17312,N,13944.12284,E,6,00,15.73,46.0,M,36.7,M,,
$GNGSA,A,2,,,,,,,,,,,,,16.50,15.73,16.35
$GNGSA,A,2,,,,,,,,,,,,,16.50,15.73,16.35
$PUBX,00,080410.000,3539.17312,N,13944.12284,E,82.700,DR,17.8,3.1,19.800,236.11,0.000,0,15.73,16.35,15.83,0,1
)");
}

TEST(DeadReckoner, drivesThroughATunnelByWheelsAndGyroscope) {
  const unsigned int ENTRY = 100, EXIT = 400;
  for (const unsigned int lRate : {1u, 10u}) {
    SimulatorOptions lOptions;
    lOptions.mRateHz = lRate;
    lOptions.mTunnels = {{ENTRY * 1000, EXIT * 1000}};
    const std::vector<Leg> lLegs = driven(lOptions, EXIT + 5);
    double lDriven = 0.0;
    for (size_t i = 0; i < lLegs.size(); ++i) {
      SCOPED_TRACE(i);
      const Report& lReport = lLegs[i].mReport;
      const bool lIsInTunnel = i >= ENTRY * lRate && i < EXIT * lRate;
      if (lIsInTunnel) lDriven += lLegs[i].mTruth.mSpeed / lRate;
      EXPECT_EQ(lReport.gga.quality, lIsInTunnel ? 6 : 1);
      // To the last digit of the fix that it began with, and a little.
      EXPECT_LT(metresBetween(lLegs[i].mTruth, lReport.gga.latitude, lReport.gga.longitude),
                lIsInTunnel ? 0.05 + lDriven / 1000.0 : 0.02);
    }
    EXPECT_GT(lDriven, 1000.0);
  }
}

/// The report of an epoch, or "none".
std::string reckoned(DeadReckoner& nReckoner, const Texts& nSentences) {
  for (const std::string& lSentence : nSentences) EXPECT_EQ(nullptr, nReckoner.onSentence(lSentence)) << lSentence;
  const Report* const lpReport = nReckoner.finish();
  return lpReport == nullptr ? "none" : shown(*lpReport);
}

TEST(DeadReckoner, holdsSpeedAndCourseWithoutASensor) {
  DeadReckoner lReckoner(nullptr);
  EXPECT_EQ("none", reckoned(lReckoner, {"$GPVTG,0,T,,M,36,N,66,K,A"}));
  EXPECT_EQ("none", reckoned(lReckoner, {"$GPZDA,235957,28,02,2026,00,00", "$GPGLL,3559.0,N,13900.0,W,235957,A,A"}));
  EXPECT_EQ("none", reckoned(lReckoner, {"$GPRMC,235957,A,3559.0,S,13900.0,W,36,0,280226,,,*00"})) << "no mode";
  const struct {
    const char* mpSentence;
    double mDistance;  // north of the first fix, in seconds of motion
    char mMode;
  } EPOCHS[] = {
      {"$GPRMC,235958,A,3559.98,S,13900.0,W,36.0,0.0,280226,,,D", 0.0, 'D'},
      {"$GPRMC,235959.5,V,,,,,,,280226,,,N", 1.5, 'E'},
      {"$GPGGA,000001,,,,,0,,,,,,,,*00", 3.0, 'E'},
      {"$GPGGA,000011,,,,,0,,,,,,,,*00", 13.0, 'E'},
      {"$GPGGA,000022,,,,,0,,,,,,,,*00", 13.0, 'E'},  // who knows?
      {"$GPGGA,000021,,,,,0,,,,,,,,*00", 13.0, 'E'},  // a step back
      {"$GPRMC,000022,A,,,,,36.0,0.0,010326,,,A", 14.0, 'E'},
      {"$GPGGA,000022,3559.88,S,13900.0,W,2,07,1.5,10.0,M,2.0,M,3,4", 10.0, 'D'},
  };
  for (const auto& lEpoch : EPOCHS) {
    SCOPED_TRACE(lEpoch.mpSentence);
    EXPECT_EQ(nullptr, lReckoner.onSentence(lEpoch.mpSentence));
    const Report* const lpReport = lReckoner.finish();
    ASSERT_NE(nullptr, lpReport);
    EXPECT_EQ(lEpoch.mMode, lpReport->rmc.mode);
    EXPECT_NEAR(-3559.98 + lEpoch.mDistance / 100.0, lpReport->rmc.latitude, 1e-4);  // 36 knots: a minute in 100 s
    EXPECT_EQ(-13900.0, lpReport->gga.longitude);
  }
}

std::string sentenceAt(const std::string& nKind, int nSecond) {
  const std::string lTime = "1200" + std::to_string(10 + nSecond);
  if (nKind == "RMC") return "$GPRMC," + lTime + ",A,3559.98,S,13900.0,W,36.0,0.0,280226,,,D";
  if (nKind == "GGA") return "$GPGGA," + lTime + ",3559.98,S,13900.0,W,1,07,1.5,10.0,M,2.0,M,,";
  return "$GP" + nKind;
}

// A digit for each report: behind which sentence of its own epoch it came; "-" for one that came with a later one.
std::string promptness(const std::vector<Texts>& nEpochs) {
  DeadReckoner lReckoner(nullptr);
  std::string lText;
  for (size_t i = 0; i < nEpochs.size(); ++i) {
    for (size_t j = 0; j < nEpochs[i].size(); ++j) {
      if (lReckoner.onSentence(sentenceAt(nEpochs[i][j], static_cast<int>(i))) != nullptr) lText += '-';
      const Report* const lpReport = lReckoner.takeComplete();
      if (lpReport == nullptr) continue;
      EXPECT_EQ(lpReport->rmc.time, 120010 + static_cast<int>(i));
      lText += static_cast<char>('1' + j);
    }
  }
  if (lReckoner.finish() != nullptr) lText += '-';
  return lText;
}

std::vector<Texts> repeated(size_t nCount, const std::vector<Texts>& nCycle) {
  std::vector<Texts> lEpochs;
  while (lEpochs.size() < nCount) lEpochs.insert(lEpochs.end(), nCycle.begin(), nCycle.end());
  return lEpochs;
}

TEST(DeadReckoner, reportsAnEpochWithTheLastSentenceOfTheReceiversCycle) {
  const Texts LONG = {"RMC", "GSA", "GSV,2,1", "GSV,2,2"}, ODD = {"RMC", "GSA", "GSA", "GSV,1,1"};
  EXPECT_EQ("--444444", promptness(repeated(8, {LONG})));
  EXPECT_EQ("--111111", promptness(repeated(8, {{"RMC"}})));
  EXPECT_EQ("--333333", promptness(repeated(8, {{"RMC", "GSA", "GSA"}})));
  EXPECT_EQ("--444---4444",
            promptness({LONG, LONG, LONG, LONG, ODD, {"RMC", "GGA"}, LONG, LONG, LONG, LONG, LONG, LONG}));
  // More at times: after two tries it is believed no more.
  EXPECT_EQ("--111----1" + std::string(20, '-'),
            promptness(repeated(30, {{"RMC"}, {"RMC"}, {"RMC"}, {"RMC"}, {"RMC", "GSA"}})));
}

TEST(DeadReckoner, makesWhatDidNotComeOfWhatCame) {
  DeadReckoner lReckoner(nullptr);
  EXPECT_EQ(
      "$GNRMC,120000.250,A,3559.99900,S,13900.00000,W,36.000,350.00,280226,7.5,W,D\n"
      "$GNVTG,350.00,T,357.50,M,36.000,N,66.672,K,D\n"
      "$GNGGA,120000.250,3559.99900,S,13900.00000,W,2,02,1.20,0.0,M,0.0,M,,\n"
      "$GNGSA,A,3,01,300,,,,,,,,,,,1.50,1.20,0.90\n"
      "$PUBX,00,120000.250,3559.99900,S,13900.00000,W,0.000,G3,3.0,2.3,66.672,350.00,0.000,0,1.20,0.90,0.00,2,0\n",
      reckoned(lReckoner, {"$GNRMC,120000.25,A,3559.999,S,13900.0,W,36.0,350.0,280226,7.5,W,D",
                           "$GNGSA,A,3,01,300,,,,,,,,,,,1.5,1.2,0.9"}));
  EXPECT_EQ(
      "$GPRMC,120001.000,A,3559.99900,N,13900.00000,E,36.000,350.00,280226,7.5,W,E\n"
      "$GPVTG,350.00,T,357.50,M,36.000,N,66.672,K,E\n"
      "$GPGGA,120001.000,3559.99900,N,13900.00000,E,6,15,2.00,99.5,M,36.0,M,,9\n"
      "$PUBX,00,120001.000,3559.99900,N,13900.00000,E,135.500,DR,5.0,2.3,66.672,350.00,0.000,0,2.00,0.90,0.00,15,1\n",
      reckoned(lReckoner, {"$GPGGA,120001,3559.999,N,13900.0,E,6,33,2.0,99.5,M,36.0,M,70000,9"}));
}

TEST(DeadReckoner, takesWhateverComesAndStaysWithinItsReport) {
  DeadReckoner lReckoner(nullptr);
  Texts lSentences = {"$GPGGA,120001,3559.999,N,13900.0,E,1,08,2.0,99.5,M,36.0,M,,*00",
                      "",
                      "$",
                      "$GPGSV,1,1,01," + std::string(200, '1'),
                      "$PUBX,03,1",
                      "$GPGSV,300,299,03,1,1,1,1,,,,,,,,,,,,*00"};
  for (int i = 0; i < 40; ++i) {
    lSentences.emplace_back("$GPGSV,9,1,33,70000,1,1,1,2,,359,9,3,90,1,1,4,4,4,4");
    lSentences.emplace_back("$GPGSV,1,1,03,65535,90,359,99,2,0,0,,x");
    lSentences.emplace_back("$GPGSA,A,3,70000,65535,,,,,,,,,,,1,2,3");
  }
  for (const std::string& lSentence : lSentences) EXPECT_EQ(nullptr, lReckoner.onSentence(lSentence));
  const Report* const lpReport = lReckoner.finish();
  ASSERT_NE(nullptr, lpReport);
  EXPECT_EQ(32u, lpReport->gsvCount);
  EXPECT_EQ(4u, lpReport->gsaCount);
  EXPECT_EQ(65535u, lpReport->gsv[1].satellite[0].number + lpReport->gsv[2].satellite[0].number);
  EXPECT_EQ(0, lpReport->gsv[1].satellite[1].valid);
  EXPECT_EQ(38u, textsOf(*lpReport).size() - 2);
}

}  // namespace
