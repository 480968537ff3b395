#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tool {

/// "500ms", "90", "1.5s", "10m", "8h" or "30d" in milliseconds, a bare number being seconds; nothing for other texts.
std::optional<uint64_t> parseDuration(std::string_view nText);

}  // namespace tool
