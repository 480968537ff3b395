#pragma once

#include "RecordingIds.h"

namespace drive {

/// Under which ids the recordings hold what. Those of the data logger are configured; those of the sensor log below 15
/// are the framework's.
const int LOG_ID_GNSS = tool::LOG_GNSS_ID;
const int LOG_ID_DEAD_RECKONING = tool::LOG_DEAD_RECKONING_ID;
const int LOG_ID_RUN_NOTE = 200;    ///< RunNote
const int SENSOR_ID_RUN_NOTE = 15;  ///< RunNote

}  // namespace drive
