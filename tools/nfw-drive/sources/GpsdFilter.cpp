#include "GpsdFilter.h"

#include <string_view>

namespace drive {

namespace {

const std::string_view GREETING_TEXT = "{\"class\":\"VERSION\"";

}  // namespace

size_t GpsdFilter::filter(char* npData, size_t nSize) {
  size_t lLeft = 0;
  for (size_t i = 0; i < nSize; ++i) {
    if (keep(npData[i])) npData[lLeft++] = npData[i];
  }
  return lLeft;
}

bool GpsdFilter::takeGreeting() {
  const bool lIsGreeted = mIsGreeted;
  mIsGreeted = false;
  return lIsGreeted;
}

// The few bytes that look like a greeting and then are none are lost: they are no sentence.
bool GpsdFilter::keep(char nByte) {
  if (mState == PLAIN) return true;
  if (mState != GREETING) return keepOfGpsd(nByte);
  if (nByte != GREETING_TEXT[mMatched]) {
    mState = PLAIN;
    return true;
  }
  if (++mMatched == GREETING_TEXT.size()) {
    mIsGreeted = true;
    mState = OBJECT;
  }
  return false;
}

bool GpsdFilter::keepOfGpsd(char nByte) {
  if (mState == LINE_START) mState = nByte == '{' ? OBJECT : SENTENCE;
  const bool lIsKept = mState != OBJECT;
  if (nByte == '\n') mState = LINE_START;
  return lIsKept;
}

}  // namespace drive
