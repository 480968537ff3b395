#include "PlayTimeText.h"

#include <cmath>

#include "Format.h"

namespace tool {

namespace {

const double MAX_SECONDS = 4000000.0;  // what 32 bits of milliseconds take

// A number of digits and a point. -1 for other texts.
double number(std::string_view nText) {
  double lWhole = 0.0, lUnit = 1.0;
  bool lIsBehind = false;
  for (const char lByte : nText) {
    if (lByte == '.' && !lIsBehind && &lByte != nText.data()) {
      lIsBehind = true;
      continue;
    }
    if (lByte < '0' || lByte > '9') return -1.0;
    lWhole = lWhole * 10.0 + (lByte - '0');
    if (lIsBehind) lUnit *= 10.0;
  }
  return nText.empty() ? -1.0 : lWhole / lUnit;
}

}  // namespace

std::optional<uint32_t> parsePlayTime(std::string_view nText) {
  double lSeconds = 0.0;
  for (int lColons = 0;; ++lColons) {
    const size_t lEnd = nText.find(':');
    const std::string_view lField = nText.substr(0, lEnd);
    const double lNumber = number(lField);
    const bool lIsLast = lEnd == std::string_view::npos;
    const bool lIsWhole = lField.find('.') == std::string_view::npos;
    if (lNumber < 0.0 || (!lIsLast && (!lIsWhole || lColons == 2)) || (lColons > 0 && lNumber >= 60.0)) break;
    lSeconds = lSeconds * 60.0 + lNumber;
    if (lSeconds > MAX_SECONDS) break;
    if (lIsLast) return static_cast<uint32_t>(std::llround(lSeconds * 1000.0));
    nText.remove_prefix(lEnd + 1);
  }
  return std::nullopt;
}

std::string playTimeText(uint32_t nMs) {
  return fmt::format("{}:{:02}:{:02}.{}", nMs / 3600000, nMs / 60000 % 60, nMs / 1000 % 60, nMs / 100 % 10);
}

}  // namespace tool
