// Numbers as the containers of other programs hold them: little-endian, whatever the processor.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace logtool {

/// Appends an unsigned number, as many bytes as its type has.
template <class Number>
void appendLittle(Number nValue, std::string* npBytes) {
  for (size_t i = 0; i < sizeof(Number); ++i) npBytes->push_back(static_cast<char>(nValue >> (8 * i) & 0xFF));
}

inline void appendLittle(double nValue, std::string* npBytes) {
  uint64_t lBits = 0;
  memcpy(&lBits, &nValue, sizeof(lBits));
  appendLittle(lBits, npBytes);
}

/// A text behind its length.
inline void appendCounted(std::string_view nText, std::string* npBytes) {
  appendLittle(static_cast<uint32_t>(nText.size()), npBytes);
  npBytes->append(nText);
}

}  // namespace logtool
