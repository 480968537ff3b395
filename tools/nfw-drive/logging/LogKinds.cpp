#include "LogKinds.h"

#include <cstring>

#include "NfwAppLog.h"

namespace drive {

namespace {

bool isDigit(char nByte) { return nByte >= '0' && nByte <= '9'; }
bool isWord(char nByte) { return isDigit(nByte) || (nByte >= 'A' && nByte <= 'Z') || (nByte >= 'a' && nByte <= 'z'); }

/// Over the text without what stands in brackets, and without words that begin with a digit.
uint64_t sumOf(const char* npText) {
  uint64_t lSum = 0xCBF29CE484222325u;
  bool lIsInBrackets = false, lIsInNumber = false;
  char lBefore = ' ';
  for (; *npText != '\0'; lBefore = *npText++) {
    const char lByte = *npText;
    lIsInBrackets = lByte == '[' || (lIsInBrackets && lByte != ']');
    lIsInNumber = isWord(lByte) && (lIsInNumber || (isDigit(lByte) && !isWord(lBefore)));
    if (!lIsInBrackets && !lIsInNumber) lSum = (lSum ^ static_cast<unsigned char>(lByte)) * 0x100000001B3u;
  }
  return lSum;
}

}  // namespace

thread_local int LogMute::mDepth = 0;

LogKinds::Verdict LogKinds::judge(int nType, int nLevel, const char* npText) {
  if (nType != nfw::LOG_TYPE_NFW) return {true, NO_KIND};
  if (LogMute::isOn()) return {false, NO_KIND};
  if (!mFolds || nLevel > nfw::LOG_LEVEL_WARNING) return {true, NO_KIND};
  const uint64_t lSum = sumOf(npText);
  const std::lock_guard<std::mutex> lLock(mMutex);
  const size_t lAt = find(lSum);
  Kind& lKind = mKinds[lAt];
  if (lAt == mNum) {
    lKind = {lSum, nType, nLevel, 0, {}};
    memcpy(lKind.mText, npText, strnlen(npText, sizeof(lKind.mText) - 1));
    ++mNum;
  }
  return {++lKind.mCount == 1, static_cast<int>(lAt)};
}

uint64_t LogKinds::count(int nKind) const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mKinds[static_cast<size_t>(nKind)].mCount;
}

// Its place, or the next free one, or the last.
size_t LogKinds::find(uint64_t nSum) const {
  size_t lAt = 0;
  while (lAt < mNum && mKinds[lAt].mSum != nSum) ++lAt;
  return lAt < MAX_KINDS ? lAt : MAX_KINDS - 1;
}

}  // namespace drive
