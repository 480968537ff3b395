#pragma once

#include <cstdint>
#include <string_view>

namespace tool {

const int SENSOR_GNSS_ID = 0;            ///< one sentence of the receiver
const int SENSOR_DEAD_RECKONING_ID = 1;  ///< one report of dead reckoning

/// Whether the data of a sensor record is, to its last byte, what its id and version hold
/// (docs/formats/binary-nmea.md). False for ids and versions that are not known here.
bool isSensorContent(int nId, int nVersion, std::string_view nData);

/// What such data tells of UTC. -1 is not told: of a sentence without a date, and of a time of 0 without one, which an
/// empty field is stored as.
struct SensorTime {
  int64_t mDay = -1;        ///< since 1970
  int64_t mTimeOfDay = -1;  ///< milliseconds
};
SensorTime sensorTime(int nId, std::string_view nData);

}  // namespace tool
