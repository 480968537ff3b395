#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tool {

/// "500ms", "1.5s", "10m", "8h" or "30d" in milliseconds; of numbers without a unit only 0. Nothing for other texts.
std::optional<uint64_t> parseDuration(std::string_view nText);

}  // namespace tool
