#include "SentenceFields.h"

#include <charconv>
#include <cmath>

#include "EightBytes.h"
#include "RecordFormat.h"

namespace logtool {

namespace {

/// The next comma or asterisk, or the end.
const char* findSign(const char* npAt, const char* npEnd) {
  for (; npEnd - npAt >= 8; npAt += 8) {
    const uint64_t lBytes = tool::littleEndian64(npAt);
    const uint64_t lFound = tool::bytesEqual(lBytes, ',') | tool::bytesEqual(lBytes, '*');
    if (lFound != 0) return npAt + __builtin_ctzll(lFound) / 8;
  }
  while (npAt != npEnd && *npAt != ',' && *npAt != '*') ++npAt;
  return npAt;
}

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

/// False when there are not so many.
bool SentenceFields::findField(size_t nIndex) const {
  while (!mAreAll && mCount <= nIndex) {
    const char* const lpSign = findSign(mpText + mBegins[mCount], mpEnd);
    mBegins[++mCount] = static_cast<uint16_t>(lpSign - mpText + 1);
    mAreAll = mCount == MAX_FIELDS || lpSign == mpEnd || *lpSign == '*';
  }
  return nIndex < mCount;
}

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
