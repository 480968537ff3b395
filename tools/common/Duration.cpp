#include "Duration.h"

#include <cmath>
#include <cstdio>
#include <string>

namespace tool {

std::optional<uint64_t> parseDuration(std::string_view nText) {
  static const struct {
    std::string_view mName;
    double mMs;
  } UNITS[] = {{"ms", 1.0}, {"s", 1000.0}, {"m", 60000.0}, {"h", 3600000.0}, {"d", 86400000.0}};
  const size_t lEnd = nText.substr(0, nText.find_first_not_of("0123456789.")).size();
  double lNumber = 0.0;
  int lRead = 0;
  const std::string lDigits(nText.substr(0, lEnd));
  if (lEnd == 0 || lEnd > 9 || std::sscanf(lDigits.c_str(), "%lf%n", &lNumber, &lRead) != 1) return std::nullopt;
  if (static_cast<size_t>(lRead) != lEnd) return std::nullopt;
  if (lNumber == 0.0 && lEnd == nText.size()) return 0;
  for (const auto& lUnit : UNITS) {
    if (nText.substr(lEnd) == lUnit.mName) return static_cast<uint64_t>(std::llround(lNumber * lUnit.mMs));
  }
  return std::nullopt;
}

}  // namespace tool
