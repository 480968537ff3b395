#pragma once

#include <string_view>

namespace drive {

/// What a source is whose first bytes are those of a recording or of a compressed file, and what to do with it, for a
/// message. Null for anything else, which may be sentences.
const char* foreignContent(std::string_view nFirst);

}  // namespace drive
