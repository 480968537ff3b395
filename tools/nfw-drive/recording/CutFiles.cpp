#include "CutFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "RecordStream.h"
#include "RotatedName.h"
#include "WriterCheck.h"

namespace drive {

namespace {

const off_t FIRST_TAIL = 64 * 1024;  // many records

// Behind the last whole record, read from as near to the end as will do; 0 where there is none.
off_t wholeSize(int nFile, off_t nSize) {
  for (off_t lTail = FIRST_TAIL;; lTail *= 8) {
    const off_t lBegin = std::max<off_t>(nSize - lTail, 0);
    ::lseek(nFile, lBegin, SEEK_SET);
    tool::RecordStream lStream(nFile);
    off_t lEnd = 0;
    for (tool::Record lRecord; lStream.next(&lRecord);) {
      lEnd = lBegin + static_cast<off_t>(lRecord.mOffset) + static_cast<off_t>(lRecord.mWholeSize);
    }
    if (lStream.getError() != 0) return nSize;
    if (lEnd > 0 || lBegin == 0) return lEnd;
  }
}

uint64_t closeFile(int nFile, const std::string& nPath) {
  const off_t lSize = ::lseek(nFile, 0, SEEK_END);
  const off_t lWhole = lSize <= 0 || tool::writerError(nFile) != 0 ? 0 : wholeSize(nFile, lSize);
  if (lWhole == 0 || lWhole >= lSize || ::truncate(nPath.c_str(), lWhole) != 0) return 0;
  ::fsync(nFile);
  return static_cast<uint64_t>(lSize - lWhole);
}

}  // namespace

CutOff closeCutFiles(const std::string& nDirectory, const std::string& nPrefix) {
  CutOff lCut;
  std::error_code lError;
  std::filesystem::directory_iterator lEntry(nDirectory, lError);
  for (; !lError && lEntry != std::filesystem::directory_iterator(); lEntry.increment(lError)) {
    if (tool::rotatedPrefix(lEntry->path().filename().string()) != nPrefix) continue;
    const int lFile = ::open(lEntry->path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (lFile < 0) continue;
    const uint64_t lBytes = closeFile(lFile, lEntry->path());
    ::close(lFile);
    lCut.mBytes += lBytes;
    if (lBytes > 0) ++lCut.mFiles;
  }
  return lCut;
}

}  // namespace drive
