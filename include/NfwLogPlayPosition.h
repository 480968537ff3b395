/// @file
/// Where a playback stands.
#pragma once

namespace nfw {

/// What getPlayPosition() of the Logger and of the SensorSysLoggerManager answers.
struct LogPlayPosition {
  unsigned int mPositionMs = 0;  ///< from the recording's first record; 0 before it, and while nothing is played
  unsigned int mLengthMs = 0;    ///< to its last record; 0 while unknown: one file that was not sought in
  unsigned int mRate = 1000;     ///< permille of the recorded pace
  bool mIsPaused = false;
};

}  // namespace nfw
