#include "NfwStreamBuffer.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

namespace nfw {
namespace {

// What the address space of a 32-bit target cannot hold is refused before the allocator sees it.
const uint64_t MAX_SIZE = std::min<uint64_t>(0xFFFFFFFCu, PTRDIFF_MAX);

unsigned char* allocate(unsigned int nSize) {
  return nSize <= MAX_SIZE ? new (std::nothrow) unsigned char[nSize] : nullptr;
}

}  // namespace

StreamBuffer::StreamBuffer(unsigned int nSize) : mpStorage(allocate(nSize)), mCapacity(nSize) {}

int StreamBuffer::write(const void* npData, unsigned int nSize) {
  if (mpStorage == nullptr || npData == nullptr) return FAILURE;
  if (getFreeSpace() < nSize) return BUFFER_DEPLETION;
  const unsigned int lIndex = at(mUsedSize);
  const unsigned int lFirst = std::min(nSize, mCapacity - lIndex);
  memcpy(mpStorage.get() + lIndex, npData, lFirst);
  memcpy(mpStorage.get(), static_cast<const unsigned char*>(npData) + lFirst, nSize - lFirst);
  mUsedSize += nSize;
  return static_cast<int>(nSize);
}

int StreamBuffer::read(void* npBuffer, unsigned int nSize) {
  if (mpStorage == nullptr || npBuffer == nullptr) return FAILURE;
  if (isEmpty()) return EMPTY;
  const unsigned int lSize = std::min(nSize, mUsedSize);
  copyOut(mReadPosition, npBuffer, lSize);
  eraseTop(lSize);
  return static_cast<int>(lSize);
}

bool StreamBuffer::eraseTop(unsigned int nSize) {
  const unsigned int lSize = std::min(nSize, mUsedSize);
  mReadPosition = at(lSize);
  mUsedSize -= lSize;
  return true;
}

void StreamBuffer::clear() {
  mReadPosition = 0;
  mUsedSize = 0;
}

int StreamBuffer::top(const unsigned char** nppBytes) const {
  if (mpStorage == nullptr) return FAILURE;
  *nppBytes = mpStorage.get() + mReadPosition;
  return static_cast<int>(std::min({mUsedSize, mCapacity - mReadPosition, static_cast<unsigned int>(INT_MAX)}));
}

void StreamBuffer::peek(unsigned int nOffset, unsigned char* npTarget, unsigned int nSize) const {
  copyOut(at(nOffset), npTarget, nSize);
}

// By comparison: a capacity of 0 has no remainder, and the sum may need more than 32 bits.
unsigned int StreamBuffer::at(unsigned int nOffset) const {
  const uint64_t lIndex = static_cast<uint64_t>(mReadPosition) + nOffset;
  return static_cast<unsigned int>(lIndex < mCapacity || mCapacity == 0 ? lIndex : lIndex - mCapacity);
}

void StreamBuffer::copyOut(unsigned int nIndex, void* npTarget, unsigned int nSize) const {
  const unsigned int lFirst = std::min(nSize, mCapacity - nIndex);
  memcpy(npTarget, mpStorage.get() + nIndex, lFirst);
  memcpy(static_cast<unsigned char*>(npTarget) + lFirst, mpStorage.get(), nSize - lFirst);
}

}  // namespace nfw
