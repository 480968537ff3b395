// What the stand-ins ask of the test seams. While no test holds a seam each question costs one relaxed load.
#pragma once

#include <atomic>

#include "PlatformSeams.h"

namespace seams {

extern std::atomic<unsigned int> gArmedPoints;  // bit n: a Failing of point n lives

bool failsNow(Point nPoint);  // counts; use fails()

/// Does this point fail now?
inline bool fails(Point nPoint) { return gArmedPoints.load(std::memory_order_relaxed) != 0 && failsNow(nPoint); }

}  // namespace seams
