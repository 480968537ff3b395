#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "TempDir.h"
#include "ToolRun.h"

// Recorded sentences of real receivers are not part of this project: NFW_NMEA_DIR names a folder of *.log files.
// What the tool says about them is compared with the text of the files, read here without any of its code.

namespace {

using nlohmann::json;
using Fields = std::vector<std::string>;

std::vector<std::filesystem::path> corpus() {
  std::vector<std::filesystem::path> lFiles;
  const char* const lpDirectory = std::getenv("NFW_NMEA_DIR");
  if (lpDirectory == nullptr || !std::filesystem::is_directory(lpDirectory)) return lFiles;
  for (const auto& lEntry : std::filesystem::directory_iterator(lpDirectory)) {
    if (lEntry.path().extension() == ".log") lFiles.push_back(lEntry.path());
  }
  return lFiles;
}

bool isChecksumRight(const std::string& nSentence) {
  const size_t lStar = nSentence.find('*');
  if (lStar == std::string::npos || lStar + 3 > nSentence.size()) return false;
  int lSum = 0;
  for (size_t i = 1; i < lStar; ++i) lSum ^= static_cast<unsigned char>(nSentence[i]);
  return std::strtol(nSentence.substr(lStar + 1, 2).c_str(), nullptr, 16) == lSum;
}

// The fields of every GGA sentence with a right checksum, in the order of the file.
std::vector<Fields> ggaOf(const std::filesystem::path& nFile) {
  std::ifstream lFile(nFile, std::ios::binary);
  const std::string lText{std::istreambuf_iterator<char>(lFile), {}};
  std::vector<Fields> lAll;
  for (size_t i = lText.find('$'); i != std::string::npos; i = lText.find('$', i + 1)) {
    const std::string lSentence = lText.substr(i, lText.find_first_of("\r\n", i) - i);
    if (lSentence.size() < 7 || lSentence.substr(3, 4) != "GGA," || !isChecksumRight(lSentence)) continue;
    Fields lFields;
    std::istringstream lStream(lSentence.substr(0, lSentence.find('*')));
    for (std::string lField; std::getline(lStream, lField, ',');) lFields.push_back(lField);
    lFields.resize(15);
    lAll.push_back(lFields);
  }
  return lAll;
}

bool isSameCoordinate(const json& nCoordinate, const std::string& nValue, const std::string& nDirection) {
  if (nCoordinate.is_null()) return nValue.empty() && nDirection.empty();
  return nCoordinate["value"] == std::strtod(nValue.c_str(), nullptr) && nCoordinate["direction"] == nDirection;
}

bool isSame(const json& nGga, const Fields& nFields) {
  const std::string& lTime = nFields[1];
  return lTime.size() >= 6 && nGga["utc"] == lTime.substr(0, 2) + ":" + lTime.substr(2, 2) + ":" + lTime.substr(4, 2) &&
         isSameCoordinate(nGga["latitude"], nFields[2], nFields[3]) &&
         isSameCoordinate(nGga["longitude"], nFields[4], nFields[5]);
}

uint64_t sum(const json& nCounts) {
  uint64_t lSum = 0;
  for (const auto& lCount : nCounts) lSum += lCount.get<uint64_t>();
  return lSum;
}

void expectAddsUp(const json& nSummary, const std::map<std::string, uint64_t>& nObjects) {
  EXPECT_EQ(nSummary["lines"],
            nSummary["accepted"].get<uint64_t>() + sum(nSummary["rejected"]) + nSummary["ignored"].get<uint64_t>());
  for (const auto& [lKind, lCounts] : nSummary["kinds"].items()) {
    const auto lFound = nObjects.find(lKind);
    EXPECT_EQ(lCounts["delivered"], lFound == nObjects.end() ? 0 : lFound->second) << lKind;
    EXPECT_EQ(lCounts["delivered"], lCounts[lKind == "GSV" ? "expected" : "accepted"]) << lKind;
  }
}

// Each GGA object is the next sentence of the file that it can be; those between are the ones that were refused.
void expectSameGga(const std::vector<json>& nGga, const std::vector<Fields>& nSentences, uint64_t nUnparsable) {
  size_t lNext = 0;
  for (const json& lGga : nGga) {
    while (lNext < nSentences.size() && !isSame(lGga, nSentences[lNext])) ++lNext;
    ASSERT_LT(lNext, nSentences.size()) << "not in the file: " << lGga;
    ++lNext;
  }
  EXPECT_EQ(nGga.size() + nUnparsable, nSentences.size());
}

TEST(Corpus, everySentenceIsAccountedForAndEveryPositionIsRight) {
  const auto lFiles = corpus();
  if (lFiles.empty()) GTEST_SKIP() << "no recordings: NFW_NMEA_DIR names no folder of *.log files";
  size_t lPositions = 0;
  for (const auto& lFile : lFiles) {
    SCOPED_TRACE(lFile);
    const Outcome lRun = runQuietly({lFile, "--speed", "max", "--format", "json"});
    std::istringstream lOutput(lRun.mOutput);
    std::map<std::string, uint64_t> lCounts;
    std::vector<json> lGga;
    for (std::string lLine; std::getline(lOutput, lLine);) {
      const json lObject = json::parse(lLine);
      ++lCounts[lObject["type"]];
      if (lObject["type"] == "GGA") lGga.push_back(lObject);
    }
    const json& lSummary = lRun.mSummary;
    const uint64_t lTaken = lSummary["accepted"].get<uint64_t>() + lSummary["ignored"].get<uint64_t>();
    EXPECT_EQ(lRun.mExit, lTaken > 0 ? 0 : 1) << "one receiver sends nothing that can be parsed";
    expectAddsUp(lSummary, lCounts);
    expectSameGga(lGga, ggaOf(lFile), lSummary["kinds"]["GGA"]["unparsable"]);
    lPositions += lGga.size();
  }
  std::cout << lFiles.size() << " recordings, " << lPositions << " GGA positions right to the last digit\n";
}

// A replay waits for nobody, and each service queues 256 messages: what is no more than that no load can overrun.
TEST(Corpus, bothRecordingsReplayToTheSame) {
  const auto lFiles = corpus();
  if (lFiles.empty()) GTEST_SKIP() << "no recordings: NFW_NMEA_DIR names no folder of *.log files";
  const nfwtest::TempDir lDirectory;
  std::map<std::string, std::string> lKinds;
  for (const auto& lFile : lFiles) {
    std::istringstream lLines(nfwtest::readFile(lFile));
    for (std::string lLine; std::getline(lLines, lLine);) lKinds.emplace(lLine.substr(0, 7), lLine + "\n");
  }
  std::string lAll;
  for (const auto& lKind : lKinds) lAll += lKind.second;
  nfwtest::writeFile(lDirectory / "all.nmea", lAll);
  std::filesystem::create_directory(lDirectory / "log");
  const std::string lSensor = lDirectory / "sensor.bin";
  const Outcome lLive = runQuietly({lDirectory / "all.nmea", "--speed", "max", "--format", "json", "--record",
                                    lDirectory / "log", "--sys-record", lSensor});
  EXPECT_EQ(lLive.mExit, 0) << lLive.mErrors;
  EXPECT_LT(lLive.mSummary["delivered_dead_reckoning"], 256);
  EXPECT_LT(lLive.mSummary["delivered_sentences"], 120) << "each with its record";
  EXPECT_GT(lLive.mSummary["delivered_sentences"], 30);
  const std::string lLog = std::filesystem::directory_iterator(lDirectory / "log")->path();
  for (const ToolRun::Words& lReplay : {ToolRun::Words{"--replay", lLog}, {"--sys-replay", lSensor}}) {
    const Outcome lPlayed = runQuietly({lReplay[0], lReplay[1], "--format", "json"});
    EXPECT_EQ(lPlayed.mExit, 0) << lPlayed.mErrors;
    EXPECT_EQ(lPlayed.mSummary["replay"], "the same as the recording, and as the run that made it");
  }
}

}  // namespace
