// A directory of a test's own, and the files that it puts there.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace nfwtest {

/// Gone, with everything in it, at the end of the test.
class TempTree {
 public:
  TempTree() {
    mPath = (std::filesystem::temp_directory_path() / "nfw-XXXXXX").string();
    EXPECT_NE(nullptr, mkdtemp(mPath.data())) << mPath;
  }
  ~TempTree() {
    std::error_code lIgnored;
    std::filesystem::remove_all(mPath, lIgnored);
  }
  TempTree(const TempTree&) = delete;
  TempTree& operator=(const TempTree&) = delete;

  const std::string& path() const { return mPath; }
  std::string path(const std::string& nName) const { return mPath + "/" + nName; }

  /// Creates the directories above the file as well.
  void write(const std::string& nName, const std::string& nContent) const {
    std::filesystem::create_directories(std::filesystem::path(path(nName)).parent_path());
    std::ofstream(path(nName), std::ios::binary) << nContent;
  }
  std::string read(const std::string& nName) const {
    std::ifstream lFile(path(nName), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(lFile), {});
  }
  void link(const std::string& nTarget, const std::string& nName) const {
    std::filesystem::create_directories(std::filesystem::path(path(nName)).parent_path());
    std::filesystem::create_symlink(nTarget, path(nName));
  }
  unsigned int entryNum() const {
    return static_cast<unsigned int>(std::distance(std::filesystem::directory_iterator(mPath), {}));
  }

 private:
  std::string mPath;
};

}  // namespace nfwtest
