#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// "90", "1.5", "1:30" or "1:02:03.5": seconds, or [h:]mm:ss, as milliseconds; nothing for other texts.
std::optional<uint32_t> parsePlayTime(std::string_view nText);
/// "1:02:03.5"
std::string playTimeText(uint32_t nMs);

}  // namespace tool
