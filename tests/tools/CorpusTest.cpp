#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "Recordings.h"
#include "TempDir.h"
#include "ToolRun.h"

// What the tool says about sentences of real receivers adds up.

namespace {

using nlohmann::json;

std::string textOf(const std::vector<std::string>& nLines) {
  std::string lText;
  for (const std::string& lLine : nLines) lText += lLine + "\n";
  return lText;
}

void expectAddsUp(const json& nSummary, const std::map<std::string, uint64_t>& nObjects) {
  uint64_t lLines = nSummary["accepted"].get<uint64_t>() + nSummary["ignored"].get<uint64_t>();
  for (const auto& lRejected : nSummary["rejected"]) lLines += lRejected.get<uint64_t>();
  EXPECT_EQ(nSummary["lines"], lLines);
  for (const auto& [lKind, lCounts] : nSummary["kinds"].items()) {
    const auto lFound = nObjects.find(lKind);
    EXPECT_EQ(lCounts["delivered"], lFound == nObjects.end() ? 0 : lFound->second) << lKind;
    EXPECT_EQ(lCounts["delivered"], lCounts[lKind == "GSV" ? "expected" : "accepted"]) << lKind;
  }
}

TEST(Corpus, everySentenceIsAccountedFor) {
  const auto lRecordings = nfwtest::recordings();
  if (lRecordings.empty()) GTEST_SKIP() << nfwtest::NO_RECORDINGS;
  const nfwtest::TempDir lDirectory;
  for (size_t i = 0; i < lRecordings.size(); ++i) {
    SCOPED_TRACE(i);
    nfwtest::writeFile(lDirectory / "in.nmea", textOf(lRecordings[i]));
    const Outcome lRun = runQuietly({lDirectory / "in.nmea", "--speed", "max", "--format", "jsonl-raw"});
    std::map<std::string, uint64_t> lObjects;
    std::istringstream lOutput(lRun.mOutput);
    for (std::string lLine; std::getline(lOutput, lLine);) ++lObjects[json::parse(lLine)["type"]];
    expectAddsUp(lRun.mSummary, lObjects);
    const bool lIsHeard = lRun.mSummary["accepted"] > 0 || lRun.mSummary["ignored"] > 0;
    EXPECT_EQ(lRun.mExit, lIsHeard ? 0 : 1) << "one receiver sends nothing that can be parsed";
  }
}

}  // namespace
