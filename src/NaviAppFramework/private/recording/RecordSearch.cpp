#include "RecordSearch.h"

#include <algorithm>
#include <new>

namespace nfw {
namespace {

const unsigned int WINDOW_SIZE = 16 * 1024;
const int32_t MAX_GAP_MS = 60000;
const uint64_t FIRST_TAIL = 4 * 1024;

int number(const unsigned char* npDigits, unsigned int nCount) {
  int lNumber = 0;
  for (unsigned int i = 0; i < nCount; ++i) lNumber = lNumber * 10 + (npDigits[i] - '0');
  return lNumber;
}

/// "YYYY/MM/DD hh:mm:ss.mmm" in milliseconds. Only differences count.
int64_t wallTime(const unsigned char* npText) {
  static const int DAYS[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  const int lYear = number(npText, 4);
  const int lMonth = std::min(std::max(number(npText + 5, 2), 1), 12);
  const bool lHasLeapDay = lYear % 4 == 0 && (lYear % 100 != 0 || lYear % 400 == 0) && lMonth > 2;
  const int lYears = lYear == 0 ? 0 : lYear - 1;
  const int64_t lDays = int64_t{365} * lYear + lYears / 4 - lYears / 100 + lYears / 400 + DAYS[lMonth - 1] +
                        (lHasLeapDay ? 1 : 0) + number(npText + 8, 2);
  const int64_t lSeconds =
      (lDays * 24 + number(npText + 11, 2)) * 3600 + number(npText + 14, 2) * 60 + number(npText + 17, 2);
  return lSeconds * 1000 + number(npText + 20, 3);
}

}  // namespace

bool RecordSearch::open(const char* npPath) {
  mpFile = std::make_unique<utl::File>(npPath);
  unsigned long long lSize = 0;
  if (!mpFile->open(0, 0) || !mpFile->getSize(&lSize)) return false;
  if (mpWindow == nullptr) mpWindow.reset(new (std::nothrow) unsigned char[WINDOW_SIZE]);
  mSize = lSize;
  mLength = 0;
  return mpWindow != nullptr;
}

/// Null beyond the end of the file.
const unsigned char* RecordSearch::bytes(uint64_t nPosition, unsigned int nSize) {
  if (nPosition < mStart || nPosition - mStart + nSize > mLength) {
    if (nPosition > mSize || mSize - nPosition < nSize) return nullptr;
    mLength = 0;
    if (!mpFile->seek(static_cast<long long>(nPosition), utl::File::ORIGIN_BEGIN)) return nullptr;
    const int lRead = mpFile->read(mpWindow.get(), WINDOW_SIZE);
    if (lRead < static_cast<int>(nSize)) return nullptr;
    mStart = nPosition;
    mLength = static_cast<unsigned int>(lRead);
  }
  return mpWindow.get() + (nPosition - mStart);
}

bool RecordSearch::read(uint64_t nPosition, Found* npFound) {
  const unsigned char* const lpBytes = bytes(nPosition, mFormat.headerSize());
  if (lpBytes == nullptr) return false;
  RecordHeader lHeader;
  mFormat.mpDecode(lpBytes + mFormat.mTextSize, &lHeader);
  npFound->mPosition = nPosition;
  npFound->mEnd = nPosition + mFormat.headerSize() + lHeader.mSize + mFormat.mBytesAfter;
  npFound->mTime = lHeader.mTime;
  const bool lHasText = mFormat.mTextSize > 0 && mFormat.mpIsPlausible(lpBytes);
  npFound->mWallMs = lHasText ? wallTime(lpBytes) : NO_WALL;
  return npFound->mEnd <= mSize;
}

/// Followed by others like it, or by the end of the file.
bool RecordSearch::isRecord(uint64_t nPosition) {
  Found lFound;
  for (unsigned int i = 0; i < mFormat.mChainLength; ++i) {
    const uint32_t lTime = lFound.mTime;
    const unsigned char* const lpBytes = bytes(nPosition, mFormat.headerSize());
    if (lpBytes == nullptr || !mFormat.mpIsPlausible(lpBytes) || !read(nPosition, &lFound)) return false;
    const int32_t lGap = static_cast<int32_t>(lFound.mTime - lTime);
    if (i > 0 && mFormat.mTextSize == 0 && (lGap < -MAX_GAP_MS || lGap > MAX_GAP_MS)) return false;
    nPosition = lFound.mEnd;
    if (nPosition == mSize) return true;
  }
  return true;
}

bool RecordSearch::find(uint64_t nPosition, uint64_t nLimit, Found* npFound) {
  for (uint64_t lAt = nPosition; lAt < nLimit && lAt < mSize; ++lAt) {
    if (isRecord(lAt)) return read(lAt, npFound);
  }
  return false;
}

// What is behind the last record may be a part of one.
bool RecordSearch::findLast(Found* npFound) {
  for (uint64_t lTail = FIRST_TAIL;; lTail *= 4) {
    const uint64_t lFrom = lTail < mSize ? mSize - lTail : 0;
    Found lNext;
    bool lIsFound = lFrom == 0 ? read(0, &lNext) : find(lFrom, mSize, &lNext);
    const bool lIsAny = lIsFound;
    for (; lIsFound; lIsFound = read(npFound->mEnd, &lNext)) *npFound = lNext;
    if (lIsAny || lFrom == 0) return lIsAny;
  }
}

}  // namespace nfw
