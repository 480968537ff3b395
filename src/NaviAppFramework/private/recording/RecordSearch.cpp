#include "RecordSearch.h"

#include <ctime>

namespace nfw {
namespace {

const int32_t MAX_GAP_MS = 60000;
const uint64_t FIRST_TAIL = 4 * 1024;

int number(const unsigned char* npDigits, unsigned int nCount) {
  int lNumber = 0;
  for (unsigned int i = 0; i < nCount; ++i) lNumber = lNumber * 10 + (npDigits[i] - '0');
  return lNumber;
}

/// "YYYY/MM/DD hh:mm:ss.mmm" in milliseconds. Only differences count, so it may be of any time zone.
int64_t wallTime(const unsigned char* npText) {
  std::tm lTime = {};
  lTime.tm_year = number(npText, 4) - 1900;
  lTime.tm_mon = number(npText + 5, 2) - 1;
  lTime.tm_mday = number(npText + 8, 2);
  lTime.tm_hour = number(npText + 11, 2);
  lTime.tm_min = number(npText + 14, 2);
  lTime.tm_sec = number(npText + 17, 2);
  return int64_t{::timegm(&lTime)} * 1000 + number(npText + 20, 3);
}

}  // namespace

bool RecordSearch::open(const char* npPath) {
  mpFile = std::make_unique<utl::File>(npPath);
  unsigned long long lSize = 0;
  if (!mpFile->open(0, 0) || !mpFile->getSize(&lSize)) return false;
  mSize = lSize;
  return mWindow.open(mpFile.get());
}

/// Null beyond the end of the file.
const unsigned char* RecordSearch::header(uint64_t nPosition) {
  const unsigned int lSize = mFormat.headerSize();
  if (!mWindow.seek(nPosition)) return nullptr;
  if (const unsigned char* const lpBytes = mWindow.view(lSize)) return lpBytes;
  return mWindow.read(mHeader, lSize) == static_cast<int>(lSize) ? mHeader : nullptr;
}

bool RecordSearch::read(uint64_t nPosition, Found* npFound) {
  const unsigned char* const lpBytes = header(nPosition);
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
    const unsigned char* const lpBytes = header(nPosition);
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
