#include "utl/StringUtil.h"

#include <charconv>
#include <climits>
#include <cstring>

namespace utl {

namespace {

void setEmpty(char* npText, unsigned int nTextSize) {
  if (npText != nullptr && nTextSize > 0) npText[0] = '\0';
}

bool copyChars(char* npTarget, unsigned int nTargetSize, const char* npSource, size_t nCount) {
  if (nCount >= nTargetSize) {
    setEmpty(npTarget, nTargetSize);
    return false;
  }
  memmove(npTarget, npSource, nCount);
  npTarget[nCount] = '\0';
  return true;
}

bool isDigit(char nChar) { return nChar >= '0' && nChar <= '9'; }

// The whole text as digits, at most nLimit.
bool toNumber(const char* npText, uint32_t nLimit, uint32_t* npValue) {
  if (npText == nullptr || *npText == '\0') return false;
  uint64_t lValue = 0;
  for (; *npText != '\0'; ++npText) {
    if (!isDigit(*npText)) return false;
    lValue = lValue * 10 + static_cast<unsigned char>(*npText - '0');
    if (lValue > nLimit) return false;
  }
  *npValue = static_cast<uint32_t>(lValue);
  return true;
}

template <class T>
bool toUnsigned(const char* npText, T* npValue) {
  uint32_t lValue = 0;
  if (npValue == nullptr || !toNumber(npText, static_cast<T>(-1), &lValue)) return false;
  *npValue = static_cast<T>(lValue);
  return true;
}

template <class T>
bool fromNumber(T nValue, char* npText, unsigned int nTextSize) {
  if (npText == nullptr || nTextSize == 0) return false;
  const std::to_chars_result lResult = std::to_chars(npText, npText + nTextSize - 1, nValue);
  const bool lFits = lResult.ec == std::errc();
  *(lFits ? lResult.ptr : npText) = '\0';
  return lFits;
}

bool isContinuation(char nChar) { return (static_cast<unsigned char>(nChar) & 0xC0u) == 0x80u; }

unsigned int sequenceLength(unsigned char nLead) {
  return nLead < 0xC0 ? 1 : nLead < 0xE0 ? 2 : nLead < 0xF0 ? 3 : nLead < 0xF8 ? 4 : 1;
}

// The half-width form of a character of three bytes, 0 when it has none.
char halfWidth(const char* npChar) {
  const unsigned int lLead = static_cast<unsigned char>(npChar[0]) ^ 0xE0u;  // above 15: a longer sequence cut short
  const unsigned int lCode =
      (lLead << 12) | (static_cast<unsigned int>(npChar[1] & 0x3F) << 6) | static_cast<unsigned int>(npChar[2] & 0x3F);
  if (lCode == 0x3000) return ' ';
  return lCode >= 0xFF01 && lCode <= 0xFF5E ? static_cast<char>(lCode - 0xFF01 + 0x21) : '\0';
}

}  // namespace

bool copyStr(char* npTarget, unsigned int nTargetSize, const char* npSource) {
  return copyStr(npTarget, nTargetSize, npSource, UINT_MAX);
}

bool copyStr(char* npTarget, unsigned int nTargetSize, const char* npSource, unsigned int nMaxCount) {
  if (npTarget == nullptr || npSource == nullptr) {
    setEmpty(npTarget, nTargetSize);
    return false;
  }
  const unsigned int lExamined = nMaxCount < nTargetSize ? nMaxCount : nTargetSize;
  return copyChars(npTarget, nTargetSize, npSource, strnlen(npSource, lExamined));
}

bool appendStr(char* npTarget, unsigned int nTargetSize, const char* npText) {
  if (npTarget == nullptr || npText == nullptr) return false;
  const size_t lUsed = strnlen(npTarget, nTargetSize);
  const size_t lCount = strnlen(npText, nTargetSize);
  if (lUsed + lCount >= nTargetSize) return false;
  return copyChars(npTarget + lUsed, nTargetSize - static_cast<unsigned int>(lUsed), npText, lCount);
}

unsigned int eraseStrSpan(char* npText, unsigned int nPosition, unsigned int nCount) {
  if (npText == nullptr) return ERASE_FAILURE;
  const size_t lLength = strlen(npText);
  if (nPosition > lLength || nCount > lLength - nPosition) return ERASE_FAILURE;
  const size_t lBehind = size_t{nPosition} + nCount;
  memmove(npText + nPosition, npText + lBehind, lLength - lBehind + 1);
  return static_cast<unsigned int>(lLength - nCount);
}

bool toSint32(const char* npText, int32_t* npValue) {
  if (npText == nullptr || npValue == nullptr) return false;
  const bool lIsNegative = *npText == '-';
  const bool lIsSigned = lIsNegative || *npText == '+';
  uint32_t lValue = 0;
  if (!toNumber(npText + (lIsSigned ? 1 : 0), lIsNegative ? 0x80000000u : 0x7FFFFFFFu, &lValue)) return false;
  *npValue = static_cast<int32_t>(lIsNegative ? 0u - lValue : lValue);
  return true;
}

bool toUint32(const char* npText, uint32_t* npValue) { return toUnsigned(npText, npValue); }
bool toUint16(const char* npText, uint16_t* npValue) { return toUnsigned(npText, npValue); }
bool toUint8(const char* npText, uint8_t* npValue) { return toUnsigned(npText, npValue); }

bool fromUint32(uint32_t nValue, char* npText, unsigned int nTextSize) { return fromNumber(nValue, npText, nTextSize); }
bool fromSint32(int32_t nValue, char* npText, unsigned int nTextSize) { return fromNumber(nValue, npText, nTextSize); }

bool convertAttrib(char* npText, unsigned int nTextSize, AttribPair nPair) {
  if (npText == nullptr || nPair != HANKAKU_ZENKAKU_PAIR || strnlen(npText, nTextSize) == nTextSize) return false;
  bool lFlag = false;
  char* lpTarget = npText;
  for (const char* lpSource = npText; *lpSource != '\0';) {
    const unsigned int lBytes = strCharBytesBase(lpSource, &lFlag);
    const char lHalf = lBytes == 3 ? halfWidth(lpSource) : '\0';
    if (lHalf != '\0') {
      *lpTarget++ = lHalf;
    } else {
      memmove(lpTarget, lpSource, lBytes);
      lpTarget += lBytes;
    }
    lpSource += lBytes;
  }
  *lpTarget = '\0';
  return true;
}

unsigned int strCharBytesBase(const char* npText, bool*) {
  if (npText == nullptr || *npText == '\0') return 0;
  const unsigned int lLength = sequenceLength(static_cast<unsigned char>(*npText));
  unsigned int lBytes = 1;
  while (lBytes < lLength && isContinuation(npText[lBytes])) ++lBytes;  // ends before the terminator
  return lBytes;
}

bool extractDirPath(const char* npPath, char* npDirectory, unsigned int nDirectorySize) {
  const char* const lpSlash = npPath != nullptr ? strrchr(npPath, '/') : nullptr;
  if (lpSlash == nullptr || npDirectory == nullptr) {
    setEmpty(npDirectory, nDirectorySize);
    return false;
  }
  const auto lLength = static_cast<size_t>(lpSlash - npPath);
  return copyChars(npDirectory, nDirectorySize, npPath, lLength == 0 ? 1 : lLength);
}

}  // namespace utl
