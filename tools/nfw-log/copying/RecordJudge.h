#pragma once

#include "WallClock.h"

namespace logtool {

/// Judges records whose bounds are right by what stands in them. What check finds wrong in a record, recover leaves
/// out.
class RecordJudge {
 public:
  /// False, with what is wrong, when a record of a sensor log does not hold what its id says, or one of a log has no
  /// date and time. Of ids and versions that are not known, any content is right.
  bool accepts(const tool::Record& nRecord, tool::RecordDamage* npFault);

 private:
  WallClock mClock;  // which reads the date of most records once
};

}  // namespace logtool
