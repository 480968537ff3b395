#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// The prefix of a name PREFIX_YYYYMMDD-hhmmss_NN.log, as the files of a recording have; nothing for other names.
std::optional<std::string> rotatedPrefix(std::string_view nName);

}  // namespace tool
