#pragma once

#include <string>

#include "PlotData.h"

namespace logtool {

/// An HTML page to look at the same with pointer, keys and touch: map, curves, satellites, scatter, numbers. It needs
/// nothing from elsewhere, and fetches nothing. @param nByFix the map's colours at the begin
std::string plotPage(const PlotData& nData, bool nByFix);

}  // namespace logtool
