#include "SettingNumber.h"

#include <charconv>

#include "utl/StringUtil.h"

namespace nfw {
namespace {

bool isDigit(char nChar) { return nChar >= '0' && nChar <= '9'; }

// Refused before it overflows.
bool appendDigit(char nDigit, long long nLimit, long long* npMagnitude) {
  const int lDigit = nDigit - '0';
  if (*npMagnitude > (nLimit - lDigit) / 10) return false;
  *npMagnitude = *npMagnitude * 10 + lDigit;
  return true;
}

}  // namespace

bool parseSettingNumber(char (&npValue)[SETTING_VALUE_SIZE], long long nMin, long long nMax, long long* npNumber) {
  if (!utl::convertAttrib(npValue, SETTING_VALUE_SIZE, utl::HANKAKU_ZENKAKU_PAIR)) return false;
  const char* lpText = npValue;
  const bool lIsNegative = *lpText == '-';
  if (lIsNegative && nMin == 0) return false;
  if (lIsNegative || *lpText == '+') ++lpText;
  if (!isDigit(*lpText)) return false;
  long long lMagnitude = 0;
  for (; isDigit(*lpText); ++lpText) {
    if (!appendDigit(*lpText, lIsNegative ? -nMin : nMax, &lMagnitude)) return false;
  }
  *npNumber = lIsNegative ? -lMagnitude : lMagnitude;
  return true;
}

void formatSettingNumber(long long nNumber, char (&npValue)[SETTING_VALUE_SIZE]) {
  *std::to_chars(npValue, npValue + SETTING_VALUE_SIZE - 1, nNumber).ptr = '\0';
}

}  // namespace nfw
