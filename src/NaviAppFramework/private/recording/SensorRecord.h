// The bytes of a record in a sensor system-log file; docs/formats/sensor-log.md shows them.
#pragma once

namespace nfw {

/// A record: log type id and version in one byte, the time, the data size, the data.
struct SensorRecord {
  static constexpr unsigned int TIME_AT = 1;
  static constexpr unsigned int SIZE_AT = 5;
  static constexpr unsigned int HEADER_SIZE = 7;
  static constexpr unsigned int MAX_DATA_SIZE = 1200;
  static constexpr unsigned int MAX_SIZE = HEADER_SIZE + MAX_DATA_SIZE;
  static constexpr unsigned int MAX_ID = 15;  // also of the version: half a byte each
};

}  // namespace nfw
