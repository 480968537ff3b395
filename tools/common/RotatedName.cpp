#include "RotatedName.h"

namespace tool {

std::optional<std::string> rotatedPrefix(std::string_view nName) {
  static constexpr std::string_view PATTERN = "_dddddddd-dddddd_dd.log";
  if (nName.size() < PATTERN.size()) return std::nullopt;
  const std::string_view lSuffix = nName.substr(nName.size() - PATTERN.size());
  for (size_t i = 0; i < PATTERN.size(); ++i) {
    const bool lIsDigit = lSuffix[i] >= '0' && lSuffix[i] <= '9';
    if (PATTERN[i] == 'd' ? !lIsDigit : lSuffix[i] != PATTERN[i]) return std::nullopt;
  }
  return std::string(nName.substr(0, nName.size() - PATTERN.size()));
}

}  // namespace tool
