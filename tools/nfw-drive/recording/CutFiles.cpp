#include "CutFiles.h"

#include <unistd.h>

#include <algorithm>

#include "Descriptor.h"
#include "DirectoryEntries.h"
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
  tool::forEachEntry(nDirectory, [&](const std::filesystem::path& nPath) {
    if (tool::rotatedPrefix(nPath.filename().string()) != nPrefix) return;
    const tool::Descriptor lFile(nPath, O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    const uint64_t lBytes = lFile.isOpen() ? closeFile(lFile.get(), nPath) : 0;
    lCut.mBytes += lBytes;
    if (lBytes > 0) ++lCut.mFiles;
  });
  return lCut;
}

}  // namespace drive
