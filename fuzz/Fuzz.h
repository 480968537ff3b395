// What the fuzzers share: no lines of the system log, an abort where something does not hold, bytes as a file.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <string>

#include "NfwAppLog.h"

extern "C" int LLVMFuzzerInitialize(int* /*npArgCount*/, char*** /*npppArgs*/) {
  nfw::registerLogType(nfw::LOG_TYPE_NFW, "fuzz", nfw::LOG_LEVEL_NONE);
  return 0;
}

inline void require(bool nHolds) {
  if (!nHolds) std::abort();
}

class MemoryFile {
 public:
  MemoryFile(const void* npData, size_t nSize) : mFd(memfd_create("bytes", MFD_CLOEXEC)) {
    require(write(mFd, npData, nSize) == static_cast<ssize_t>(nSize) && lseek(mFd, 0, SEEK_SET) == 0);
  }
  ~MemoryFile() { close(mFd); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  const int mFd;
  const std::string mPath = "/proc/self/fd/" + std::to_string(mFd);
};
