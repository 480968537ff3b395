// The bytes of a record in a log record file; docs/formats/log-record.md shows them.
#pragma once

namespace nfw {

/// A record: text before (date, time and log type id, readable), three 32-bit numbers, the data, a line feed.
struct LogRecord {
  static constexpr unsigned int PREFIX_SIZE = 36;
  static constexpr unsigned int ID_AT = 36;
  static constexpr unsigned int TIME_AT = 40;
  static constexpr unsigned int SIZE_AT = 44;
  static constexpr unsigned int BASE_SIZE = 48;  // what stands before the data
  static constexpr unsigned int POSTFIX_SIZE = 1;
  static constexpr unsigned int OVERHEAD = BASE_SIZE + POSTFIX_SIZE;
  static constexpr unsigned int MAX_DATA_SIZE =
      0xFFFFFFCEu;  // beyond it the size of the record needs more than 32 bits
  static constexpr unsigned char POSTFIX = 0x0A;
};

}  // namespace nfw
