#include "RecordBatch.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

namespace syslogservice {

namespace {

// Takes the last bytes off a file again; a full disk does not hinder that.
bool cutOff(int nFile, uint32_t nSize) {
  const off_t lEnd = lseek(nFile, 0, SEEK_END);
  return lEnd >= static_cast<off_t>(nSize) && ftruncate(nFile, lEnd - static_cast<off_t>(nSize)) == 0;
}

}  // namespace

RecordBatch::RecordBatch()
    : mpBytes(new (std::nothrow) unsigned char[SIZE]), mpEnds(new (std::nothrow) uint32_t[MAX_NUM]) {}

bool RecordBatch::add(const void* npData, unsigned int nSize) {
  const uint32_t lEnd = endOf(mNum);
  if (mNum == MAX_NUM || nSize > SIZE - lEnd) return false;
  if (nSize != 0) memcpy(&mpBytes[lEnd], npData, nSize);
  mpEnds[mNum++] = lEnd + nSize;
  return true;
}

uint32_t RecordBatch::endWithin(uint32_t nRoom) const {
  if (nRoom >= endOf(mNum) - wholeSize()) return endOf(mNum);
  const uint32_t* const lpEnds = mpEnds.get();
  const uint32_t* const lpBehind = std::upper_bound(lpEnds + mWholeNum, lpEnds + mNum, wholeSize() + nRoom);
  return lpBehind == lpEnds + mWholeNum ? *lpBehind : lpBehind[-1];
}

int RecordBatch::writeTo(int nFile, uint32_t nRoom) {
  const ssize_t lDone = ::write(nFile, &mpBytes[mDone], endWithin(nRoom) - mDone);
  if (lDone < 0 && errno == EINTR) return 0;
  const int lError = lDone < 0 ? errno : 0;
  if (lDone > 0) mDone += static_cast<uint32_t>(lDone);
  const uint32_t* const lpEnds = mpEnds.get();
  mWholeNum = static_cast<uint32_t>(std::upper_bound(lpEnds + mWholeNum, lpEnds + mNum, mDone) - lpEnds);
  if (lError != 0) cutBack(nFile);
  return lError;
}

void RecordBatch::cutBack(int nFile) {
  const uint32_t lPart = mDone - wholeSize();
  if (lPart != 0 && cutOff(nFile, lPart)) mDone -= lPart;
}

}  // namespace syslogservice
