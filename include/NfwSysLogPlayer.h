/// @file
/// Is told about the replays of the sensor system log.
#pragma once

#include "NfwExport.h"

namespace nfw {

/// Attached to the SensorSysLoggerManager. Called on the manager's thread, one call at a time, the last attached player
/// first. From inside a call every operation of the manager but shutdown() and destroy() may be called; no operation of
/// another service that waits for that service.
class NFW_API SysLogPlayer {
 public:
  virtual ~SysLogPlayer() = default;

  virtual void notifyPlayStart() = 0;  ///< before the first record
  virtual void notifyPlayStop() = 0;   ///< stopPlay(): no record comes any more
  virtual void notifyPlayEnd() = 0;    ///< nothing is left to play, told once a replay; playing until stopPlay()
  /// seekPlay(): the records to come do not follow those before. Nothing by default. After a seek the end is told
  /// again.
  virtual void notifyPlaySeek() {}
};

}  // namespace nfw
