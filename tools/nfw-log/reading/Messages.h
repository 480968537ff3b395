#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Format.h"

namespace logtool {

/// Writes to standard error, as it stands. What cannot be written is dropped: a message never ends the program, nor
/// does it change its exit status.
void writeToErrors(std::string_view nText);

/// Says a line on standard error, "nfw-log: " first. Control characters in it, as of a file's name, are shown as codes.
void say(std::string_view nText);

template <class... Args>
void tell(fmt::format_string<Args...> nFormat, Args&&... nArgs) {
  say(fmt::format(nFormat, std::forward<Args>(nArgs)...));
}

/// "1 file", "2 files".
inline std::string countText(uint64_t nCount, std::string_view nWhat) {
  return fmt::format("{} {}{}", nCount, nWhat, nCount == 1 ? "" : "s");
}

}  // namespace logtool
