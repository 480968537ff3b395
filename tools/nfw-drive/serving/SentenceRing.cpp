#include "SentenceRing.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace drive {

bool SentenceRing::begin() {
  mpBytes.reset(new (std::nothrow) char[mRoom]);
  return mpBytes != nullptr;
}

void SentenceRing::write(std::string_view nSentence) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  append(nSentence.substr(0, nSentence.find_last_not_of("\r\n") + 1));  // npos + 1 is 0
  append("\r\n");
  mEnd = mWritten;
}

void SentenceRing::append(std::string_view nText) {
  const size_t lAt = static_cast<size_t>(mWritten % mRoom);
  const size_t lFirst = std::min(nText.size(), mRoom - lAt);
  std::memcpy(mpBytes.get() + lAt, nText.data(), lFirst);
  std::memcpy(mpBytes.get(), nText.data() + lFirst, nText.size() - lFirst);
  mWritten += nText.size();
}

int SentenceRing::read(uint64_t nAt, char* npBuffer, size_t nSize) const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  if (isGone(nAt)) return -1;
  const size_t lSize = std::min(nSize, static_cast<size_t>(mEnd - nAt));
  const size_t lAt = static_cast<size_t>(nAt % mRoom);
  const size_t lFirst = std::min(lSize, mRoom - lAt);
  std::memcpy(npBuffer, mpBytes.get() + lAt, lFirst);
  std::memcpy(npBuffer + lFirst, mpBytes.get(), lSize - lFirst);
  return static_cast<int>(lSize);
}

}  // namespace drive
