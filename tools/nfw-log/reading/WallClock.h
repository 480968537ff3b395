#pragma once

#include <cstdint>
#include <string>

#include "Record.h"
#include "UtcDay.h"

namespace logtool {

const int64_t NO_TIME = -1;

/// The time of day of records, in milliseconds since 1970: of log records the recorder's local time, as it stands in
/// them; of sensor records UTC, from the sentences on the way and the ticks between them. The receiver and dead
/// reckoning, which lags, have a clock each; records of other ids go by the receiver's, if it has told the time. A
/// clock is right only if it sees every record of its recording.
class WallClock {
 public:
  /// Takes the record in; NO_TIME while nothing has told the time. The same record twice makes no difference.
  int64_t timeOf(const tool::Record& nRecord);

 private:
  int64_t stampOf(std::string_view nStamp);
  int64_t utcOf(const tool::Record& nRecord);

  char mMinute[16] = {};  // the minute that mMinuteMs belongs to, as text
  int64_t mMinuteMs = NO_TIME;
  UtcClock& clockOf(int nId);
  UtcClock mClocks[2];  // of the receiver and of dead reckoning
};

/// "YYYY-MM-DD hh:mm:ss.mmm"; "-" for NO_TIME.
std::string timeText(int64_t nMs);
/// "YYYY-MM-DDThh:mm:ss.mmmZ".
std::string utcText(int64_t nMs);
void appendUtc(int64_t nMs, std::string* npText);
/// "h:mm:ss.mmm".
std::string durationText(uint64_t nMs);

}  // namespace logtool
