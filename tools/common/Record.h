#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tool {

enum RecordKind {
  UNKNOWN_RECORD,
  LOG_RECORD,     ///< of a log record file, docs/formats/log-record.md
  SENSOR_RECORD,  ///< of a sensor system-log file, docs/formats/sensor-log.md
};

/// One whole record of a recording. The views are into the reader's buffer and last until its next step.
struct Record {
  RecordKind mKind = UNKNOWN_RECORD;
  int mId = 0;
  int mVersion = 0;         ///< of the data's format; 0 in a log record file
  uint32_t mTick = 0;       ///< milliseconds of the recorder's monotonic clock, low 32 bits
  std::string_view mStamp;  ///< local time "YYYY/MM/DD hh:mm:ss.mmm"; empty in a sensor log
  std::string_view mData;
  std::string_view mBytes;  ///< the record as it stands in the file
  uint64_t mOffset = 0;     ///< of its first byte in the file
  uint32_t mWholeSize = 0;  ///< bytes, all of it
};

/// Bytes that are part of no whole record, or a record that is wrong in itself or at its place.
struct RecordDamage {
  enum Kind { BOUNDS, CONTENT, TIME, ORDER };
  uint64_t mOffset = 0;
  uint64_t mLength = 0;
  std::string mExpected;
  std::string mFound;
  Kind mKind = BOUNDS;
};

/// Is told of every damaged place, in the order of the file, on the reading thread.
class RecordDamageListener {
 public:
  virtual ~RecordDamageListener() = default;
  virtual void onDamage(const RecordDamage& nDamage) = 0;
};

}  // namespace tool
