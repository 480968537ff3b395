#include "SentenceFields.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace logtool {

SentenceFields::SentenceFields(std::string_view nSentence) : mpText(nSentence.data()) {
  const char* lpAt = mpText;  // most fields are too short for a search to be worth its call
  const char* const lpEnd = mpText + std::min(nSentence.size(), MAX_SIZE);
  size_t lCount = 0;
  mBegins[0] = 0;
  for (; lpAt != lpEnd && *lpAt != '*'; ++lpAt) {
    if (*lpAt != ',') continue;
    if (lCount == MAX_FIELDS - 1) break;
    mBegins[++lCount] = static_cast<uint16_t>(lpAt - mpText + 1);
  }
  mBegins[++lCount] = static_cast<uint16_t>(lpAt - mpText + 1);
  mCount = lCount;
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
