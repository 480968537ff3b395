// What info says of the tracks of a recording, in text and JSON.
#include <gtest/gtest.h>

#include <cstdio>
#include <nlohmann/json.hpp>

#include "LogBytes.h"
#include "LogToolRun.h"
#include "TempDir.h"

namespace {

struct Epoch {
  int mSecond;
  double mMinutes;    // of latitude; 0.001 are 1.853 m
  double mKnots;      // negative: not told
  const char* mpFix;  // mode of RMC; "V": none
};

std::string recording(const std::vector<Epoch>& nEpochs) {
  std::string lBytes;
  for (const Epoch& lEpoch : nEpochs) {
    char lText[100], lKnots[16] = "";
    if (lEpoch.mKnots >= 0.0) snprintf(lKnots, sizeof(lKnots), "%.3f", lEpoch.mKnots);
    snprintf(lText, sizeof(lText), "$GPRMC,12%02d%02d,%c,48%07.4f,N,01131.0000,E,%s,1.0,010126,,,%s",
             lEpoch.mSecond / 60, lEpoch.mSecond % 60, *lEpoch.mpFix == 'V' ? 'V' : 'A', lEpoch.mMinutes, lKnots,
             lEpoch.mpFix);
    lBytes += logtest::logRecord(20, static_cast<uint32_t>(lEpoch.mSecond) * 1000, lText);
  }
  return lBytes;
}

/// A hundred epochs that stand, all but ten of them in the middle of a circle of 5 to 14 m.
std::vector<Epoch> stand() {
  std::vector<Epoch> lEpochs = {{0, 10.0, 20.0, "A"}};
  for (int i = 1; i <= 100; ++i)
    lEpochs.push_back({i, 7.0 + (i > 90 ? (i % 2 * 2 - 1) * (i - 45) * 0.0001 : 0.0), 0.1, "A"});
  return lEpochs;
}

TEST(DriveStats, numbersOfADrive) {
  const struct {
    std::vector<Epoch> mEpochs;
    const char* mpExpected;  // what the object has to have
  } CASES[] = {
      {{{0, 7.0, 36.0, "A"}, {1, 7.01, 36.0, "A"}, {3, 7.03, 0.0, "D"}, {4, 7.03, 0.0, "A"}},
       R"({"positions":4,"epochs":4,"moving_ms":3000,"standing_ms":1000,"gap_count":0,"longest_gap":null,"fix_percent":100.0,
           "fix":{"none":0,"2d":3,"3d":0,"dgps":1,"estimated":0}})"},
      {{{0, 7.0, 0.0, "V"},
        {1, 7.0, 0.0, "A"},
        {2, 7.0, 0.0, "V"},
        {3, 7.0, 0.0, "E"}},  // before the first, and behind
       R"({"positions":2,"epochs":4,"fix_percent":25.0,"moving_ms":0,"distance_m":0.0,"max_speed_kmh":0.0})"},
      {{{0, 7.0, 10.0, "A"}, {6, 7.0, 10.0, "A"}, {13, 7.0, 10.0, "A"}},
       R"({"gap_count":2,"gap_ms":13000,
           "longest_gap":{"length_ms":7000.0,"elapsed_ms":13000,"utc":"2026-01-01T12:00:13.000Z"}})"},
      {{{0, 7.0, 10.0, "A"}, {11, 8.0, 10.0, "A"}, {5, 9.0, 10.0, "A"}},  // breaks are no way and no jump
       R"({"distance_m":0.0,"moving_ms":0,"largest_jump":null,"gap_count":1})"},
      {{{0, 7.0, -1, "A"}, {1, 7.0001, -1, "A"}, {2, 7.01, -1, "A"}},  // without a speed: what the positions tell
       R"({"max_speed_kmh":null,"moving_ms":1000,"standing_ms":1000})"},
      {{{0, 7.0, 0.0, "A"}, {1, 7.1, 0.0, "A"}, {2, 7.0, 0.0, "A"}},  // of two alike the first
       R"({"largest_jump":{"elapsed_ms":1000}})"},
      {stand(), R"({"positions":101})"},
  };
  const nfwtest::TempDir lDir;
  for (const auto& lCase : CASES) {
    nfwtest::writeFile(lDir / "a.log", recording(lCase.mEpochs));
    std::string lText;
    ASSERT_EQ(logtest::runTool({"info", "--json", lDir / "a.log"}, &lText), 0);
    const auto lTrack = nlohmann::json::parse(lText)["recordings"][0]["tracks"][0].flatten();
    const auto lExpected = nlohmann::json::parse(lCase.mpExpected).flatten();
    for (const auto& [lKey, lValue] : lExpected.items()) EXPECT_EQ(lTrack[lKey], lValue) << lKey << lTrack;
  }
  std::string lText;
  ASSERT_EQ(logtest::runTool({"info", lDir / "a.log"}, &lText), 0);
  EXPECT_TRUE(logtest::has(lText, "Largest jump 5549.")) << lText;
  EXPECT_TRUE(logtest::has(lText, "Longest stand 0:01:39.000, 100 positions: CEP50 0.01 m, CEP95 9.28 m")) << lText;
}

}  // namespace
