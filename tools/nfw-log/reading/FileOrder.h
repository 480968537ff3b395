#pragma once

#include <string>
#include <vector>

namespace logtool {

/// Orders the files of a recording, which are in the order of their names, by their ticks where a name contradicts
/// them: a clock that was set back while recording gives later files an earlier name. A file belongs behind the one
/// whose last record it follows within some seconds; of several starts of the system each stays by itself.
/// @return what was found out, for people; empty when the names are right
std::string orderByTicks(std::vector<std::string>* npPaths);

}  // namespace logtool
