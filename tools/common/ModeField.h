#pragma once

#include <algorithm>
#include <string_view>

namespace tool {

/// Whether a sentence is an RMC, GLL or VTG without the mode field at its end, which came with NMEA 2.3. The library
/// takes none without it.
inline bool lacksMode(std::string_view nSentence) {
  const struct {
    std::string_view mKind;
    long mCommas;  // of the form without a mode
  } FORMS[] = {{"RMC", 11}, {"GLL", 6}, {"VTG", 8}};
  nSentence = nSentence.substr(0, nSentence.find('*'));
  for (const auto& lForm : FORMS) {
    if (nSentence.size() < 7 || nSentence.substr(3, 3) != lForm.mKind || nSentence[6] != ',') continue;
    return std::count(nSentence.begin(), nSentence.end(), ',') <= lForm.mCommas;
  }
  return false;
}

}  // namespace tool
