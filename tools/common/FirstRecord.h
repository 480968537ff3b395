#pragma once

#include <cstdint>
#include <string>

#include "Record.h"

namespace tool {

/// What the first record of a file tells; UNKNOWN_RECORD when it has none.
struct FirstRecord {
  RecordKind mKind = UNKNOWN_RECORD;
  uint32_t mTick = 0;
  int mError = 0;  ///< an errno: the file cannot be read
};
FirstRecord firstRecordOf(const std::string& nPath);

}  // namespace tool
