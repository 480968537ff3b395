#pragma once

#include <cstdint>
#include <string>

#include "Record.h"

namespace logtool {

const int64_t NO_TIME = -1;

/// The time of day of records, in milliseconds since 1970: of log records the recorder's local time, as it stands in
/// them; of sensor records UTC, from the sentences on the way and the ticks between them.
class WallClock {
 public:
  /// Takes the record in; NO_TIME while nothing has told the time.
  int64_t timeOf(const tool::Record& nRecord);

 private:
  int64_t stampOf(std::string_view nStamp);
  int64_t utcOf(const tool::Record& nRecord);

  char mMinute[16] = {};  // the minute that mMinuteMs belongs to, as text
  int64_t mMinuteMs = NO_TIME;
  int64_t mUtc = NO_TIME;  // told by a record at mTick
  uint32_t mTick = 0;
};

/// "YYYY-MM-DD hh:mm:ss.mmm"; "-" for NO_TIME.
std::string timeText(int64_t nMs);
/// "YYYY-MM-DDThh:mm:ss.mmmZ".
std::string utcText(int64_t nMs);
/// "h:mm:ss.mmm".
std::string durationText(uint64_t nMs);

}  // namespace logtool
