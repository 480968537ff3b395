// Tables of texts in one line.
#pragma once

#include <string>
#include <vector>

namespace nfwtest {

/// "a|b||c": the parts between the marks, empty ones too.
inline std::vector<std::string> split(const std::string& nText, char nMark) {
  std::vector<std::string> lParts(1);
  for (const char lChar : nText) {
    if (lChar == nMark) {
      lParts.emplace_back();
    } else {
      lParts.back() += lChar;
    }
  }
  return lParts;
}

}  // namespace nfwtest
