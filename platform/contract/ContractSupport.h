// What the contract tests share: files to work on and a standard error of their own. POSIX only.
#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace contract {

/// A directory that lives as long as the object.
class TempDir {
 public:
  TempDir() {
    const char* const lpBase = getenv("TMPDIR");
    mPath = std::string(lpBase != nullptr ? lpBase : "/tmp") + "/contract-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(mPath.data())) << mPath;
  }
  ~TempDir() {
    DIR* const lpDir = opendir(mPath.c_str());
    while (const dirent* lpEntry = lpDir != nullptr ? readdir(lpDir) : nullptr) unlink(file(lpEntry->d_name).c_str());
    if (lpDir != nullptr) closedir(lpDir);
    rmdir(mPath.c_str());
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return mPath; }
  std::string file(const std::string& nName) const { return mPath + "/" + nName; }

 private:
  std::string mPath;
};

inline void writeFile(const std::string& nPath, const std::string& nContent) {
  FILE* const lpFile = fopen(nPath.c_str(), "wb");
  ASSERT_NE(nullptr, lpFile) << nPath;
  EXPECT_EQ(nContent.size(), fwrite(nContent.data(), 1, nContent.size(), lpFile));
  fclose(lpFile);
}

inline std::string readFile(const std::string& nPath) {
  std::string lContent;
  FILE* const lpFile = fopen(nPath.c_str(), "rb");
  for (int lByte; lpFile != nullptr && (lByte = fgetc(lpFile)) != EOF;) lContent.push_back(static_cast<char>(lByte));
  if (lpFile != nullptr) fclose(lpFile);
  return lContent;
}

/// While it lives, standard error is another file.
class RedirectedError {
 public:
  explicit RedirectedError(int nFile) : mBefore(dup(STDERR_FILENO)) { dup2(nFile, STDERR_FILENO); }
  ~RedirectedError() {
    dup2(mBefore, STDERR_FILENO);
    ::close(mBefore);
  }
  RedirectedError(const RedirectedError&) = delete;
  RedirectedError& operator=(const RedirectedError&) = delete;

 private:
  int mBefore;
};

/// A pipe whose read side never waits.
class Pipe {
 public:
  Pipe() {
    int lEnds[2] = {-1, -1};
    EXPECT_EQ(0, pipe(lEnds));
    mReadEnd = lEnds[0];
    mWriteEnd = lEnds[1];
    fcntl(mReadEnd, F_SETFL, O_NONBLOCK);
  }
  ~Pipe() {
    closeReadEnd();
    ::close(mWriteEnd);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int writeEnd() const { return mWriteEnd; }
  void fill() {
    fcntl(mWriteEnd, F_SETFL, O_NONBLOCK);
    const std::string lBytes(4096, '.');
    while (::write(mWriteEnd, lBytes.data(), lBytes.size()) > 0) {
    }
    fcntl(mWriteEnd, F_SETFL, 0);
  }
  std::string drain() {
    std::string lContent;
    char lBytes[4096];
    for (ssize_t lSize; (lSize = ::read(mReadEnd, lBytes, sizeof(lBytes))) > 0;) {
      lContent.append(lBytes, static_cast<size_t>(lSize));
    }
    return lContent;
  }
  void closeReadEnd() {
    if (mReadEnd >= 0) ::close(mReadEnd);
    mReadEnd = -1;
  }

 private:
  int mReadEnd = -1;
  int mWriteEnd = -1;
};

}  // namespace contract
