// Reads sensor system-log files.
#pragma once

#include "RecordReader.h"

namespace nfw {

/// The records of one sensor log type id out of a sensor system-log file, in their order. It cannot be cancelled.
class SysLogReader : public RecordReader {
 public:
  SysLogReader();

  static const RecordFormat& recordFormat();

  /// The data size, ERROR or END_OF_FILE. `npLogVersion`, `npTime` and `npPosition` may be null.
  int next(int* npLogVersion, unsigned int* npTime, void* npBuffer, unsigned int nBufferSize,
           unsigned long long* npPosition);
};

}  // namespace nfw
