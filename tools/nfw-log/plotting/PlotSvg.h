#pragma once

#include <string>

#include "PlotData.h"

namespace logtool {

/// The tracks, and curves of them over time, as an SVG document.
std::string plotSvg(const PlotData& nData, bool nByFix);

}  // namespace logtool
