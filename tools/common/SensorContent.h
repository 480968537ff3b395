#pragma once

#include <cstdint>
#include <string_view>

namespace tool {

const int SENSOR_GNSS_ID = 0;            ///< one sentence of the receiver
const int SENSOR_DEAD_RECKONING_ID = 1;  ///< one report of dead reckoning

/// Whether the data of a sensor record is, to its last byte, what its id and version hold
/// (docs/formats/binary-nmea.md). False for ids and versions that are not known here.
bool isSensorContent(int nId, int nVersion, std::string_view nData);

/// The UTC time and date of the RMC in such data, in milliseconds since 1970; -1 when it has none.
int64_t sensorUtcMs(int nId, std::string_view nData);

}  // namespace tool
