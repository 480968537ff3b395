#include "SentenceFields.h"

#include <charconv>
#include <cmath>

namespace logtool {

/// False when there are not so many.
bool SentenceFields::findField(size_t nIndex) const {
  if (mAreAll) return nIndex < mCount;
  const char* lpAt = mpText;  // most fields are too short for a search to be worth its call
  if (mCount == 0)
    mBegins[0] = 0;
  else
    lpAt += mBegins[mCount];
  for (; lpAt != mpEnd && *lpAt != '*'; ++lpAt) {
    if (*lpAt != ',') continue;
    mBegins[++mCount] = static_cast<uint16_t>(lpAt - mpText + 1);
    mAreAll = mCount == MAX_FIELDS;
    if (mAreAll || mCount > nIndex) return nIndex < mCount;
  }
  mBegins[++mCount] = static_cast<uint16_t>(lpAt - mpText + 1);
  mAreAll = true;
  return nIndex < mCount;
}

namespace {

// Of digits with at most one point and no more of them than a double holds exactly: what is divided once is rounded
// once, as from_chars() rounds. NAN for anything else.
double shortNumber(std::string_view nText) {
  static const double SCALES[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  uint64_t lValue = 0;
  size_t lPoint = nText.size();
  if (nText.size() > 15) return NAN;
  for (size_t i = 0; i < nText.size(); ++i) {
    const unsigned int lDigit = static_cast<unsigned char>(nText[i]) - unsigned{'0'};
    if (lDigit <= 9) {
      lValue = lValue * 10 + lDigit;
    } else if (nText[i] == '.' && lPoint == nText.size()) {
      lPoint = i;
    } else {
      return NAN;
    }
  }
  if (nText.size() < (lPoint < nText.size() ? 2u : 1u)) return NAN;  // no digit
  return static_cast<double>(lValue) / SCALES[lPoint < nText.size() ? nText.size() - lPoint - 1 : 0];
}

}  // namespace

double SentenceFields::number(size_t nIndex) const {
  const std::string_view lText = text(nIndex);
  double lValue = shortNumber(lText);
  if (!std::isnan(lValue) || lText.empty()) return lValue;
  const auto lResult = std::from_chars(lText.data(), lText.data() + lText.size(), lValue, std::chars_format::fixed);
  return lResult.ec == std::errc() && lResult.ptr == lText.data() + lText.size() && std::isfinite(lValue) ? lValue
                                                                                                          : NAN;
}

double SentenceFields::degrees(size_t nIndex) const {
  const double lValue = number(nIndex);
  const double lWhole = std::floor(lValue / 100.0);
  const double lDegrees = lWhole + (lValue - lWhole * 100.0) / 60.0;
  switch (letter(nIndex + 1)) {
    case 'N':
    case 'E':
      return lDegrees;
    case 'S':
    case 'W':
      return -lDegrees;
    default:
      return NAN;
  }
}

}  // namespace logtool
