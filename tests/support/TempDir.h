// A directory of a test's own.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace nfwtest {

/// Made when built, removed with everything in it when destroyed.
class TempDir {
 public:
  TempDir() {
    char lPath[] = "/tmp/nfwtest_XXXXXX";
    if (mkdtemp(lPath) == nullptr) ADD_FAILURE() << "mkdtemp";
    mPath = lPath;
  }
  ~TempDir() {
    std::error_code lIgnored;
    std::filesystem::remove_all(mPath, lIgnored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return mPath; }
  std::string operator/(const std::string& nName) const { return mPath + "/" + nName; }

  /// Regular files directly in it, sorted.
  std::vector<std::string> files() const {
    std::vector<std::string> lFiles;
    for (const auto& lEntry : std::filesystem::directory_iterator(mPath)) {
      if (lEntry.is_regular_file()) lFiles.push_back(lEntry.path().string());
    }
    std::sort(lFiles.begin(), lFiles.end());
    return lFiles;
  }

 private:
  std::string mPath;
};

inline std::string readFile(const std::string& nPath) {
  std::ifstream lFile(nPath, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(lFile), {});
}

inline void writeFile(const std::string& nPath, const std::string& nBytes) {
  std::ofstream(nPath, std::ios::binary).write(nBytes.data(), static_cast<std::streamsize>(nBytes.size()));
}

}  // namespace nfwtest
