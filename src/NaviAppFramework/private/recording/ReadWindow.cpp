#include "ReadWindow.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace nfw {

bool ReadWindow::open(utl::File* npFile) {
  if (mpBytes == nullptr) mpBytes.reset(new (std::nothrow) unsigned char[mCapacity]);
  mpFile = npFile;
  mStart = 0;
  mSize = mAt = 0;
  return mpBytes != nullptr;
}

bool ReadWindow::canTell() const {
  unsigned long long lAsked = 0;
  return mpFile->getPosition(&lAsked);
}

bool ReadWindow::seek(uint64_t nPosition) {
  if (nPosition >= mStart && nPosition - mStart <= mSize) {
    mAt = static_cast<unsigned int>(nPosition - mStart);
    return true;
  }
  return moveTo(nPosition);
}

/// With nothing in memory.
bool ReadWindow::moveTo(uint64_t nPosition) {
  if (!mpFile->seek(static_cast<long long>(nPosition), utl::File::ORIGIN_BEGIN)) return false;
  mStart = nPosition;
  mSize = mAt = 0;
  return true;
}

/// Beyond the end of the window.
int ReadWindow::readOn(void* npBuffer, unsigned int nSize) {
  unsigned int lDone = take(npBuffer, nSize);
  while (lDone < nSize) {
    const int lFilled = fill();
    if (lFilled < 0) return lFilled;
    if (lFilled == 0) break;
    lDone += take(static_cast<unsigned char*>(npBuffer) + lDone, nSize - lDone);
  }
  return static_cast<int>(lDone);
}

unsigned int ReadWindow::take(void* npBuffer, unsigned int nSize) {
  const unsigned int lSize = std::min(nSize, mSize - mAt);
  if (lSize > 0) memcpy(npBuffer, mpBytes.get() + mAt, lSize);
  mAt += lSize;
  return lSize;
}

/// The next window, when this one is used up.
int ReadWindow::fill() {
  mStart += mSize;
  mSize = mAt = 0;
  const int lSize = mpFile->read(mpBytes.get(), mCapacity);
  if (lSize > 0) mSize = static_cast<unsigned int>(lSize);
  return lSize;
}

}  // namespace nfw
