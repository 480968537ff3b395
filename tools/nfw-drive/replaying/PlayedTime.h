#pragma once

#include "Record.h"

namespace drive {

/// Where the records of a recording lie in its playback, in milliseconds from its first record. Between two files lies
/// what the recorded times tell; where they begin anew, what the dates of the records tell, else a second.
class PlayedTime {
 public:
  void beginFile() { mIsFileNew = true; }
  /// Of the next record.
  int64_t next(const tool::Record& nRecord);
  uint32_t length() const { return mOffset + (mLastTick - mFirstTick); }  ///< to the last record

 private:
  uint32_t gap(const tool::Record& nRecord, int64_t nWallMs) const;

  bool mIsFileNew = true, mIsBegun = false;
  uint32_t mOffset = 0;  // of the stretch of ticks that go on
  uint32_t mFirstTick = 0, mLastTick = 0;
  int64_t mLastWallMs = -1;  // -1: it had no date
};

}  // namespace drive
