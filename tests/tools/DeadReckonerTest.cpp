#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "DeadReckoner.h"
#include "NaviAppFramework.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "Simulator.h"

namespace {

using namespace drive;
using Report = DeadReckoner::Report;
using Texts = std::vector<std::string>;

Texts sentencesOf(Simulator& nSimulator) {
  std::string lText;
  nSimulator.writeEpoch(&lText);
  Texts lSentences;
  for (size_t i = 0, lEnd = 0; i < lText.size(); i = lEnd + 2) {
    lEnd = lText.find("\r\n", i);
    lSentences.push_back(lText.substr(i, lEnd - i));
  }
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

double degreesOf(double nAngle) {
  const double lDegrees = std::trunc(nAngle / 100.0);
  return lDegrees + (nAngle - lDegrees * 100.0) / 60.0;
}

double metresBetween(const VehicleState& nTruth, double nLatitude, double nLongitude) {
  const double lNorth = toRadians(degreesOf(nLatitude) - nTruth.mLatitude);
  const double lEast = toRadians(degreesOf(nLongitude) - nTruth.mLongitude) * std::cos(toRadians(nTruth.mLatitude));
  return std::hypot(lNorth, lEast) * EARTH_RADIUS;
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

/// The sentence as the sensor log gives it back.
std::string stored(const std::string& nSentence) {
  nfw::NmeaBinaryLogDataVersion1 lConverter;
  unsigned char lRecord[60], lText[256];
  const int lSize = lConverter.convertFromNmeaSentence(reinterpret_cast<const unsigned char*>(nSentence.data()),
                                                       static_cast<unsigned int>(nSentence.size()), lRecord, 60);
  const int lLength = lConverter.convertToNmeaSentence(lRecord, static_cast<unsigned int>(lSize), lText, 256);
  return std::string(reinterpret_cast<const char*>(lText), static_cast<size_t>(lLength));
}

TEST(DeadReckoner, tellsWhatTheSentencesToldWhileThereIsAFix) {
  SimulatorOptions lOptions;
  lOptions.mSystems = 1u << SYSTEM_GPS;
  for (const Leg& lLeg : driven(lOptions, 60)) {
    Texts lExpected;
    for (const std::string& lSentence : lLeg.mSentences) {  // in the order of a report already
      const std::string lType = lSentence.substr(3, 3);
      if (lType != "GLL" && lType != "ZDA") lExpected.push_back(stored(lSentence));
    }
    ASSERT_EQ(lExpected, textsOf(lLeg.mReport));
  }
}

void expectNothing(const Report& nReport) {
  const Texts lTexts = textsOf(nReport);
  EXPECT_NE(std::string::npos, lTexts[0].find(",V,0000.00000,N,00000.00000,E,0.000,0.00,310126,")) << lTexts[0];
  EXPECT_NE(std::string::npos, lTexts[1].find(",N*")) << lTexts[1];
  EXPECT_NE(std::string::npos, lTexts[2].find(",E,0,00,")) << lTexts[2];
  EXPECT_NE(std::string::npos, lTexts.back().find(",NF,")) << lTexts.back();
}

void expectEstimate(const Report& nReport, const Leg& nLeg) {
  EXPECT_EQ(nReport.gga.quality, 6);
  EXPECT_EQ(nReport.rmc.status, 'A');
  EXPECT_EQ(nReport.rmc.mode, 'E');
  EXPECT_EQ(nReport.vtg.mode, 'E');
  EXPECT_EQ(nReport.pubx.status, 1);
  EXPECT_EQ(nReport.pubx.deadReckoning, 1);
  EXPECT_EQ(nReport.gga.satellites + nReport.pubx.satellites + nReport.gsa[0].number[0], 0u);
  EXPECT_NEAR(nReport.vtg.speedKmh, nLeg.mTruth.mSpeed * 3.6, 1e-9);
  EXPECT_NEAR(nReport.pubx.course, nLeg.mTruth.mCourse, 0.0051);
  EXPECT_NEAR(std::remainder(nReport.vtg.courseMagnetic - nReport.vtg.courseTrue - 7.5, 360.0), 0.0, 0.011);
  EXPECT_EQ(nReport.rmc.day, 31);
  EXPECT_EQ(nReport.gga.latitude, nReport.rmc.latitude);
  EXPECT_EQ(nReport.gga.longitude, nReport.pubx.longitude);
}

TEST(DeadReckoner, knowsNothingBeforeTheFirstFixAndDrivesThroughATunnelByWheelsAndGyroscope) {
  const unsigned int FIRST = 10, ENTRY = 100, EXIT = 400;
  for (const unsigned int lRate : {1u, 10u}) {
    SimulatorOptions lOptions;
    lOptions.mRateHz = lRate;
    lOptions.mTunnels = {{0, FIRST * 1000}, {ENTRY * 1000, EXIT * 1000}};
    const std::vector<Leg> lLegs = driven(lOptions, EXIT + 5);
    double lDriven = 0.0, lDop = 0.0;
    for (size_t i = 0; i < lLegs.size(); ++i) {
      SCOPED_TRACE(i);
      const Report& lReport = lLegs[i].mReport;
      if (i < FIRST * lRate) {
        expectNothing(lReport);
        continue;
      }
      const double lError = metresBetween(lLegs[i].mTruth, lReport.gga.latitude, lReport.gga.longitude);
      if (i < ENTRY * lRate || i >= EXIT * lRate) {
        EXPECT_EQ(lReport.gga.quality, 1);
        EXPECT_EQ(lReport.rmc.mode, 'A');
        EXPECT_LT(lError, 0.02);
        continue;
      }
      expectEstimate(lReport, lLegs[i]);
      lDriven += lLegs[i].mTruth.mSpeed / lRate;
      EXPECT_LT(lError, 0.05 + lDriven / 1000.0);  // to the last digit of the fix that it began with, and a little
      EXPECT_TRUE(lReport.gga.hdop > lDop || lReport.gga.hdop == 99.99);
      lDop = lReport.gga.hdop;
    }
    EXPECT_GT(lDriven, 1000.0);
    EXPECT_GT(lDop, 20.0);
  }
}

/// "RMC VTG GGA PUBX" of the report of an epoch, or "none".
std::string reckoned(DeadReckoner& nReckoner, const Texts& nSentences) {
  for (const std::string& lSentence : nSentences) EXPECT_EQ(nullptr, nReckoner.onSentence(lSentence)) << lSentence;
  const Report* const lpReport = nReckoner.finish();
  if (lpReport == nullptr) return "none";
  const Texts lTexts = textsOf(*lpReport);
  std::string lText;
  for (const std::string& lSentence : {lTexts[0], lTexts[1], lTexts[2], lTexts.back()}) {
    lText += lSentence.substr(0, lSentence.find('*')) + "\n";
  }
  return lText;
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
