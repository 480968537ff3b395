#include "SentenceFields.h"

#include <charconv>
#include <cmath>

namespace logtool {

SentenceFields::SentenceFields(std::string_view nSentence) {
  nSentence = nSentence.substr(0, nSentence.find('*'));
  while (mCount < MAX_FIELDS) {
    const size_t lComma = nSentence.find(',');
    mFields[mCount++] = nSentence.substr(0, lComma);
    if (lComma == std::string_view::npos) break;
    nSentence.remove_prefix(lComma + 1);
  }
}

double SentenceFields::number(size_t nIndex) const {
  const std::string_view lText = text(nIndex);
  double lValue = NAN;
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
