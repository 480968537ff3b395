// Finds records in a file without reading it from the start.
#pragma once

#include <cstdint>
#include <memory>

#include "ReadWindow.h"
#include "RecordReader.h"
#include "utl/File.h"

namespace nfw {

/// Reads anywhere in a file of records. Where none begins there, the next one is found: a record is what looks like one
/// and is followed by others, a minute apart at most, or by the end of the file. One thread.
class RecordSearch {
 public:
  struct Found {
    uint64_t mPosition = 0;
    uint64_t mEnd = 0;  // of the record
    uint32_t mTime = 0;
    int64_t mWallMs = NO_WALL;  // local date and time of the text before it, from some day on
  };
  static constexpr int64_t NO_WALL = -1;

  explicit RecordSearch(const RecordFormat& nFormat) : mFormat(nFormat) {}

  bool open(const char* npPath);  ///< false when it cannot be read
  uint64_t size() const { return mSize; }

  /// The record that begins there, whatever it looks like. False when it is not whole.
  bool read(uint64_t nPosition, Found* npFound);
  /// The first one that begins there or behind, and before the limit.
  bool find(uint64_t nPosition, uint64_t nLimit, Found* npFound);
  bool findLast(Found* npFound);

 private:
  static constexpr unsigned int WINDOW_SIZE = 16 * 1024;  // a search looks at little in many places

  const unsigned char* header(uint64_t nPosition);
  bool isRecord(uint64_t nPosition);

  const RecordFormat& mFormat;
  std::unique_ptr<utl::File> mpFile;
  ReadWindow mWindow{WINDOW_SIZE};
  unsigned char mHeader[RecordFormat::MAX_HEADER_SIZE] = {};  // where it does not lie in the window whole
  uint64_t mSize = 0;                                         // of the file
};

}  // namespace nfw
