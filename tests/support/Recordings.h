// Recorded sentences of real receivers. They are not part of this project: NFW_NMEA_DIR names a folder of *.log files.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace nfwtest {

const char* const NO_RECORDINGS = "no recordings: NFW_NMEA_DIR names no folder of *.log files";

/// The lines of each recording, as they are between line feeds; none without the folder.
inline std::vector<std::vector<std::string>> recordings() {
  std::vector<std::vector<std::string>> lRecordings;
  std::set<std::filesystem::path> lFiles;  // in the order of their names
  const char* const lpDirectory = std::getenv("NFW_NMEA_DIR");
  std::error_code lError;
  for (const auto& lEntry : std::filesystem::directory_iterator(lpDirectory != nullptr ? lpDirectory : "", lError)) {
    if (lEntry.path().extension() == ".log") lFiles.insert(lEntry.path());
  }
  for (const auto& lPath : lFiles) {
    std::ifstream lFile(lPath, std::ios::binary);
    std::vector<std::string>& lLines = lRecordings.emplace_back();
    for (std::string lLine; std::getline(lFile, lLine);) lLines.push_back(lLine);
  }
  return lRecordings;
}

}  // namespace nfwtest
