// A directory of a test's own, and the files that it puts there.
#pragma once

#include "TempDir.h"

namespace nfwtest {

class TempTree : public TempDir {
 public:
  using TempDir::path;
  std::string path(const std::string& nName) const { return *this / nName; }

  /// Creates the directories above the file as well.
  void write(const std::string& nName, const std::string& nContent) const {
    std::filesystem::create_directories(std::filesystem::path(path(nName)).parent_path());
    writeFile(path(nName), nContent);
  }
  std::string read(const std::string& nName) const { return readFile(path(nName)); }
  void link(const std::string& nTarget, const std::string& nName) const {
    std::filesystem::create_directories(std::filesystem::path(path(nName)).parent_path());
    std::filesystem::create_symlink(nTarget, path(nName));
  }
  unsigned int entryNum() const {
    return static_cast<unsigned int>(std::distance(std::filesystem::directory_iterator(path()), {}));
  }
};

}  // namespace nfwtest
