// Reads log record files.
#pragma once

#include "RecordReader.h"

namespace nfw {

/// The records of one log type id out of a log record file, in their order.
class LogReader : public RecordReader {
 public:
  LogReader();

  static const RecordFormat& recordFormat();

  /// The data size, ERROR, END_OF_FILE or CANCELED. `npTime` and `npPosition` (of the record in the file) may be null.
  int next(unsigned int* npTime, void* npBuffer, unsigned int nBufferSize, unsigned long long* npPosition);
};

}  // namespace nfw
