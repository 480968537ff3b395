#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "Record.h"

namespace tool {

/// Little-endian numbers, as both kinds of file hold them.
inline uint32_t littleEndian16(const char* npBytes) {
  return static_cast<unsigned char>(npBytes[0]) | uint32_t{static_cast<unsigned char>(npBytes[1])} << 8;
}
inline uint32_t littleEndian32(const char* npBytes) {
  return littleEndian16(npBytes) | littleEndian16(npBytes + 2) << 16;
}
inline uint64_t littleEndian64(const char* npBytes) {
  return littleEndian32(npBytes) | uint64_t{littleEndian32(npBytes + 4)} << 32;
}

/// What is in sight of a recording: bytes from some place on.
struct RecordView {
  std::string_view mBytes;
  bool mIsAll = false;    ///< nothing follows them
  bool mIsLive = false;   ///< what follows may take long to come: judge by what there is
  bool mIsBegun = false;  ///< the verdict on the record before was mIsFollowed, by what stands here
};

/// What stands at the first byte of a view.
struct RecordVerdict {
  enum Result {
    WHOLE,  ///< a record of `mSize` bytes
    SHORT,  ///< `mSize` bytes are needed to say; of a view that is all: the end cuts the record
    WRONG,  ///< no record
  };
  Result mResult;
  size_t mSize;
  bool mIsFollowed = false;  ///< another record was seen to begin behind the whole one: it need not be looked for again
};

/// How the records of one kind of file lie in it.
class RecordFormat {
 public:
  /// Records beyond it count as damage: their size is more likely spoilt than meant, and a reader has to hold one
  /// whole.
  static constexpr size_t MAX_RECORD = 16 * 1024 * 1024;

  virtual ~RecordFormat() = default;

  virtual RecordVerdict judge(const RecordView& nView) const = 0;
  /// The next place behind the first byte where a record begins, npos when there is none. What lies in the last
  /// overlap() bytes may be missed unless the view is all.
  virtual size_t find(const RecordView& nView) const = 0;
  virtual size_t overlap() const = 0;
  /// Takes a whole record apart.
  virtual void decode(std::string_view nBytes, Record* npRecord) const = 0;
  /// Says why the first bytes are no whole record.
  virtual void explain(const RecordView& nView, RecordDamage* npDamage) const = 0;
};

const RecordFormat& logRecordFormat();
const RecordFormat& sensorRecordFormat();

}  // namespace tool
