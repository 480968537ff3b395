// What the contract tests share: files to work on and a standard error of their own. POSIX only.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "TempDir.h"

namespace contract {

using nfwtest::readFile;
using nfwtest::TempDir;
using nfwtest::writeFile;

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
