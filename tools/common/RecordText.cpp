#include "RecordText.h"

#include <algorithm>
#include <cstdint>

#include "Format.h"

namespace tool {

namespace {

const size_t SHOWN = 40;

// Digits at a place; what is no digit makes the result negative for good.
int64_t number(std::string_view nText, size_t nAt, size_t nCount) {
  int64_t lValue = 0;
  for (const char lDigit : nText.substr(nAt, nCount)) {
    if (lDigit < '0' || lDigit > '9') return INT32_MIN;
    lValue = lValue * 10 + lDigit - '0';
  }
  return lValue;
}

}  // namespace

std::string quoteBytes(std::string_view nBytes) {
  const std::string_view lShown = nBytes.substr(0, SHOWN);
  const bool lIsText =
      std::all_of(lShown.begin(), lShown.end(), [](char nByte) { return nByte >= 0x20 && nByte <= 0x7E; });
  if (lIsText) return fmt::format("\"{}\"", lShown);
  std::string lHex;
  for (const char lByte : lShown) lHex += fmt::format("{:02X} ", static_cast<unsigned char>(lByte));
  lHex.pop_back();
  return lHex;
}

int64_t daysSince1970(int64_t nYear, int64_t nMonth, int64_t nDay) {
  // Years begin in March here, so that the leap day is the last of its year; 400 years are 146097 days.
  const int64_t lYear = nMonth <= 2 ? nYear - 1 : nYear;
  const int64_t lMonth = nMonth <= 2 ? nMonth + 9 : nMonth - 3;
  return lYear * 365 + lYear / 4 - lYear / 100 + lYear / 400 + (153 * lMonth + 2) / 5 + nDay - 1 - 719468;
}

int64_t stampMs(std::string_view nStamp) {
  if (nStamp.size() < 23) return -1;
  const int64_t lMonth = number(nStamp, 5, 2);
  const int64_t lDay = number(nStamp, 8, 2);
  const int64_t lSeconds = (number(nStamp, 11, 2) * 60 + number(nStamp, 14, 2)) * 60 + number(nStamp, 17, 2);
  const int64_t lMs = number(nStamp, 20, 3);
  if (lMonth < 1 || lMonth > 12 || lDay < 1 || lSeconds < 0 || lMs < 0 || nStamp[0] < '0') return -1;
  const int64_t lDays = daysSince1970(number(nStamp, 0, 4), lMonth, lDay);
  return lDays * 86400000 + lSeconds * 1000 + lMs;
}

}  // namespace tool
