// The local time that a test has fixed.
#pragma once

namespace seams {

/// While true, the seconds of a utl::Time count the fixed local time itself, whatever the zone.
bool isTimeFixed();

/// False, and nothing stored, when the time is not fixed.
bool fixedTime(long long* npSeconds, unsigned int* npMillisecond);

}  // namespace seams
