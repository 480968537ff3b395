// The 48 bytes before the data of a log record.
#pragma once

#include "LogRecord.h"

namespace nfw {

/// Builds bases one after the other; the text of the second that the last one fell into is kept. Not locked.
class LogRecordBase {
 public:
  /// Stamps a base with the local time and the tick of now. False, with a log line, when one cannot be had; bytes()
  /// is then not valid.
  bool build(int nLogTypeId, unsigned int nDataSize);
  const unsigned char* bytes() const { return mBytes; }

 private:
  struct Second {
    unsigned int mYear = 0, mMonth = 0, mDay = 0, mHour = 0, mMinute = 0, mSecond = 0;
    bool operator==(const Second& nOther) const;
  };

  bool putPrefix(int nLogTypeId);
  void putSecond(const Second& nSecond);

  Second mSecond;  // whose text stands in mBytes; month 0: none
  unsigned char mBytes[LogRecord::BASE_SIZE] = {};
};

}  // namespace nfw
