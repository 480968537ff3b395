#pragma once

#include <string>
#include <string_view>

namespace logtool {

/// A text of any bytes, as a name of a file may be, for an XML document: UTF-8, escaped, with "?" for what is no
/// character or none that XML has.
std::string xmlText(std::string_view nText);

}  // namespace logtool
