#pragma once

namespace tool {

/// Under which ids the log of nfw-drive holds sentences. Those of a sensor log are the framework's: SensorContent.h.
const int LOG_GNSS_ID = 20;
const int LOG_DEAD_RECKONING_ID = 21;

}  // namespace tool
