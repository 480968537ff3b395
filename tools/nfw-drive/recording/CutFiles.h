#pragma once

#include <cstdint>
#include <string>

namespace drive {

/// What was cut off.
struct CutOff {
  unsigned int mFiles = 0;
  uint64_t mBytes = 0;
};

/// Ends the files of a recording that a power cut has left within a record at their last whole one, which stays. A file
/// that somebody writes to or may write to, and one without any whole record, is left alone.
CutOff closeCutFiles(const std::string& nDirectory, const std::string& nPrefix);

}  // namespace drive
