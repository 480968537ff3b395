#pragma once

#include <string>

#include "PlotData.h"

namespace logtool {

/// What the page's script reads, as JSON that may stand in a script element. Rows of numbers are told as differences
/// from one to the next, which keeps the page small.
std::string pageData(const PlotData& nData, bool nByFix);

}  // namespace logtool
