#include "LogFile.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>

#include "LittleEndian.h"
#include "LogRecord.h"
#include "NfwStreamBuffer.h"

namespace nfw {
namespace {

/// The size of the record that begins in the ring at an offset. Records enter the ring whole.
uint64_t recordSizeAt(const StreamBuffer& nBuffer, unsigned int nOffset) {
  unsigned char lSize[4];
  nBuffer.peek(nOffset + LogRecord::SIZE_AT, lSize, sizeof lSize);
  return uint64_t{getUint32(lSize)} + LogRecord::OVERHEAD;
}

}  // namespace

bool LogFile::open(const char* npPath) {
  auto lpFile = std::make_shared<utl::File>(npPath);
  errno = 0;
  const bool lIsOpen = lpFile->open(2, 1);
  noteResult(lIsOpen, errno);
  if (!lIsOpen) return false;
  mpFile = std::move(lpFile);
  mSize = mOpenSize = mLeftSize = 0;
  return true;
}

void LogFile::close() {
  mpFile.reset();  // closed with its last owner
  noteResult(true, 0);
  mSize = mOpenSize = mLeftSize = 0;
}

void LogFile::remove() {
  ::unlink(mpFile->getPath());
  close();
}

void LogFile::accept(StreamBuffer& nBuffer, unsigned int nSize) {
  for (unsigned int lOffset = 0; lOffset < nSize;) {
    if (mLeftSize == 0) mLeftSize = recordSizeAt(nBuffer, lOffset);
    const unsigned int lStep = static_cast<unsigned int>(std::min<uint64_t>(mLeftSize, nSize - lOffset));
    lOffset += lStep;
    mLeftSize -= lStep;
    mOpenSize = mLeftSize > 0 ? mOpenSize + lStep : 0;
  }
  mSize += nSize;
  nBuffer.eraseTop(nSize);
}

void LogFile::acceptWhole(StreamBuffer& nBuffer, unsigned int nSize) {
  unsigned long long lTaken = 0;
  if (!mpFile->getSize(&lTaken) || lTaken <= mSize) return;
  const uint64_t lEnd = std::min<uint64_t>(lTaken - mSize, nSize);
  uint64_t lWhole = 0;
  for (uint64_t lNext = mLeftSize; lNext <= lEnd;) {
    lWhole = lNext;
    if (lWhole == nSize) break;
    lNext += recordSizeAt(nBuffer, static_cast<unsigned int>(lWhole));
  }
  accept(nBuffer, static_cast<unsigned int>(lWhole));
}

// Where the file cannot be cut, the position alone still keeps later records in order.
uint64_t LogFile::cutBack(StreamBuffer& nBuffer) {
  const uint64_t lDropped = mOpenSize + mLeftSize;
  mSize -= mOpenSize;
  nBuffer.eraseTop(static_cast<unsigned int>(mLeftSize));
  mOpenSize = mLeftSize = 0;
  if (!mpFile->truncate(mSize)) mpFile->seek(static_cast<long long>(mSize), utl::File::ORIGIN_BEGIN);
  return lDropped;
}

uint64_t LogFile::firstSize(const StreamBuffer& nBuffer) { return nBuffer.isEmpty() ? 0 : recordSizeAt(nBuffer, 0); }

unsigned int LogFile::recordNum(const StreamBuffer& nBuffer) {
  unsigned int lCount = 0;
  for (uint64_t lAt = 0; lAt < nBuffer.size(); ++lCount) lAt += recordSizeAt(nBuffer, static_cast<unsigned int>(lAt));
  return lCount;
}

int LogFile::writePart(const void* npBytes, unsigned int nSize) {
  const int lResult = writeBytes(npBytes, nSize);
  if (lResult < 0) return lResult;
  mSize += nSize;
  mOpenSize += nSize;
  return lResult;
}

int LogFile::writeBytes(const void* npBytes, unsigned int nSize) {
  errno = 0;
  const int lResult = mpFile->write(npBytes, nSize);
  noteResult(lResult >= 0, errno);
  return lResult;
}

void LogFile::noteResult(bool nIsDone, int nError) {
  mHasFailed = !nIsDone;
  mError = nIsDone ? 0 : nError;
}

}  // namespace nfw
