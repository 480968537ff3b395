#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// Bytes of the first character of a text in UTF-8; 0 when it begins with none that Unicode allows.
size_t characterSize(std::string_view nText);

/// Whether this one character does something to a terminal or ends a line: the control characters of ASCII and those of
/// Unicode (U+0080 to U+009F).
bool isControl(std::string_view nCharacter);

/// Appends a text as a terminal may be given it: control characters, and bytes that are no UTF-8, as "\x1B". A tab
/// stays.
void appendPrintable(std::string_view nText, std::string* npText);

inline std::string printableText(std::string_view nText) {
  std::string lText;
  appendPrintable(nText, &lText);
  return lText;
}

}  // namespace tool
