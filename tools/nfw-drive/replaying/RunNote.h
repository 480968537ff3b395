#pragma once

#include <optional>

#include "StreamTally.h"

/// What a recording of this tool tells of the run that it holds: a note at its beginning, and one at its end with what
/// the listeners received. A file that holds both is the whole run, so that its replay can be compared with it.
namespace drive::runnote {

const char* const BEGIN = "nfw-drive run begins";

std::string end(const StreamTally& nTally);
std::optional<StreamTally> parseEnd(std::string_view nNote);

}  // namespace drive::runnote
